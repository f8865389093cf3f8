#!/usr/bin/env bash
# The library is clean under .clang-tidy: tidy.sh <build folder> [<folder>...]. It takes seconds for each
# source, so the tests leave the tool and the examples, which may be named, to cppcheck.
set -eu
build=$(cd "$1" && pwd)
shift
cd "$(dirname "$0")/../.."
[ $# -gt 0 ] || set -- core preferences bookmarks cookies fonts platform
root=$(pwd)
folders=$(IFS='|' && echo "$*")
# Tests build some of the sources once more, with GCC's precompiled headers, which clang cannot read, and
# all of them with an unsigned char: each is looked at once.
mkdir -p "$build/tidy"
python3 -c '
import json, sys
commands = json.load(sys.stdin)
once = {one["file"]: one for one in reversed(commands) if "cmake_pch" not in one["command"]}
json.dump(list(once.values()), sys.stdout)
' <"$build/compile_commands.json" >"$build/tidy/compile_commands.json"
run-clang-tidy -quiet -p "$build/tidy" -j "$(nproc)" "^$root/($folders)/.*\.cpp$" \
    >"$build/clang-tidy.log" 2>&1 || { grep -E 'warning:|error:' "$build/clang-tidy.log"; exit 1; }
checked=$(grep -c 'clang-tidy' "$build/clang-tidy.log")
[ "$checked" -gt 10 ] || { echo "only $checked sources were checked"; exit 1; }
echo "$checked sources are clean"
