#!/usr/bin/env bash
# Sets up what is missing, runs all linters over the tree: ./lint.sh [LINTER...]
set -euo pipefail
cd "$(dirname "$0")"
harness/machine/setup.sh
exec python3 -m harness.lint "$@"
