#!/usr/bin/env bash
# ./faults.sh [--short] [--only PATTERN]: runs the library with one fault of the platform after another, prints a table.
set -euo pipefail
cd "$(dirname "$0")"
harness/machine/setup.sh
exec python3 -m harness.faults "$@"
