"""What ./fuzz.sh does: runs libFuzzer on one fuzz target after another, each for an equal share of the minutes and on
all cores. out/fuzz/TARGET/ gets the logs and the inputs that fail. build/fuzz/corpus/ keeps the inputs that reached new
code; the next run begins with them and the seeds."""
import argparse
import os
import re
import shutil
import subprocess
import sys

from harness.building.build import build
from harness.places import BUILD, OUT, ROOT

TARGETS = re.findall(r"row\((\w+)\)", (ROOT / "fuzz/Targets.cpp").read_text())
INPUT_SECONDS = 10  # for one input; more counts as a hang


def fuzz(target: str, seconds: int) -> tuple[int, int]:
    """Gives the number of inputs tried, and of those that fail. A core's process ends with its first."""
    finds, corpus = OUT / "fuzz" / target, BUILD / "fuzz/corpus" / target
    shutil.rmtree(finds, ignore_errors=True)
    for folder in (finds, corpus):
        folder.mkdir(parents=True, exist_ok=True)
    command = [str(BUILD / "fuzz/fuzz_targets"), f"-max_total_time={seconds}", f"-timeout={INPUT_SECONDS}",
               "-print_final_stats=1", f"-artifact_prefix={finds}/", str(corpus), str(ROOT / "fuzz/seeds" / target)]
    logs = [finds / f"{core}.log" for core in range(os.cpu_count() or 1)]
    processes = []
    for log in logs:
        with log.open("wb") as output:
            processes.append(subprocess.Popen(command, env=os.environ | {"FUZZ_TARGET": target}, stdout=output,
                                              stderr=subprocess.STDOUT))
    broken = any([process.wait() for process in processes])
    text = "".join(log.read_text(errors="replace") for log in logs)
    inputs = sum(map(int, re.findall(r"^stat::number_of_executed_units: +(\d+)", text, re.M)))
    kept = [file for file in finds.iterdir() if not file.name.startswith("slow-unit") and file not in logs]
    return inputs, max(len(kept), int(broken))


def main() -> int:
    parser = argparse.ArgumentParser(prog="./fuzz.sh")
    parser.add_argument("minutes", type=float)
    parser.add_argument("targets", nargs="*", metavar="target", help=", ".join(TARGETS))
    options = parser.parse_args()
    targets = options.targets or TARGETS
    if unknown := set(targets) - set(TARGETS):
        parser.error(f"no target is called {', '.join(sorted(unknown))}")
    build("libfuzzer")
    seconds = max(1, round(options.minutes * 60 / len(targets)))  # libFuzzer takes 0 as without end
    total = found = 0
    for target in targets:
        inputs, finds = fuzz(target, seconds)
        print(f"{target:16} {inputs:12,} inputs, {finds} crashes", flush=True)
        total, found = total + inputs, found + finds
    print(f"{len(targets)} targets, {total:,} inputs, {found} crashes" + (", see out/fuzz/" if found else ""))
    return int(found > 0)


if __name__ == "__main__":
    sys.exit(main())
