"""What ./test.sh does: builds the library, then plays all scenarios, while the tests are built and run."""
import argparse
import os
import re
import subprocess
import sys
import traceback
from collections.abc import Callable
from concurrent.futures import ThreadPoolExecutor
from functools import partial
from typing import NamedTuple

from harness import documents, lint, runner
from harness.building import artefact, sample
from harness.building.build import build
from harness.machine.display import virtual_display
from harness.machine.prefix import prepare
from harness.machine.sandbox import sandboxed
from harness.places import FUZZ_TARGETS, HOST_TESTS, OUT, ROOT
from harness.release.trial import trial
from harness.scenario import play

BOUND = 600  # seconds for one test program
SHARDS = 2  # of the tests under Wine, one beside the other


class Counts(NamedTuple):
    passed: int = 0
    failed: int = 0
    skipped: int = 0
    twice: int = 0  # scenarios whose first play failed by Wine's fault

    def __str__(self) -> str:
        return f"{self.passed} passed, {self.failed} failed" + (f", {self.skipped} skipped" if self.skipped else "")


def total(counts: list[Counts]) -> Counts:
    return Counts(*map(sum, zip(*counts)))


def run_program(title: str, command: list[str], environment: dict[str, str]) -> tuple[int, str, str]:
    """Runs a test program, its output kept as out/tests/<title>.log; gives its code, that in words, and its output."""
    log = OUT / f"tests/{title}.log"
    log.parent.mkdir(parents=True, exist_ok=True)
    with log.open("wb") as output:
        try:
            code = subprocess.run(command, cwd=ROOT, env=os.environ | environment, stdout=output,
                                  stderr=subprocess.STDOUT, timeout=BOUND).returncode
            ending = f"ended with {code}"
        except subprocess.TimeoutExpired:
            code, ending = 1, f"was still running after {BOUND} s"
    return code, ending, log.read_text("utf-8", "replace").replace("\r", "")


def run_tests(title: str, command: list[str], environment: dict[str, str]) -> Counts:
    """Runs a GoogleTest program, prints its failures and what it skips. A program that ends without its own summary, or
    badly after it, counts as one more failure."""
    code, ending, text = run_program(title, command, environment)
    passed = len(re.findall(r"^\[       OK \]", text, re.M))
    failures = re.findall(r"^\[  FAILED  \] .* \(\d+ ms\)$", text, re.M)
    skipped = re.findall(r"^\[  SKIPPED \] (\S+) \(\d+ ms\)$", text, re.M)
    complete = re.search(r"^\[==========\] \d+ tests? from .* ran\.", text, re.M) is not None
    broken = not complete or (code != 0 and not failures)
    counts = Counts(passed, len(failures) + broken, len(skipped))
    print(f"\n{title} tests: {counts}, see out/tests/{title}.log")
    for case in skipped:
        print(f"  skipped: {case}")
    # Each failing case in full: from its start to its end.
    for case in re.finditer(r"^\[ RUN      \] (\S+)\n(?:(?!\[ RUN ).*\n)*?\[  FAILED  \] \1\b.*$", text, re.M):
        print(case[0])
    if broken:
        print(f"  the program {ending}; its output ends:\n" + "\n".join(text.splitlines()[-20:]))
    sys.stdout.flush()
    return counts


def run_checks(what: str, checks: Callable[[], dict[str, bool]]) -> Counts:
    """Of a file that ships."""
    found = checks()
    print("\n" + "\n".join(f"  {'✓' if ok else '✗'} {what} {name}" for name, ok in found.items()), flush=True)
    return Counts(sum(found.values()), len(found) - sum(found.values()))


def run_sample() -> Counts:
    """The toolset's compiler on the sample bundle, a case a variant; and whether the guide names each variable."""
    found = {f"the sample bundle compiles, {variant}": sample.compiled(variant) for variant in sample.VARIANTS}
    missing = sample.unexplained()
    found["the guide names each bundle variable"] = (not missing, str(missing))
    print("\n" + "\n".join(f"  {'✓' if ok else '✗'} {case}" + ("" if ok else f"\n{text}")
                           for case, (ok, text) in found.items()), flush=True)
    passed = sum(ok for ok, _ in found.values())
    return Counts(passed, len(found) - passed)


