#!/usr/bin/env bash
# What the scripts cannot take they refuse with one line and status 2, before they install or build
# anything: scripts.sh
set -eu
root=$(cd "$(dirname "$0")/../.." && pwd)
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
# From another folder, which relative paths count from.
cd "$folder"
touch file
mkdir given
failed=0

# refuses <script> [argument]...
refuses() {
    local status=0
    timeout 20 "$root/scripts/$1" "${@:2}" >out 2>err </dev/null || status=$?
    if [ "$status" -ne 2 ] || [ -s out ] || [ "$(wc -l <err)" -ne 1 ] || ! grep -q "^$1: ." err; then
        echo "$*: status $status, and printed:"
        cat out err
        failed=1
    fi
}

for number in 0 09 -1 x '' 1000000 '1 2'; do
    refuses bench "$number"
    refuses fuzz "$number"
done
refuses bench 1 2
refuses fuzz 1 2
refuses coverage x
refuses demo given given
refuses demo missing
refuses demo file
refuses kiosk-images x
refuses kiosk-pages x
refuses package --fresh
refuses package --fresh-root x
refuses reference given given
refuses reference file
refuses report-images x
refuses sample-profile
refuses sample-profile given
refuses sample-profile missing x
refuses test debug
refuses test release x

[ "$failed" -eq 0 ] && echo "all refused"
