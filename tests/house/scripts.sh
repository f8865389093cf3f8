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
refuses bench arm
refuses bench release 0
refuses bench qt6 1 2
refuses bench 1 qt6
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
refuses test all release
unset VELMORA_QT4 VELMORA_QT4_ARM
refuses bench qt4
refuses bench qt4 1
refuses test qt4
refuses test arm
refuses test all
VELMORA_QT4=$folder refuses bench qt4
VELMORA_QT4=$folder refuses test qt4
VELMORA_QT4_ARM=$folder refuses test arm
refuses qt4
refuses qt4 given
refuses qt4 given prefix
refuses qt4 given prefix x
git init -q clone
git -C clone -c user.name=x -c user.email=x commit -q --allow-empty -m x
git -C clone branch 4.8
refuses qt4 clone prefix arm
VELMORA_QT4=$folder refuses qt4 clone prefix arm
refuses arm-packages
refuses arm-packages given x
refuses arm-packages .

[ "$failed" -eq 0 ] && echo "all refused"
