#!/usr/bin/env bash
# derived-stores.sh <program> <same program, compiled with other options>...: classes derived from the
# stores are called alike and save the same files, whatever a browser is compiled with. EMULATOR, from
# the environment, runs the programs.
set -eu
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
run() {
    mkdir "$folder/$1"
    (cd "$folder/$1" && ${EMULATOR:-} "$2" >calls) || { echo "$2 failed: $?"; exit 1; }
}
run expected "$1"
shift
[ "$(grep -c '^setIDforChildren id$' "$folder/expected/calls")" -gt 20 ] \
    || { echo "the calls say nothing"; cat "$folder/expected/calls"; exit 1; }
[ "$(find "$folder/expected" -name '*.xml' | wc -l)" -eq 8 ] || { echo "not all stores saved"; exit 1; }
for program in "$@"; do
    name=$(basename "$program")
    run "$name" "$program"
    diff -r "$folder/expected" "$folder/$name"
done
echo "$# programs did the same"
