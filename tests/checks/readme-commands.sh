#!/usr/bin/env bash
# The commands in README.md do what they say, typed one after the other on a profile that has
# something to find and to mend: readme-commands.sh <velmora-profile>
set -eu
tool=$(realpath "$1")
cd "$(dirname "$0")/../.."
mapfile -t commands < <(sed -n '/^```sh$/,/^```$/p' README.md | grep '^velmora-profile ')
[ ${#commands[@]} -ge 10 ] || { echo "README.md names ${#commands[@]} commands"; exit 1; }

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
python3 scripts/sample-profile "$folder/profile"
cp -r "$folder/profile" "$folder/backup"
truncate -s -60 "$folder/profile/visit.xml"
mkdir "$folder/bin"
ln -s "$tool" "$folder/bin/velmora-profile"
cd "$folder"
printf '<!DOCTYPE NETSCAPE-Bookmark-file-1>\n<DL><p>\n<DT><A HREF="https://a.example/">A</A>\n</DL>\n' \
    >bookmarks.html
export HOME=$folder PATH=$folder/bin:$PATH LC_ALL=C.UTF-8

for command in "${commands[@]}"; do
    # The profile has findings, loses the entry that it breaks off in, and differs from the backup.
    case $command in
    *' check '* | *' repair '* | *' diff '*) expected=1 ;;
    *) expected=0 ;;
    esac
    status=0
    bash -c "$command" >output 2>errors || status=$?
    if [ $status -ne $expected ] || [ -s errors ]; then
        cat output errors
        echo "'$command' ends with status $status"
        exit 1
    fi
    case $command in
    *--dry-run*) grep -q 'nothing was changed' output ;;
    *' show '*) grep -q '^visit.xml *damaged' output ;;
    *' check '*) grep -q '^visit.xml: it is damaged' output ;;
    *' repair '*) grep -q '^  copy: visit.xml.*bak' output ;;
    *' import '*) grep -q '1 bookmark was added' output ;;
    *' find '*) grep -q 'The evening news' output ;;
    *' diff '*) grep -q "proxy.hostName" output || grep -q '+ https://a.example/' output ;;
    esac || { cat output; echo "'$command' does not say what it should"; exit 1; }
done
for file in cookies.txt report.html; do
    [ -s $file ] || { echo "$file is not written"; exit 1; }
done
echo "${#commands[@]} commands work"
