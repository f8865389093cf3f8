#!/bin/sh
# check-exported-symbols.sh <library> <list> [--update]: compares what the library exports with the
# list kept beside this script, so that the binary interface changes on purpose only.
set -eu

library=$1
list=$2
exported=$(mktemp)
trap 'rm -f "$exported"' EXIT

# Names only, without what linkers and sanitizers add. Constructors and destructors come in variants
# that read alike. What is a class of its own on Qt 5 and a name for a list on Qt 6 is written as the
# list; so one list serves every Qt and every processor.
nm -D --defined-only "$library" | cut -d ' ' -f 3- \
  | grep -v '^__odr_asan\|^__asan\|^__bss_start$\|^_edata$\|^_end$' | c++filt \
  | sed 's/QStringList/QList<QString>/g' | LC_ALL=C sort -u > "$exported"

if [ "${3:-}" = --update ]; then
  cp "$exported" "$list"
  exit
fi
if difference=$(diff -u "$list" "$exported"); then
  exit
fi

echo "$library does not export what $list says."
echo "Removed (-) and added (+):"
echo "$difference" | sed -n '3,$ { /^[-+]/p }'
echo
echo "A symbol removed breaks programs that are already built; a symbol added has to be kept for"
echo "good. Helpers are hidden by default: only what a public header declares carries VLM_EXPORT."
echo "If the change is meant, run"
echo "  $0 $library $list --update"
echo "and commit the list with it."
exit 1
