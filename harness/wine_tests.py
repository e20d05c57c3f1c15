"""Runs the tests that need Windows under Wine, in a prefix of their own: python3 -m harness.wine_tests [options]."""
import os
import sys

from harness.places import WINDOWS_TESTS
from harness.prefix import copy_of_prepared

if __name__ == "__main__":
    with copy_of_prepared("windows-tests", os.environ["DISPLAY"]) as wine:
        sys.exit(wine.start(WINDOWS_TESTS, *sys.argv[1:], stdout=None, stderr=None).wait())
