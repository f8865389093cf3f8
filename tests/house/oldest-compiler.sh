#!/usr/bin/env bash
# oldest-compiler.sh <build folder> <clang++>: the sources of the library keep to what GCC 4.8 has. No
# compiler of that age is at hand, so clang is asked for C++11 without any extension, and the names of
# the standard library that came later than the standard did are looked for. Without RTTI, too, which
# a device may have to do without.
set -eu
build=$(cd "$1" && pwd)
clang=$2
cd "$(dirname "$0")/../.."
folders=(core preferences bookmarks cookies fonts platform)

headers='algorithm|atomic|cctype|cerrno|climits|csignal|cstdarg|cstddef|cstdint|cstdio|cstdlib|cstring'
headers+='|ctime|functional|limits|list|map|memory|new|set|string|type_traits|utility|vector'
later='__has_include|__has_cpp_attribute|__builtin_[a-z]+_overflow|aligned_union|max_align_t|std::align\b'
later+='|is_trivially_|is_nothrow_swappable|put_time|get_time'
faults=$(
    grep -rnE '^ *# *include *<[a-z_/]+>' "${folders[@]}" | grep -vE "<($headers)>" || true
    grep -rnwE "$later" "${folders[@]}" || true
)
[ -z "$faults" ] || { echo "Not to be used:"; echo "$faults"; exit 1; }

python3 - "$build/compile_commands.json" "$PWD" "${folders[@]}" <<'PYTHON' >"$build/oldest-compiler.txt"
import json, os, shlex, sys
commands, root, folders = sys.argv[1], sys.argv[2], sys.argv[3:]
seen = set()
for one in json.load(open(commands)):
    path = os.path.realpath(os.path.join(one["directory"], one["file"]))
    if os.path.relpath(path, root).split(os.sep)[0] not in folders or path in seen:
        continue
    seen.add(path)
    words = shlex.split(one["command"])
    kept = []
    for i, word in enumerate(words):
        if word.startswith(("-D", "-I")):
            kept.append(word)
        elif word == "-isystem":
            kept += [word, words[i + 1]]
    print(shlex.join(kept + [path]))
PYTHON
checked=$(wc -l <"$build/oldest-compiler.txt")
[ "$checked" -gt 25 ] || { echo "only $checked sources were found"; exit 1; }
xargs -P "$(nproc)" -L 1 "$clang" -fsyntax-only -std=c++11 -pedantic-errors -fno-rtti -fPIC \
    <"$build/oldest-compiler.txt"
echo "$checked sources are C++11"
