#!/usr/bin/env bash
# Sets up what is missing, builds the library and makes the release package under out/package/; --help names the options.
set -euo pipefail
cd "$(dirname "$0")"
harness/machine/setup.sh
exec python3 -m harness.release.package "$@"
