#!/usr/bin/env bash
# The page of velmora-profile report in a browser, at desktop and phone width: it logs nothing to the
# console and asks nobody for anything. Pictures of it go into a folder that is named:
# browser.sh <velmora-profile> [<folder>]. Ends with status 77 where there is no browser.
set -eu
tool=$(realpath "$1")
pictures=${2:+$(realpath "$2")}
cd "$(dirname "$0")/../.."
command -v chromium >/dev/null ||
    { echo "skipped: there is no browser here (Debian package chromium)"; exit 77; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
: "${pictures:=$work}"

# Nothing leaves this machine, not even the browser's own errands.
resolver="MAP * ~NOTFOUND, EXCLUDE 127.0.0.1"

# draw <page> <picture> <width> <height> [<option>...]: what the page logs and whom it asks for
# what goes into $work/faults.
draw() {
    local page=$work/$1 picture=$2 size=$3,$4
    shift 4
    HOME=$work timeout 120 chromium --headless --no-sandbox --disable-gpu --disable-dev-shm-usage \
        --hide-scrollbars --no-first-run --no-default-browser-check --disable-extensions \
        --disable-background-networking --disable-component-update --disable-sync \
        --disable-default-apps --host-resolver-rules="$resolver" \
        --user-data-dir="$work/browser" --log-net-log="$work/net-log" \
        --enable-logging=stderr --window-size="$size" --screenshot="$work/picture.png" "$@" \
        "file://$page" 2>"$work/messages" || { cat "$work/messages"; echo "the browser failed"; exit 1; }
    [ -s "$work/picture.png" ] || { cat "$work/messages"; echo "there is no picture"; exit 1; }
    mv "$work/picture.png" "$picture"
    grep CONSOLE "$work/messages" >"$work/faults" || true
    python3 tests/tools/requests "$work/net-log" >>"$work/faults"
}

# quiet <page> ...: draw, and nothing must be told.
quiet() {
    draw "$@"
    if [ -s "$work/faults" ]; then
        cat "$work/faults"
        echo "$1 logs or asks for the above"
        exit 1
    fi
}

python3 scripts/sample-profile "$work/profile"
python3 tests/tools/hostile-profile "$work/hostile"
for profile in profile hostile; do
    "$tool" report "$work/$profile" -o "$work/$profile.html"
    # By a name that says the same on every machine.
    sed -i "s|$work/|/home/user/|g" "$work/$profile.html"
done

# A page that does both shows that both would be seen.
sed -e '/Content-Security-Policy/d' \
    -e 's,</h1>,&<script>console.log("it ran")</script><img src="http://127.0.0.1:9/x.png">,' \
    "$work/hostile.html" >"$work/loud.html"
draw loud.html "$work/loud.png" 390 800
grep -q 'it ran' "$work/faults" && grep -q '127.0.0.1:9/x.png' "$work/faults" ||
    { cat "$work/faults"; echo "the browser's words are not understood"; exit 1; }

quiet profile.html "$pictures/report-desktop.png" 1280 1500
quiet profile.html "$pictures/report-phone.png" 390 1400
quiet hostile.html "$work/hostile.png" 1280 1500
if [ "$pictures" != "$work" ]; then
    quiet profile.html "$pictures/report-dark.png" 1280 900 --blink-settings=preferredColorScheme=0
fi
echo "the page is quiet"
