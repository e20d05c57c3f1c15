"""Builds: presets of CMake with a line before and after each, and the compiler's output where a build fails."""
import re
import subprocess
import sys
import time

from harness.places import BUILD, ROOT

# What is built of each preset: the library and the sample client; the tests under Wine; the rules' tests.
TARGETS = {"release": "all", "checked": "windows_tests", "host": "rules_tests"}


def _gist(output: str) -> str:
    """The first errors of a build's output, or its end where it names none."""
    lines = output.splitlines()
    named = [line for line in lines if re.search(r": (fatal )?error: |undefined reference|^FAILED:", line)]
    return "\n".join(named[:20] or lines[-40:])


def build(*presets: str, aside: bool = False) -> None:
    """Ends the program if a build fails. One that goes on `aside` takes what others leave of the processors."""
    for preset in presets:
        started = time.monotonic()
        print(f"building {preset}", flush=True)
        log = BUILD / f"{preset}.log"
        log.parent.mkdir(exist_ok=True)
        with log.open("w") as output:
            for command in (["cmake", "--preset", preset],
                            ["cmake", "--build", "--preset", preset, "--target", TARGETS[preset]]):
                given = ["nice", "-n", "19", *command] if aside else command
                if subprocess.run(given, cwd=ROOT, stdout=output, stderr=subprocess.STDOUT).returncode:
                    print(f"building {preset} failed\n{_gist(log.read_text(errors='replace'))}")
                    print(f"the whole output: {log.relative_to(ROOT)}")
                    sys.exit(1)
        print(f"{preset} is built, {time.monotonic() - started:.0f} s", flush=True)