def guarded(job) -> Counts:
    """A job that breaks is one more failure, and the others go on."""
    try:
        return job()
    except (Exception, SystemExit):
        print(f"\na job broke:\n{traceback.format_exc()}", flush=True)
        return Counts(failed=1)


def run_scenario(name: str) -> Counts:
    result = runner.play(name)
    runner.print_result(result, play.summary(name))
    held = runner.held(result)
    return Counts(passed=held, failed=not held, twice="twice" in result)


def run_windows_tests(shard: int) -> Counts:
    command = sandboxed([sys.executable, "-m", "harness.wine", "tests"])
    share = {"GTEST_TOTAL_SHARDS": str(SHARDS), "GTEST_SHARD_INDEX": str(shard)}
    with virtual_display() as display:
        return run_tests(f"windows-{shard}", command, {"DISPLAY": display} | share)


def run_fuzz() -> Counts:
    """A fixed number of inputs for each fuzz target; a target counts as one case."""
    code, ending, text = run_program("fuzz", [str(FUZZ_TARGETS), "--inputs", "2000"], {})
    held = len(re.findall(r"^\S+ +\d+ seeds, \d+ inputs", text, re.M))
    print(f"\nfuzz: {held} targets held" + ("" if code == 0 else f", it {ending}\n{text[-2000:]}"), flush=True)
    return Counts(passed=held, failed=int(code != 0))


def run_units() -> Counts:
    """Builds the tests beside the scenarios, which wait most of their time, and runs them."""
    build("host", "fuzz", "checked", aside=True)
    linters = guarded(run_linters)
    host = run_tests("host", [str(HOST_TESTS)], {})
    fuzz = run_fuzz()
    with ThreadPoolExecutor(SHARDS) as pool:
        return total([linters, host, fuzz, *pool.map(run_windows_tests, range(SHARDS))])


def run_linters() -> Counts:
    """Each linter counts as one case."""
    print("\nlinters:", flush=True)
    found = lint.run().values()
    return Counts(passed=sum(not text for text in found), failed=sum(map(bool, found)))


def run_lifecycle() -> Counts:
    """The shipped library loaded, run and freed a hundred times; counts as one case."""
    with virtual_display() as display:
        command = sandboxed([sys.executable, "-m", "harness.wine", "lifecycle"])
        code, ending, text = run_program("lifecycle", command, {"DISPLAY": display})
    tail = "" if code == 0 else f"failed, it {ending}\n" + "\n".join(text.splitlines()[-20:])
    print(f"\nlifecycle: {tail or 'held'}, see out/tests/lifecycle.log", flush=True)
    return Counts(passed=1) if code == 0 else Counts(failed=1)


def run_faults() -> Counts:
    """The shipped library with one fault of the platform after another, in the quick form; counts as one case."""
    code, ending, text = run_program("faults", [sys.executable, "-m", "harness.faults", "--short"], {})
    tail = "" if code == 0 else f", it {ending}"
    print("\nfaults: " + "\n".join(text.splitlines()[-20 if code else -1:]) + tail, flush=True)
    return Counts(passed=int(code == 0), failed=int(code != 0))


def run_documents() -> Counts:
    """The documents beside the code and what all scenarios sent; counts as one case."""
    faults = documents.faults()
    print("\ndocuments: " + ("\n  ".join(["failed", *faults]) if faults else "held"), flush=True)
    return Counts(failed=1) if faults else Counts(passed=1)


def main() -> int:
    argparse.ArgumentParser(prog="./test.sh", description=__doc__).parse_args()
    try:
        build("release")
    except SystemExit:
        print("\n0 passed, 1 failed")
        raise
    with virtual_display() as display:
        prepare(display)
    files = [partial(run_checks, "the library", artefact.checks), partial(run_checks, "the package", trial)]
    jobs = [run_faults, *files, run_sample, run_lifecycle, *(partial(run_scenario, name) for name in play.names())]
    with ThreadPoolExecutor(runner.CONCURRENT) as pool, ThreadPoolExecutor(1) as aside:
        units = aside.submit(guarded, run_units)
        counts = total([*pool.map(guarded, jobs), units.result(), guarded(run_documents)])
    print(f"\n{counts}, {counts.twice} played twice")
    return 1 if counts.failed or not counts.passed else 0


if __name__ == "__main__":
    sys.exit(main())
