#!/usr/bin/env bash
# Sets up what is missing, builds, runs all tests and scenarios; ends with "N passed, N failed", behind it what was skipped.
set -euo pipefail
cd "$(dirname "$0")"
harness/machine/setup.sh
exec python3 -m harness.test
