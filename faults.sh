#!/usr/bin/env bash
# ./faults.sh [--short] [--kind KIND] [--only PATTERN]: runs the library with one fault after another, prints a table.
set -euo pipefail
cd "$(dirname "$0")"
harness/machine/setup.sh
exec python3 -m harness.faults "$@"
