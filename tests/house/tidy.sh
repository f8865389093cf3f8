#!/usr/bin/env bash
# The library and the tools are clean under .clang-tidy: tidy.sh <build folder>. The examples are left to
# cppcheck: this takes seconds for each source.
set -eu
build=$(cd "$1" && pwd)
cd "$(dirname "$0")/../.."
root=$(pwd)
run-clang-tidy -quiet -p "$build" -j "$(nproc)" \
    "^$root/(core|preferences|bookmarks|cookies|fonts|platform|tools)/.*\.cpp$" \
    >"$build/clang-tidy.log" 2>&1 || { grep -E 'warning:|error:' "$build/clang-tidy.log"; exit 1; }
checked=$(grep -c 'clang-tidy' "$build/clang-tidy.log")
[ "$checked" -gt 10 ] || { echo "only $checked sources were checked"; exit 1; }
echo "$checked sources are clean"
