"""Loads, runs and frees the shipped library many times, in a sandbox: a line a round, exit code 0 if all held."""
import os
import sys

from harness.machine.prefix import copy_of_prepared
from harness.places import BUILD, LIBRARY, OUT

if __name__ == "__main__":
    driver = BUILD / "release/harness/lifecycle_driver.exe"
    with copy_of_prepared("lifecycle", os.environ["DISPLAY"]) as wine:
        wine.complaints = OUT / "tests/lifecycle-wine.txt"
        sys.exit(wine.start(driver, str(LIBRARY), *sys.argv[1:], stdout=None).wait())
