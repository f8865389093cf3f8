#!/bin/sh
# check-tree.sh <source> <installed headers> <public headers, separated by ;>: dependencies run one
# way, and what is public is what is listed and what is installed.
set -eu

source=$1
installed=$2
public=$(echo "$3" | tr ';' '\n' | LC_ALL=C sort)
faults=$(mktemp)
trap 'rm -f "$faults"' EXIT
cd "$source"

# The floor that a file stands on: its folder, in the tool the folder inside.
floor() {
  case $1 in
  tools/*) echo "${1%/*}" ;;
  */*) echo "${1%%/*}" ;;
  *) echo "a header without its folder" ;;
  esac
}

# The floors whose headers the files of a floor may include.
allowed() {
  below='files text'
  stores='fonts preferences bookmarks cookies'
  tool=tools/velmora-profile
  case $1 in
  platform) echo platform ;;
  text) echo text ;;
  files) echo files text ;;
  core) echo "core $below platform" ;;
  fonts | preferences | bookmarks | cookies) echo "$1 core $below" ;;
  examples | benchmarks) echo "$1 $below core platform $stores" ;;
  "$tool/output") echo "$1 text" ;;
  "$tool/formats") echo "$1 $tool/output" ;;
  "$tool/profile") echo "$1 $tool/output $below core $stores" ;;
  "$tool/commands") echo "$1 $tool/profile $tool/formats $tool/output $below core $stores" ;;
  "$tool") echo "$tool/commands $tool/output" ;;
  esac
}

folders="platform text files core fonts preferences bookmarks cookies examples benchmarks tools"
for folder in $folders; do
  test -d "$folder" || continue
  find "$folder" -name '*.h' -o -name '*.cpp' | LC_ALL=C sort | while read -r file; do
    here=$(floor "$file")
    sed -n 's/^[[:space:]]*#[[:space:]]*include[[:space:]]*"\([^"]*\)".*/\1/p' "$file" \
      | while read -r include; do
      case $include in
      *.moc) continue ;;
      esac
      from=$(floor "$include")
      case " $(allowed "$here") " in
      *" $from "*) test -f "$include" || echo "$file: no such file: $include" ;;
      *) echo "$file: $here does not stand on $from: $include" ;;
      esac
    done
  done
done >> "$faults"

# A public header is one that is no helper, whoever forgets to list it.
candidates=$(find text files core fonts preferences bookmarks cookies platform -name '*.h' ! -name '*_p.h' \
  2> /dev/null | LC_ALL=C sort)
delivered=$(cd "$installed" && find . -name '*.h' | sed 's,^\./,,' | LC_ALL=C sort)
if [ "$public" != "$candidates" ]; then
  echo "velmora_public_headers is not what the folders hold besides helpers:" >> "$faults"
  { echo "$public"; echo "$candidates"; } | LC_ALL=C sort | uniq -u >> "$faults"
fi
if [ "$public" != "$delivered" ]; then
  echo "velmora_public_headers is not what is installed:" >> "$faults"
  { echo "$public"; echo "$delivered"; } | LC_ALL=C sort | uniq -u >> "$faults"
fi
for header in $public; do
  if grep -n 'include.*_p\.h' "$header" /dev/null; then
    echo "$header: a public header includes a helper"
  fi
done >> "$faults"

cat "$faults"
test ! -s "$faults"
