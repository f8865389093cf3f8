#!/usr/bin/env bash
# The demo finds its way through a fresh profile, and a second time through the one it left; it
# prints no secret, and stops with status 1 where a step fails: demo-tour.sh <program>
set -eu
demo=(${EMULATOR-} "$1")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
fail() { # the reason last too: a long output may be shown only in part
    cat "$folder/output"
    tail -n 12 "$folder/output" >&2
    echo "$1" >&2
    exit 1
}

profile=$folder/profile
mkdir "$profile"
for round in first second; do
    "${demo[@]}" "$profile" >"$folder/output" 2>&1 || fail "the $round tour failed"
    for file in repostry.xml repostry_private.xml bookmark.xml thumbnail/000001.PNG thumbnails.xml \
        visit.xml cookies.xml cookie.ini authinfo.xml fontlist.xml; do
        [ -s "$profile/$file" ] || fail "$file is missing after the $round tour"
        [[ $file == *.PNG ]] || grep -qF "profile/$file (" "$folder/output" || fail "$file is not printed"
    done
    # The values of both cookies, and user and password as they are and as Base64.
    ! grep -qE 'b7c41f9e02|taro\.example|hanako|correct horse|aGFuYWtv|Y29ycmVjdCBob3JzZQ' \
        "$folder/output" || fail "the $round tour prints a secret"
    tail -n 1 "$folder/output" | grep -qxF "The files are in $profile/" || fail "no last line"
done

# A folder where a document would stand: what cannot be written cannot be read back.
mkdir -p "$folder/blocked/visit.xml"
status=0
"${demo[@]}" "$folder/blocked" >"$folder/output" 2>&1 || status=$?
[ "$status" -eq 1 ] || fail "a tour that fails ends with status $status"
grep -q '^velmora-demo: this failed: ' "$folder/output" || fail "the failed step is not named"
echo "the tour ends well"
