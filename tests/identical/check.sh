#!/usr/bin/env bash
# Runs a program and compares what it prints with what is kept: check.sh <kept file> [--update]
# <program> [<argument>...]. What is kept in parts as digests shows whole with the argument --whole.
set -eu
kept=$1
shift
update=
if [ "$1" = --update ]; then
    update=1
    shift
fi
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

TMPDIR=$folder "$@" >"$folder/printed"
[ -s "$folder/printed" ] || { echo "nothing was printed"; exit 1; }
if [ -n "$update" ]; then
    cp "$folder/printed" "$kept"
elif ! diff -u "$kept" "$folder/printed"; then
    echo "Not what is kept. If it is meant to be: $0 $kept --update $*"
    exit 1
fi
