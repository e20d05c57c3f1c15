"""What ./faults.sh does: runs the shipped library with one fault of the platform after another. `--short` is the
quick form. Inside a sandbox (`--play`) it starts the driver; out/faults/table.txt has the rows and how each ended."""
import argparse
import os
import re
import subprocess
import sys
import time

from harness.building.build import build
from harness.machine.display import virtual_display
from harness.machine.prefix import copy_of_prepared, prepare
from harness.machine.sandbox import sandboxed
from harness.places import LIBRARY, OUT, PROGRAMS, ROOT
from harness.services import Services

KINDS = "install", "uninstall", "repair", "report", "download"
MEMORY = "malloc", "realloc"  # called thousands of times: some calls spread over the run, and never all of them
SLOW = ("CreateFileW", "RegOpenKeyExW", "RegSetValueExW", "CopyFileW", "CoCreateInstance", "SHGetKnownFolderPath",
        "OpenSCManagerW", "HttpSendRequestW", "InternetReadFile")
STATES = tuple("state: " + state for state in ("installer's mutex abandoned", "log folder missing", "no variable set",
                                               "temporary folder missing"))
# Endings that are meant; docs/testing.md has the reasons.
EXPECTED = (("uninstall", "OpenMutexW", "false success"), ("uninstall", "engine: GetVariableString", "false success"))
ENDINGS = {3: "a hang: the run did not end", 5: "a crash"}


def rows_for(kind: str, counts: dict[str, int], short: bool) -> list[tuple[str, str, int, int]]:
    """The faults of a kind of run: of each function that it calls the first, the second, the last and every call."""
    rows = [(kind, state, 0, 0) for state in STATES]
    for function, calls in counts.items():
        if function in MEMORY:
            if short:
                continue
            chosen = {1 + (calls - 1) * at // 24 for at in range(24)}
        else:
            # The number of calls varies a little: the last of a count may not come.
            chosen = {0} if short else {0, 1, min(2, calls), calls}
            if calls == 1:
                chosen = {0}
        rows += [(kind, function, call, 0) for call in sorted(chosen)]
        if function in SLOW and not short:
            rows.append((kind, function, 1, 1))
    return rows


def drive(wine, rows: list, log) -> tuple[dict[int, list[str]], dict[str, dict[str, int]]]:
    """Runs rows; the driver starts anew after one that ended its process. Gives what each printed, and counts."""
    file = wine.path("C:\\faults\\rows.txt")
    file.write_text("".join("|".join(map(str, row)) + "\n" for row in rows))
    ended, counts, first = {}, {}, 0
    while first < len(rows):
        process = wine.start("C:\\faults\\driver.exe", str(LIBRARY), "C:\\faults\\rows.txt", str(first),
                             stdout=subprocess.PIPE, text=True, encoding="utf-8", errors="replace")
        for line in process.stdout:
            log.write(line)
            log.flush()
            fields = line.rstrip().split("|")
            if fields[0] == "row":
                ended[int(fields[1])] = [fields[2], "|".join(fields[3:-1]), fields[-1]]
            elif fields[0] == "count":
                counts.setdefault(fields[1], {})[fields[2]] = int(fields[3])
        code = process.wait()
        first = max(ended, default=-1) + 1
        if first < len(rows):
            ended[first] = [ENDINGS.get(code, f"the process ended with {code:#x}"), "no end", "1"]
            first += 1
    return ended, counts


def play(options) -> int:
    out = OUT / "faults" / options.kind
    out.mkdir(parents=True, exist_ok=True)
    Services(out)
    with copy_of_prepared("faults", os.environ["DISPLAY"]) as wine, (out / "driver.log").open("w") as log:
        wine.complaints = out / "wine.txt"
        # Wine's debugger can wait for the process that waits for it.
        wine.environment["WINEDLLOVERRIDES"] += ";winedbg.exe="
        folder = wine.path("C:\\faults")
        folder.mkdir()
        (folder / "driver.exe").write_bytes((PROGRAMS / "faults_driver.exe").read_bytes())
        kinds = [options.kind] if options.kind else KINDS[:3:2] if options.short else KINDS
        _, counts = drive(wine, [(kind, "", 0, 0) for kind in kinds], log)
        rows = [(kind, "", 0, 0) for kind in kinds]
        for kind in kinds:
            rows += [row for row in rows_for(kind, counts.get(kind, {}), options.short)
                     if re.search(options.only, row[1])]
        started = time.monotonic()
        ended, _ = drive(wine, rows, log)
    table, failed, missed = [], 0, 0
    for number, (kind, function, call, slow) in enumerate(rows):
        verdict, ending, injected = ended[number]
        what = f"{function or 'nothing'}{' is slow' if slow else ''}"
        which = "" if not function else "every call" if call == 0 else f"call {call}"
        if function and injected == "0":
            missed += 1
            verdict = verdict if verdict != "ok" else "not reached"
        if any(verdict.startswith(ending) for *fault, ending in EXPECTED if fault == [kind, function]):
            verdict = f"expected: {verdict}"
        failed += not verdict.startswith(("ok", "not reached", "expected"))
        table.append(f"{kind:<10}{what:<38}{which:<12}{verdict:<28}{ending[:150]}")
    (out / "table.txt").write_text("\n".join(table) + "\n", "utf-8")
    bad = [line for line in table if not re.search(r"^.{60}(ok|not reached|expected)\b", line)]
    print("\n".join(bad if options.short else table))
    print(f"{len(rows)} rows, {failed} failed, {missed} not reached, {time.monotonic() - started:.0f} s; "
          f"see {out.relative_to(ROOT)}/table.txt")
    return 1 if failed or not rows else 0


def main() -> int:
    parser = argparse.ArgumentParser(prog="./faults.sh", description=__doc__)
    parser.add_argument("--short", action="store_true", help="two kinds of run, every call of each function")
    parser.add_argument("--only", default="", help="a pattern for functions' names")
    parser.add_argument("--kind", default="", choices=("", *KINDS), help="one kind of run")
    parser.add_argument("--play", action="store_true", help=argparse.SUPPRESS)
    options = parser.parse_args()
    if options.play:
        return play(options)
    build("release")
    with virtual_display() as display:
        prepare(display)
        command = sandboxed([sys.executable, "-m", "harness.faults", "--play", *sys.argv[1:]])
        return subprocess.run(command, cwd=ROOT, env=os.environ | {"DISPLAY": display}).returncode


if __name__ == "__main__":
    sys.exit(main())
