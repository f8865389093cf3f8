#!/usr/bin/env bash
# The manual page and the completion know every command and option of --help, and every preference:
# documents.sh <velmora-profile>
set -eu
tool=$1
cd "$(dirname "$0")/../.."
page=tools/velmora-profile/velmora-profile.1
source tools/velmora-profile/velmora-profile.bash

fail() {
    echo "$*"
    exit 1
}

# complete_words <word>...: what completion offers for the last word.
complete_words() {
    COMP_WORDS=(velmora-profile "$@")
    COMP_CWORD=$#
    COMPREPLY=()
    _velmora_profile "$tool" 2>/dev/null
    printf '%s\n' "${COMPREPLY[@]}"
}

plain_page=$(sed 's/\\-/-/g; s/\\f[IBR]//g' "$page")
count=0
while read -r line; do
    group=${line%% *}
    rest=${line#* }
    action=
    case "$rest" in
    DIR*) ;;
    *) action=${rest%% *} ;;
    esac
    command=$group${action:+ $action}
    grep -q "^\.B $command " <<<"$plain_page" || fail "the manual page lacks: $command"
    complete_words "${group:0:2}" | grep -qx -- "$group" || fail "completion lacks: $group"
    if [ -n "$action" ]; then
        complete_words "$group" "" | grep -qx -- "$action" || fail "completion lacks: $command"
    fi
    entry=$(grep -A2 "^\.B $command " <<<"$plain_page")
    for option in $(grep -o -- '\[--[a-z-]*' <<<"$line" | tr -d '['); do
        grep -q -- "$option" <<<"$entry" || fail "the manual page lacks: $command $option"
        complete_words "$group" "$action" dir -- | grep -qx -- "$option" ||
            fail "completion lacks: $command $option"
    done
    count=$((count + 1))
done < <("$tool" --help | grep -E '^  [a-z]' | sed 's/^ *//')
documented=$(grep -c "^\.B [a-z-]* .*DIR" <<<"$plain_page")
[ "$count" -eq "$documented" ] || fail "the manual page has $documented commands, --help $count"

folder=$(mktemp -d)
trap 'rmdir "$folder"' EXIT
diff <("$tool" prefs list "$folder" | sed 1d | cut -d' ' -f1 | sort) \
    <(complete_words prefs get "$folder" "" | sort) || fail "completion names other preferences"
echo "$count commands are documented and completed"
