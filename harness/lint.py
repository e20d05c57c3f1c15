"""The linters, each with its configuration in the tree; what ./lint.sh runs, and ./test.sh beside the scenarios."""
import argparse
import json
import subprocess
import sys
import time
import tomllib
from collections.abc import Callable
from concurrent.futures import ThreadPoolExecutor

from harness import tidy
from harness.places import ROOT

# Around what ships speed does not matter, memory runs short on purpose, and sizes of pointers are wanted.
AROUND = "-performance-*,-misc-new-delete-overloads,-bugprone-sizeof-expression"
MODULES = ("config", "core", "library", "platform", "reporting", "state", "telemetry", "ui")


def listed(*patterns: str) -> list[str]:
    """The files of the tree that match, as paths below its root."""
    listing = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard", "--", *patterns],
                             cwd=ROOT, capture_output=True, text=True, check=True)
    return [name for name in listing.stdout.splitlines() if (ROOT / name).is_file()]


def findings(*command: str, given: str | None = None) -> str:
    """What a linter prints, with `given` as its standard input; empty if it ended with 0."""
    done = subprocess.run(["nice", "-n", "19", *command], cwd=ROOT, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          text=True, errors="replace", input=given)
    return "" if done.returncode == 0 else done.stdout or f"{command[0]} ended with {done.returncode}"


def clang_format() -> str:
    return findings("clang-format", "--dry-run", "-Werror", *listed("*.cpp", "*.h"))


def shellcheck() -> str:
    return findings("shellcheck", *listed("*.sh", ".ci/run"))


def cppcheck() -> str:
    # Tests are left out: it does not know the test library's macros.
    return findings("cppcheck", "--quiet", "--enable=warning,performance,portability", "--std=c++20", "--language=c++",
                    "--platform=win32W", "-j2", "-I.", "--suppressions-list=.cppcheck", "--error-exitcode=1",
                    "--template={file}:{line}: {id}: {message}", *listed("*.cpp", ":!tests", ":!cmake"))


def clang_tidy() -> str:
    shipped = tidy.units("shipped", listed(*(f"{module}/*.cpp" for module in MODULES)))
    # The fuzz targets' drivers are for the host alone.
    around = tidy.units("around", listed("tests/*.cpp", "bench/*.cpp", "harness/*.cpp", "fuzz/*.cpp",
                                         ":!fuzz/Driver.cpp", ":!fuzz/LibFuzzer.cpp"))
    jobs = [(str(unit), "") for unit in shipped] + [(str(unit), AROUND) for unit in around]
    flags = tidy.flags()
    with ThreadPoolExecutor(2) as pool:
        return "".join(pool.map(lambda job: findings("clang-tidy", "--quiet", f"--checks={job[1]}", job[0], "--",
                                                     *flags), jobs))


def ruff() -> str:
    task = {"options": tomllib.loads((ROOT / "ruff.toml").read_text()),
            "files": {name: (ROOT / name).read_text() for name in listed("*.py")}}
    return findings("node", "harness/ruff/check.js", given=json.dumps(task))


LINTERS: dict[str, Callable[[], str]] = {
    "clang-format": clang_format, "clang-tidy": clang_tidy, "cppcheck": cppcheck, "ruff": ruff,
    "shellcheck": shellcheck}


def run(*names: str) -> dict[str, str]:
    """Runs the linters named, or all, and prints a line for each; gives their findings, empty where there are none."""
    found = {}
    for name in names or LINTERS:
        started = time.monotonic()
        found[name] = LINTERS[name]()
        mark = "✗" if found[name] else "✓"
        print(f"  {mark} {name}, {time.monotonic() - started:.0f} s\n{found[name]}".rstrip(), flush=True)
    return found


def main() -> int:
    parser = argparse.ArgumentParser(prog="./lint.sh", description="Runs the linters named, otherwise all.")
    parser.add_argument("linter", nargs="*", help=", ".join(LINTERS))
    names = parser.parse_args().linter
    if unknown := set(names) - set(LINTERS):
        parser.error(f"no linter is called {', '.join(sorted(unknown))}")
    return int(any(run(*names).values()))


if __name__ == "__main__":
    sys.exit(main())
