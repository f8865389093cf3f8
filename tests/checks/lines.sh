#!/usr/bin/env bash
# No line of a page is longer than 100 columns. Rows of tables and what stands between fences do not
# count, nor do the targets of links: none of these can be wrapped.
set -eu
cd "$(dirname "$0")/../.."
mapfile -t pages < <(find . -path './build*' -prune -o -name '*.md' -print)
[ ${#pages[@]} -gt 15 ] || { echo "only ${#pages[@]} pages found"; exit 1; }
failed=0
for page in "${pages[@]}"; do
    # Lines are emptied, not deleted, so that they keep their numbers.
    long=$(sed -e '/^```/,/^```$/s/.*//' -e 's/^|.*//' -e 's/](\([^)]*\))/]/g' "$page" |
        LC_ALL=C.UTF-8 grep -nE '.{101}') || continue
    echo "$page is wider than 100 columns:"
    echo "$long"
    failed=1
done
[ "$failed" -eq 0 ] && echo "${#pages[@]} pages are narrow enough"
