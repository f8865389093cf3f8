#!/bin/sh
# check-abi.sh <library> <dump.gz> [--update]: the functions, and the types that they name, are still
# those of the dump, as programs were compiled against them. What is new does no harm.
set -eu

library=$1
dump=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

if [ "${3:-}" = --update ]; then
  abidw --no-show-locs --no-corpus-path --no-comp-dir-path "$library" \
    | sed "s#$(cd "$(dirname "$0")/../.." && pwd)/##g" | gzip -9n >"$dump"
  exit
fi

gzip -dc "$dump" >"$folder/kept.abi"
abidiff --no-added-syms "$folder/kept.abi" "$library" || {
  echo "The binary interface differs from $dump. CONTRIBUTING.md says when it may."
  exit 1
}
echo "the binary interface is that of $(basename "$dump" .abi.gz)"
