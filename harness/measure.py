"""What ./bench.sh does: builds the library as it ships, measures it in a prefix of its own and writes out/bench.json."""
import sys

from harness.build import build
from harness.display import virtual_display
from harness.places import BUILD, LIBRARY, OUT, ROOT
from harness.prefix import copy_of_prepared, prepare

BENCH = BUILD / "release/bench/bench.exe"


def main() -> int:
    build("release")
    result = OUT / "bench.json"
    OUT.mkdir(exist_ok=True)
    with virtual_display() as display:
        prepare(display)
        with copy_of_prepared("bench", display) as wine:
            code = wine.start(BENCH, str(LIBRARY), str(result), stdout=None, stderr=None).wait()
    if code == 0:
        print(f"written to {result.relative_to(ROOT)}")
    return code


if __name__ == "__main__":
    sys.exit(main())
