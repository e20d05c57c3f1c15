"""Where things are: the project's folders and what the builds leave in them."""
import re
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
BUILD = ROOT / "build"
OUT = ROOT / "out"
SCENARIOS = ROOT / "tests/scenarios"

PROGRAMS = BUILD / "release/harness"
LIBRARY = BUILD / "release/PalisadeBootstrapper.dll"
OTHER_LIBRARY = BUILD / "release/other-deployment/PalisadeBootstrapper.dll"
VERSION_LIBRARY = BUILD / "release/version/version.dll"
PACKAGE = PROGRAMS / "client/PalisadeApp.msi"
PROBE = PROGRAMS / "probe.exe"
WATCHER = PROGRAMS / "watcher.exe"
FUZZ_TARGETS = BUILD / "host/fuzz_targets"
HOST_TESTS = BUILD / "host/rules_tests"
WINDOWS_TESTS = BUILD / "checked/windows_tests.exe"
BENCH = BUILD / "release/bench/bench.exe"
BENCH_RESULT = OUT / "bench.json"
ENGINE = ROOT / "harness/burn/node_modules/wixtoolset-compiler/bin/x86/burn.exe"
CANDLE = ROOT / "harness/burn/node_modules/wixtoolset-compiler/bin/candle.exe"
SAMPLE = ROOT / "sample"
GUIDE = ROOT / "docs/bundle.md"
CONFIGURATIONS = ROOT / "resources"
OTHER_CONFIGURATIONS = ROOT / "harness/deployment"
CERTIFICATE = ROOT / "resources/certificate.der"

# The one place of the version; the build takes it from there too.
_VERSION_HEADER = ROOT / "platform/product/InstallerVersion.h"
VERSION = re.search(r'installerVersion = "([\d.]+)"', _VERSION_HEADER.read_text())[1]
