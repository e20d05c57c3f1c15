#!/usr/bin/env bash
# Sets up what is missing, builds, runs all tests and scenarios; the last line counts passed, failed, skipped and played twice.
set -euo pipefail
cd "$(dirname "$0")"
harness/machine/setup.sh
exec python3 -m harness.test "$@"
