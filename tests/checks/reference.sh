#!/usr/bin/env bash
# The reference is made without a warning, its tables have the limits of the sources, and its pages show
# every example once.
set -eu
cd "$(dirname "$0")/../.."
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
fail() {
    echo "$1" >&2
    exit 1
}

root=$PWD
(cd "$folder" && "$root/scripts/reference" made)
[ -s "$folder/made/html/index.html" ] || fail "the reference is not where it was asked for"
for page in docs/reference/*.md; do
    name=$(basename "$page" .md)
    [ "$name" = index ] || grep -qF "($name.md)" docs/reference/index.md || fail "$name.md is not in the index"
done

# numbers_of <source>...: the limits that the sources name, once each.
numbers_of() { sed -nE 's/^const int k(Max[A-Za-z]*|[A-Za-z]*Max) = ([0-9]+);.*/\2/p' "$@" | sort -nu; }

# compare <page> <source>...: the table has these limits and no others but that of ids.
compare() {
    local page=docs/reference/$1.md
    shift
    diff <(numbers_of "$@") <(sed -nE 's/^\|[^|]*\| ([0-9]+) \|.*/\1/p' "$page" | sort -nu | grep -vx 999) \
        || fail "the limits of $page are not those of $*"
}
compare fonts fonts/FontElements_p.h
compare credentials cookies/AuthElements_p.h
compare cookies cookies/CookieElements_p.h
compare bookmarks bookmarks/BookmarkElements_p.h
compare common-preferences preferences/CommonRows_p.h
compare user-preferences preferences/UserRows_p.h
grep -q 'kMaxNumbered = 999;' core/Numbering_p.h || fail "there are not 999 ids any more"

diff <(sed -nE 's/^ *\/\/! \[(.*)\]$/\1/p' examples/reference/*.cpp | sort -u) \
    <(sed -nE 's/^\\snippet reference\/[a-z]+\.cpp (.*)$/\1/p' docs/reference/*.md | sort) \
    || fail "the pages do not show every example once"
echo "the reference is whole"
