#!/usr/bin/env bash
# The README's example keeps a font in a fresh folder: usage.sh <program>
set -eu
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
diff <(echo "0: DejaVu Sans") <(${EMULATOR-} "$1" "$folder/")
[ -s "$folder/fontlist.xml" ] || { echo "fontlist.xml is missing"; exit 1; }
echo "the example ran"
