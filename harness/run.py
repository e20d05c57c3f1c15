"""What ./run.sh does: builds and plays scenarios on the real engine."""
import argparse
import os
import sys
from concurrent.futures import ThreadPoolExecutor

from harness import runner
from harness.building.build import build
from harness.machine.display import virtual_display
from harness.machine.prefix import prepare
from harness.runner import CONCURRENT, held
from harness.scenario import play

MAIN = "install"


def main() -> int:
    parser = argparse.ArgumentParser(prog="./run.sh", description="Runs scenarios on the real Burn engine under Wine.")
    parser.add_argument("--list", action="store_true", help="name the scenarios and end")
    parser.add_argument("--show", action="store_true", help="use this desktop's display instead of a virtual one")
    parser.add_argument("scenario", nargs="*", help=f"what to run; {MAIN} if none is named")
    arguments = parser.parse_args()
    known = play.names()
    if arguments.list:
        for name in known:
            print(f"{name:<26}{play.summary(name)}")
        return 0
    if unknown := [name for name in arguments.scenario if name not in known]:
        parser.error(f"no scenario {', '.join(unknown)}; --list names them")
    if arguments.show and not os.environ.get("DISPLAY", "").startswith(":"):
        parser.error("--show needs a display on this machine (DISPLAY=:N)")

    build("release")
    with virtual_display() as display:
        prepare(display)
    names = arguments.scenario or [MAIN]
    print(f"running {', '.join(names)}", flush=True)
    results = []
    with ThreadPoolExecutor(1 if arguments.show else CONCURRENT) as pool:
        for result in pool.map(lambda name: runner.play(name, arguments.show), names):
            runner.print_result(result, play.summary(result["scenario"]))
            results.append(result)
    failed = [result["scenario"] for result in results if not held(result)]
    print("\n" + (f"FAILED: {', '.join(failed)}" if failed else "every check held"))
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
