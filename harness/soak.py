"""What ./soak.sh does: rounds of install, repair and uninstall on one machine, by the real engine and without a window.
Of the process that holds the library it takes threads, handles and memory at the same moment of each run. It fails if
a figure rises, a process or a file stays, or the registry differs after a round."""
import argparse
import os
import re
import subprocess
import sys
import time
from statistics import median

from harness.building.build import build
from harness.machine.display import virtual_display
from harness.machine.prefix import copy_of_prepared, prepare
from harness.machine.sandbox import sandboxed
from harness.places import OUT, ROOT
from harness.scenario.machine import TEMP
from harness.scenario.registry import UNAVAILABLE, WHOLE, changes, check_changes, listing
from harness.scenario.scene import Scene

KINDS = {"install": ("/quiet",), "repair": ("PDX_REPAIR=1", "/quiet"), "uninstall": ("/uninstall", "/quiet")}
# By how much the median of the last ten rounds may be above that of the ten after the first, which fills caches.
BOUNDS = {"threads": 1, "handles": 4, "private KiB": 1536}
COMPARED = 10
OUTPUT = OUT / "soak"


def measure(scene: Scene) -> tuple[int, ...]:
    """The figures of BOUNDS, of the one process of a run that has loaded the library."""
    holder, = (process for process in scene.machine.installers()
               if "\\.ba\\PalisadeBootstrapper.dll" in (process / "maps").read_text().replace("/", "\\"))
    private = re.findall(r"^Private_\w+: +(\d+) kB", (holder / "smaps_rollup").read_text(), re.M)
    handles = scene.machine.command(f"handles {scene.window.look().process}")
    return len(list((holder / "task").iterdir())), int(handles), sum(map(int, private))


def run(scene: Scene, kind: str) -> tuple[int, ...]:
    """One run, measured while the package waits in its last step."""
    scene.runs.pause(when="after-files")
    engine = scene.runs.start(*KINDS[kind], log=kind)
    scene.runs.wait_for_mark()
    figures = measure(scene)
    scene.runs.mark()
    engine.ends(0, kind)
    scene.wait_for(lambda: not scene.machine.installers(), f"{kind}: the end of all processes", 10)
    return figures


def rounds_of(scene: Scene, count: int):
    """The figures of each round, by kind of run."""
    before, after_first = listing(scene), {}
    for number in range(1, count + 1):
        started = time.monotonic()
        figures = {kind: run(scene, kind) for kind in KINDS}
        check_changes(scene, f"round {number}", before, UNAVAILABLE)
        scene.checks.gone()
        scene.checks.only_logs_left()
        for log in scene.machine.path(TEMP).glob("*.log"):
            log.unlink()
        print(f"{number:>5}" + "".join(f"{figure:>9}" for kind in KINDS for figure in figures[kind]) +
              f"{time.monotonic() - started:>6.0f} s", flush=True)
        if number in (1, count):
            whole = listing(scene, WHOLE)
            after_first = after_first or whole
            scene.checks.equal("the whole registry is as after the first round", changes(after_first, whole), {})
        yield figures


def rises(rounds: list[dict]) -> list[str]:
    """The medians of each figure, and whether it is flat."""
    lines = []
    for kind in KINDS:
        for at, (name, bound) in enumerate(BOUNDS.items()):
            values = [figures[kind][at] for figures in rounds[1:]]
            first, last = median(values[:COMPARED]), median(values[-COMPARED:])
            verdict = "flat" if last <= first + bound else "RISES"
            lines.append(f"{kind:<10}{name:<12}{first:>9.0f} -> {last:<9.0f}{verdict} (bound {bound})")
    return lines


def play(count: int) -> int:
    OUTPUT.mkdir(parents=True, exist_ok=True)
    with copy_of_prepared("soak", os.environ["DISPLAY"]) as prefix:
        scene = Scene(prefix, OUTPUT)
        scene.services  # before the first run
        print("     " + "".join(f"{kind:>27}" for kind in KINDS))
        print("round" + "".join(f"{name.split()[0]:>9}" for _ in KINDS for name in BOUNDS))
        rounds = list(rounds_of(scene, count))
    failed = [f"{row['name']}: {row['detail']}" for row in scene.checks.rows if not row["ok"]]
    lines = rises(rounds)
    print("\n".join([*failed, *lines]))
    held = not failed and not any("RISES" in line for line in lines)
    print(f"{count} rounds: " + ("flat, and nothing is left" if held else "FAILED"))
    return 0 if held else 1


def main() -> int:
    parser = argparse.ArgumentParser(prog="./soak.sh", description=__doc__)
    parser.add_argument("rounds", nargs="?", type=int, default=50)
    parser.add_argument("--play", action="store_true", help=argparse.SUPPRESS)
    options = parser.parse_args()
    if options.rounds < 2:
        parser.error("the first round is not compared: at least 2")
    if options.play:
        return play(options.rounds)
    build("release")
    with virtual_display() as display:
        prepare(display)
        command = sandboxed([sys.executable, "-m", "harness.soak", "--play", str(options.rounds)])
        return subprocess.run(command, cwd=ROOT, env=os.environ | {"DISPLAY": display}).returncode


if __name__ == "__main__":
    sys.exit(main())
