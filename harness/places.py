"""Where things are: the project's folders and what the builds leave in them."""
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
BUILD = ROOT / "build"
OUT = ROOT / "out"
SCENARIOS = ROOT / "tests/scenarios"

LIBRARY = BUILD / "release/PalisadeBootstrapper.dll"
OTHER_LIBRARY = BUILD / "release/other-deployment/PalisadeBootstrapper.dll"
PROBE = BUILD / "release/harness/probe.exe"
LIFECYCLE_DRIVER = BUILD / "release/harness/lifecycle_driver.exe"
VERSION_LIBRARY = BUILD / "release/harness/version/version.dll"
PACKAGE = BUILD / "release/harness/client/PalisadeApp.msi"
HOST_TESTS = BUILD / "host/rules_tests"
WINDOWS_TESTS = BUILD / "checked/windows_tests.exe"
BENCH = BUILD / "release/bench/bench.exe"
BENCH_RESULT = OUT / "bench.json"
ENGINE = ROOT / "harness/burn/node_modules/wixtoolset-compiler/bin/x86/burn.exe"
CONFIGURATIONS = ROOT / "resources"
OTHER_CONFIGURATIONS = ROOT / "harness/deployment"
CERTIFICATE = ROOT / "resources/certificate.der"
