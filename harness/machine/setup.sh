#!/usr/bin/env bash
# Installs what the build and the scenarios need on Debian 12; what is there already is left alone,
# and with everything there no network is used. Run as root. Prints one line a step. Arguments are further packages.
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)

# Packages that bring headers, cross compilers or Windows programs: asked of dpkg.
packages=(
  g++-mingw-w64-i686-posix libcpptoml-dev nlohmann-json3-dev libfmt-dev googletest libz-mingw-w64-dev
  wine wine64 wine32:i386 xvfb xdotool openbox imagemagick
  wixl msitools gcab osslsigncode iproute2 ca-certificates fonts-dejavu-core
  fonts-noto-cjk fonts-tlwg-loma-ttf mono-runtime "$@"
)
# Ordinary programs, which may also come from elsewhere than Debian's packages: asked of PATH.
programs=(g++:g++ cmake:cmake ninja:ninja-build python3:python3 npm:npm git:git unshare:util-linux openssl:openssl
  clang-format:clang-format clang-tidy:clang-tidy cppcheck:cppcheck shellcheck:shellcheck)

missing=()
for package in "${packages[@]}"; do
  status=$(dpkg-query -W -f '${Status}' "$package" 2>/dev/null || true)
  [ "$status" = "install ok installed" ] || missing+=("$package")
done
for entry in "${programs[@]}"; do
  command -v "${entry%%:*}" >/dev/null 2>&1 || missing+=("${entry##*:}")
done

if [ ${#missing[@]} -gt 0 ]; then
  echo "set-up: installing ${missing[*]}"
  export DEBIAN_FRONTEND=noninteractive
  log=$(mktemp)
  dpkg --print-foreign-architectures | grep -qx i386 || dpkg --add-architecture i386
  apt-get update >"$log" 2>&1 || echo "set-up: the package lists did not all load; going on with what did"
  if apt-get install -y --no-install-recommends "${missing[@]}" >"$log" 2>&1; then
    echo "set-up: packages installed the plain way"
  else
    # An i386 index of the security suite that failed to load leaves the two architectures at
    # different versions ("held broken packages"); without that suite they agree again.
    pins=$(mktemp)
    printf 'Package: *\nPin: release n=bookworm-security\nPin-Priority: -1\n' >"$pins"
    if apt-get -o Dir::Etc::Preferences="$pins" install -y --no-install-recommends \
         "${missing[@]}" >"$log" 2>&1; then
      echo "set-up: packages installed with the security suite pinned away"
    else
      tail -n 20 "$log" >&2
      echo "set-up: the packages could not be installed" >&2
      exit 1
    fi
  fi
  rm -f "$log"
fi

# What comes from npm: a folder with its lock file, the file that is wanted of it, and what it is.
fetch() {
  [ -f "$root/$1/node_modules/$2" ] && return
  echo "set-up: fetching $3"
  (cd "$root/$1" && npm ci --ignore-scripts --no-audit --no-fund >/dev/null)
}
fetch harness/burn wixtoolset-compiler/bin/candle.exe "the Burn engine and the compiler of bundles"
fetch cmake/gumbo gumbo-parser/deps/gumbo-parser/src/gumbo.h "the HTML parser"
fetch harness/ruff @astral-sh/ruff-wasm-nodejs/ruff_wasm_bg.wasm "the linter of Python"
