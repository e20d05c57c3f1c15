"""Runs the tests that need Windows under Wine, in a prefix of their own, with the services beside them, in a sandbox:
python3 -m harness.machine.sandbox python3 -m harness.staging.wine_tests [options]."""
import contextlib
import os
import sys

from harness.machine.display import virtual_display
from harness.machine.prefix import copy_of_prepared
from harness.places import OUT, WINDOWS_TESTS
from harness.services import Services

if __name__ == "__main__":
    given = os.environ.get("DISPLAY")
    (OUT / "tests").mkdir(parents=True, exist_ok=True)
    services = Services(OUT / "tests")
    with contextlib.nullcontext(given) if given else virtual_display() as display, \
            copy_of_prepared("windows-tests", display) as wine:
        wine.complaints = OUT / "tests/windows-wine.txt"
        host = {"PALISADE_TEST_HOST": services.tests.url("")}
        sys.exit(wine.start(WINDOWS_TESTS, *sys.argv[1:], environment=host, stdout=None).wait())
