#!/usr/bin/env bash
# ./run.sh [--list] [--show] [SCENARIO...]: sets up what is missing, builds, runs scenarios on the real engine.
set -euo pipefail
cd "$(dirname "$0")"
harness/machine/setup.sh
exec python3 -m harness.run "$@"
