"""Measures the shipped library under Wine, in a prefix of its own, with the services beside it, in a sandbox."""
import os
import sys
import tempfile
from pathlib import Path

from harness.building.signing import sign
from harness.machine.prefix import copy_of_prepared
from harness.places import BENCH, BENCH_RESULT, LIBRARY, VERSION_LIBRARY
from harness.services import Services

if __name__ == "__main__":
    # Wine has a line for each look at a drive that is none of its own.
    with tempfile.TemporaryDirectory() as scratch, BENCH_RESULT.with_suffix(".log").open("wb") as warnings:
        services = Services(Path(scratch))
        signed = Path(scratch, "signed")
        signed.mkdir()
        sign(LIBRARY, signed / "PalisadeSetup.exe")
        sign(VERSION_LIBRARY, signed / "version.dll")
        with copy_of_prepared("bench", os.environ["DISPLAY"]) as wine:
            arguments = [str(LIBRARY), str(BENCH_RESULT), services.tests.url(""), str(signed)]
            sys.exit(wine.start(BENCH, *arguments, stdout=None, stderr=warnings).wait())
