#!/usr/bin/env bash
# Draws the dialog's pages anew (the scenario gallery) and takes from it the pictures that the documents show.
set -euo pipefail
cd "$(dirname "$0")/../.."
./run.sh gallery
while read -r page picture; do
  cp "out/gallery/en/$page.png" "docs/images/$picture.png"
done <<'PICTURES'
welcome welcome
install-determinate progress
PICTURES
