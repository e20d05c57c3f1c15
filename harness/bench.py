"""What ./bench.sh does: builds the library as it ships, measures it in a sandbox and writes out/bench.json."""
import os
import subprocess
import sys

from harness.building.build import build
from harness.machine.display import virtual_display
from harness.machine.prefix import prepare
from harness.machine.sandbox import sandboxed
from harness.places import BENCH_RESULT, ROOT


def main() -> int:
    build("release", "bench")
    BENCH_RESULT.parent.mkdir(exist_ok=True)
    with virtual_display() as display:
        prepare(display)
        code = subprocess.run(sandboxed([sys.executable, "-m", "harness.wine", "bench"]), cwd=ROOT,
                              env=os.environ | {"DISPLAY": display}).returncode
    if code == 0:
        print(f"written to {BENCH_RESULT.relative_to(ROOT)}")
    return code


if __name__ == "__main__":
    sys.exit(main())
