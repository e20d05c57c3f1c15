"""Runs a program under Wine, in a sandbox and a prefix of its own: python3 -m harness.machine.sandbox
python3 -m harness.wine tests|bench|lifecycle [options]."""
import contextlib
import os
import re
import shutil
import sys
import tempfile
from pathlib import Path

from harness.building.signing import sign
from harness.machine.display import virtual_display
from harness.machine.prefix import copy_of_prepared
from harness.places import BENCH, BENCH_RESULT, LIBRARY, OUT, PROGRAMS, VERSION_LIBRARY, WINDOWS_TESTS
from harness.services import Services


def tests(display: str, *options: str) -> int:
    """The tests that need Windows, with the services running. A shard (GoogleTest's) has a folder of its own."""
    shard = {name: value for name, value in os.environ.items() if name.startswith("GTEST_")}
    out = OUT / "tests" / f"windows-{shard.get('GTEST_SHARD_INDEX', '0')}"
    out.mkdir(parents=True, exist_ok=True)
    services = Services(out)
    with copy_of_prepared("windows-tests", display) as wine:
        wine.complaints = out / "wine.txt"
        environment = {"PALISADE_TEST_HOST": services.tests.url("")} | shard
        return wine.start(WINDOWS_TESTS, *options, environment=environment, stdout=None).wait()


def bench(display: str) -> int:
    """Measures the shipped library, with the services running."""
    # Wine has a line for each look at a drive that is none of its own.
    with tempfile.TemporaryDirectory() as scratch, BENCH_RESULT.with_suffix(".log").open("wb") as warnings:
        services = Services(Path(scratch))
        signed = Path(scratch, "signed")
        signed.mkdir()
        sign(LIBRARY, signed / "PalisadeSetup.exe")
        sign(VERSION_LIBRARY, signed / "version.dll")
        with copy_of_prepared("bench", display) as wine:
            arguments = [str(LIBRARY), str(BENCH_RESULT), services.tests.url(""), str(signed)]
            return wine.start(BENCH, *arguments, stdout=None, stderr=warnings).wait()


def lifecycle(display: str, *options: str) -> int:
    """Loads, runs and frees the shipped library many times: a line a round, 0 if all held and nothing is left of the
    rounds in the temporary folder but the pinned libraries of the reloads."""
    with copy_of_prepared("lifecycle", display) as wine:
        wine.complaints = OUT / "tests/lifecycle-wine.txt"
        folder, temporary = wine.path("C:\\lifecycle"), wine.path("C:\\users\\root\\Temp")
        folder.mkdir()
        shutil.copyfile(PROGRAMS / "lifecycle_driver.exe", folder / "driver.exe")
        shutil.copyfile(LIBRARY, folder / "stray.dll")
        code = wine.start("C:\\lifecycle\\driver.exe", str(LIBRARY), *options, stdout=None).wait()
        made = [str(entry.relative_to(temporary)) for entry in temporary.rglob("*")]
        left = [entry for entry in made if not re.fullmatch(r"reload-\d+(/\.ba(/PalisadeBootstrapper\.dll)?)?", entry)]
        print(f"the driver ended with {code}; left in the temporary folder: {left}")
        return code or len(left)


if __name__ == "__main__":
    with contextlib.nullcontext(os.environ["DISPLAY"]) if "DISPLAY" in os.environ else virtual_display() as shown:
        sys.exit({"tests": tests, "bench": bench, "lifecycle": lifecycle}[sys.argv[1]](shown, *sys.argv[2:]))
