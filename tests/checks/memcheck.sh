#!/usr/bin/env bash
# The example programs make no memory error and leak nothing that could still have been released:
# memcheck.sh <usage program> [demo program]
set -eu
usage=$1
demo=${2:-}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# check <program> <argument>: its output is shown only when something is wrong.
check() {
    valgrind --quiet --leak-check=full --show-leak-kinds=definite --errors-for-leak-kinds=definite \
        --num-callers=30 --error-exitcode=99 --log-file="$folder/faults" \
        "$@" >"$folder/output" 2>&1 || {
        echo "$1 ended with status $?" >&2
        tail -n 12 "$folder/output" >&2
        cat "$folder/faults" >&2
        exit 1
    }
    echo "$(basename "$1") is clean"
}

mkdir "$folder/usage" "$folder/demo"
check "$usage" "$folder/usage/"
if [ -n "$demo" ]; then
    # The second time there is a profile to begin with.
    check "$demo" "$folder/demo"
    check "$demo" "$folder/demo"
fi
