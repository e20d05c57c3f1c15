"""Loads, runs and frees the shipped library a hundred times in a prefix of its own: DISPLAY=:N python3 -m
harness.machine.sandbox python3 -m harness.staging.lifecycle [ROUNDS]. Prints a line a round; exit code 0 if everything
held."""
import os
import sys

from harness.machine.prefix import copy_of_prepared
from harness.places import BUILD, LIBRARY, OUT

DRIVER = BUILD / "release/harness/lifecycle_driver.exe"

if __name__ == "__main__":
    with copy_of_prepared("lifecycle", os.environ["DISPLAY"]) as wine:
        wine.complaints = OUT / "tests/lifecycle-wine.txt"
        wine.complaints.parent.mkdir(parents=True, exist_ok=True)
        sys.exit(wine.start(DRIVER, str(LIBRARY), *sys.argv[1:], stdout=None).wait())
