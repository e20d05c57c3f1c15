#!/usr/bin/env bash
# ./fuzz.sh MINUTES [TARGET...]: sets up what is missing, looks for inputs that break a fuzz target, guided by coverage.
set -euo pipefail
cd "$(dirname "$0")"
harness/machine/setup.sh clang-14 libclang-rt-14-dev
exec python3 -m harness.fuzz "$@"
