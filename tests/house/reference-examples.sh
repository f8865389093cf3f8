#!/usr/bin/env bash
# The examples of the reference come out as they should, and the files that they leave conform to their
# schemas: reference-examples.sh <program>
set -eu
schemas=$(cd "$(dirname "$0")/../../docs/schema" && pwd)
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
${EMULATOR-} "$1" "$folder"
for kind in repostry repostry_private bookmark visit authinfo fontlist cookies:cookies thumbnail:thumbnails; do
    xmllint --noout --relaxng "$schemas/${kind%:*}.rng" "$folder/${kind#*:}.xml"
done
