#!/usr/bin/env bash
# ./soak.sh [ROUNDS]: installs, repairs and uninstalls again and again, prints what each round holds and a verdict.
set -euo pipefail
cd "$(dirname "$0")"
harness/machine/setup.sh
exec python3 -m harness.soak "$@"
