#!/usr/bin/env bash
# Builds the library as it ships, measures it under Wine, prints a table and writes out/bench.json.
set -euo pipefail
cd "$(dirname "$0")"

harness/setup/setup.sh
mkdir -p out build
log=build/bench-build.log
echo "bench: building"
if ! { cmake --preset release && cmake --build --preset release --target PalisadeBootstrapper bench; } >"$log" 2>&1
then
  tail -n 20 "$log" >&2
  echo "bench: the build failed; see $log" >&2
  exit 1
fi

# A prefix of its own, so that nothing else runs in it meanwhile.
export WINEPREFIX=$PWD/build/bench-prefix WINEDEBUG=-all WINEDLLOVERRIDES="mscoree=;mshtml=;winemenubuilder.exe="
trap 'wineserver -k 2>/dev/null || true' EXIT
xvfb() { xvfb-run --auto-servernum --server-args="-screen 0 1280x1024x24 -nolisten tcp" "$@"; }
if [ ! -f "$WINEPREFIX/prepared" ]; then
  echo "bench: preparing a Wine prefix (once)"
  xvfb wineboot --init >/dev/null 2>&1
  xvfb wine reg add 'HKCU\Software\Wine' /v Version /d win10 /f >/dev/null 2>&1
  wineserver -w
  touch "$WINEPREFIX/prepared"
fi

xvfb wine build/release/bench/bench.exe build/release/PalisadeBootstrapper.dll out/bench.json
echo "bench: written to out/bench.json"
