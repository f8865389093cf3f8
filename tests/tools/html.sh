#!/usr/bin/env bash
# The page of velmora-profile report is valid HTML, whatever the profile holds:
# html.sh <velmora-profile>. Ends with status 77 where nothing can be checked.
set -eu
tool=$1
cd "$(dirname "$0")/../.."
command -v tidy >/dev/null || { echo "skipped: there is no HTML checker here (Debian package tidy)"; exit 77; }
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

python3 scripts/sample-profile "$folder/sample"
python3 tests/tools/hostile-profile "$folder/hostile"
mkdir "$folder/empty"
for profile in sample hostile empty; do
    "$tool" report "$folder/$profile" -o "$folder/page.html"
    # Errors and warnings alike; what it says is all on standard error.
    if ! tidy -quiet -errors --show-info no "$folder/page.html" 2>"$folder/faults" ||
        [ -s "$folder/faults" ]; then
        cat "$folder/faults"
        echo "the page of the $profile profile is no valid HTML"
        exit 1
    fi
done

# The checker sees what it should see.
sed 's,</h1>,,' "$folder/page.html" >"$folder/broken.html"
! tidy -quiet -errors "$folder/broken.html" 2>/dev/null || { echo "the checker checks nothing"; exit 1; }
echo "3 pages are valid"
