#!/usr/bin/env bash
# Every source of the tree stands as .clang-format has it.
set -eu
cd "$(dirname "$0")/../.."
mapfile -t sources < <(find . -path './build*' -prune -o \( -name '*.h' -o -name '*.cpp' \) -print)
[ ${#sources[@]} -gt 20 ] || { echo "only ${#sources[@]} sources found"; exit 1; }
clang-format --dry-run -Werror "${sources[@]}"
echo "${#sources[@]} sources are formatted"
