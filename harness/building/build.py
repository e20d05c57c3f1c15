"""Builds: presets of CMake with a line before and after each, and the compiler's output where a build fails."""
import re
import subprocess
import sys
import time

from harness.places import BUILD, ROOT

# What is built: its preset and target. The library and the sample client; what ships alone; what measures it; the
# tests under Wine; the rules' tests; the fuzz targets, and those for libFuzzer.
TARGETS = {"release": ("release", "all"), "library": ("release", "PalisadeBootstrapper version_library"),
           "bench": ("release", "bench"), "checked": ("checked", "windows_tests"), "host": ("host", "rules_tests"),
           "fuzz": ("host", "fuzz_targets"), "libfuzzer": ("fuzz", "fuzz_targets")}


def _gist(output: str) -> str:
    """The first errors of a build's output, or its end where it names none."""
    lines = output.splitlines()
    named = [line for line in lines if re.search(r": (fatal )?error: |undefined reference|^FAILED:", line)]
    return "\n".join(named[:20] or lines[-40:])


def build(*names: str, aside: bool = False) -> None:
    """Builds what TARGETS names; ends the program if a build fails. One `aside` runs with the lowest priority."""
    for name in names:
        preset, target = TARGETS[name]
        started = time.monotonic()
        print(f"building {name}", flush=True)
        log = BUILD / f"{name}.log"
        log.parent.mkdir(exist_ok=True)
        with log.open("w") as output:
            for command in (["cmake", "--preset", preset],
                            ["cmake", "--build", "--preset", preset, "--target", *target.split()]):
                given = ["nice", "-n", "19", *command] if aside else command
                if subprocess.run(given, cwd=ROOT, stdout=output, stderr=subprocess.STDOUT).returncode:
                    print(f"building {name} failed\n{_gist(log.read_text(errors='replace'))}")
                    print(f"the whole output: {log.relative_to(ROOT)}")
                    sys.exit(1)
        print(f"{name} is built, {time.monotonic() - started:.0f} s", flush=True)
