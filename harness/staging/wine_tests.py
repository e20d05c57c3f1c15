"""Runs the tests that need Windows, with the services beside them, in a sandbox: python3 -m harness.machine.sandbox
python3 -m harness.staging.wine_tests [options]. A shard, by GoogleTest's variables, keeps its traces apart."""
import contextlib
import os
import sys

from harness.machine.display import virtual_display
from harness.machine.prefix import copy_of_prepared
from harness.places import OUT, WINDOWS_TESTS
from harness.services import Services

if __name__ == "__main__":
    shard = {name: value for name, value in os.environ.items() if name.startswith("GTEST_")}
    out = OUT / "tests" / f"windows-{shard.get('GTEST_SHARD_INDEX', '0')}"
    out.mkdir(parents=True, exist_ok=True)
    services = Services(out)
    with contextlib.nullcontext(os.environ["DISPLAY"]) if "DISPLAY" in os.environ else virtual_display() as display, \
            copy_of_prepared("windows-tests", display) as wine:
        wine.complaints = out / "wine.txt"
        environment = {"PALISADE_TEST_HOST": services.tests.url("")} | shard
        sys.exit(wine.start(WINDOWS_TESTS, *sys.argv[1:], environment=environment, stdout=None).wait())
