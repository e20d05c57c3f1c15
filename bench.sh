#!/usr/bin/env bash
# Sets up what is missing, builds the library as it ships, prints a table of measurements and writes out/bench.json.
set -euo pipefail
cd "$(dirname "$0")"
harness/machine/setup.sh
exec python3 -m harness.bench "$@"
