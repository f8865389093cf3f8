#!/usr/bin/env bash
# Counts the instructions of the operations that a page visit or a start of the browser waits for,
# with 999 entries, and compares them with the kept figures: check.sh <program> <figures>
# [--update]. A count does not depend on what else the machine does; 10 % more is a regression.
set -eu
program=$1
figures=$2
update=${3:-}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# In a folder of its own: each operation adds to what it finds.
count() {
    mkdir "$folder/$1"
    TZ=UTC LC_ALL=C.UTF-8 LD_BIND_NOW=1 valgrind --tool=callgrind --toggle-collect=measured \
        --callgrind-out-file=/dev/null "$program" "$1" "$folder/$1/" </dev/null 2>"$folder/output" || {
        cat "$folder/output" >&2
        return 1
    }
    sed -n 's/^==[0-9]*== Collected : \([0-9]*\)$/\1/p' "$folder/output"
}

: >"$folder/counts"
worse=0
while read -r operation kept; do
    counted=$(count "$operation")
    [ "${counted:-0}" -gt 0 ] || { echo "no instructions of '$operation' were counted"; exit 1; }
    echo "$operation $counted" >>"$folder/counts"
    echo "$operation: $counted instructions, $kept kept, $((counted * 100 / kept)) %"
    [ $((counted * 10)) -le $((kept * 11)) ] || worse=1
done <"$figures"
[ -s "$folder/counts" ] || { echo "$figures holds no figures"; exit 1; }
if [ "$update" = --update ]; then
    cp "$folder/counts" "$figures"
elif [ "$worse" -ne 0 ]; then
    echo "More than 10 % above what is kept. If it is meant to be: $0 $program $figures --update"
    exit 1
fi
