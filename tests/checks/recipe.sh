#!/usr/bin/env bash
# recipe.sh [<step>]: follows the recipe for a preference in CONTRIBUTING.md, with the lines that the
# page shows, in a copy of the sources, and runs what reads them there. It has to fail without any of
# the steps: one that is named is left out.
set -eu
cd "$(dirname "$0")/../.."
copy=$(mktemp -d)
trap 'rm -rf "$copy"' EXIT
git ls-files -z | xargs -0 cp --parents -t "$copy"
cd "$copy"

# behind <file> <pattern> <line>..., before <file> <pattern> <line>...: lines next to each match.
put() {
    local place=$1 file=$2 pattern=$3
    shift 3
    if ! grep -q -- "$pattern" "$file"; then
        echo "$file: nothing matches $pattern" >&2
        exit 1
    fi
    printf '%s\n' "$@" > lines.txt
    if [ "$place" = behind ]; then
        sed -i "/$pattern/r lines.txt" "$file"
    else
        # "r" writes behind a line alone.
        tac "$file" > turned.txt
        tac lines.txt > turned-lines.txt
        sed "/$pattern/r turned-lines.txt" turned.txt | tac > "$file"
    fi
}
behind() { put behind "$@"; }
before() { put before "$@"; }

# What the page shows indented under its steps: the row, its default, two accessors, the tool's row.
mapfile -t shown < <(sed -n '/^### A preference/,/^### A store/s/^       \([^ ].*\)/\1/p' CONTRIBUTING.md)
if [ ${#shown[@]} -ne 5 ]; then
    echo "CONTRIBUTING.md: the recipe shows ${#shown[@]} lines of code, not 5"
    exit 1
fi
declaration() { sed 's/[A-Za-z_]*:://; s/ {.*/;/' <<< "$1"; }

store=preferences/VLMC_BrowserCommonSetting
test=tests/preferences/tst_VLMC_BrowserCommonSetting.cpp
element='<enableReader>true</enableReader>'

step_1() { behind preferences/CommonRows_p.h '^constexpr FlagEntry kEnableTls12' "${shown[0]}"; }
step_2() { before $store.cpp '^    completeSecurity(store);' "${shown[1]}"; }
step_3() {
    printf '\n%s\n' "${shown[2]}" "${shown[3]}" >> $store.cpp
    behind $store.h 'void setUseTLS12(char code);' "$(declaration "${shown[2]}")" \
        "$(declaration "${shown[3]}")"
}
step_4() {
    ninja -C build libvelmora-settings.so
    tests/abi/check-exported-symbols.sh build/libvelmora-settings.so \
        tests/abi/exported-symbols.txt --update
}
step_5() {
    before docs/file-formats.md '^| `security` | ' \
        '| `reader` / `enableReader` | | `true`, `false` | | `setUseReader` |'
    before docs/file-formats.md '^    <security version' '    <reader>' "        $element" '    </reader>'
}
step_6() {
    before docs/schema/repostry.rng '<element name="security">' \
        '<element name="reader"><element name="enableReader"><ref name="switch"/></element></element>'
}
step_7() {
    before $test '^ *"    <security version=\\"2.0\\">\\n"$' "\"    <reader>\\n        $element\\n    </reader>\\n\""
    # Behind the last of the switches, whose row takes two lines.
    sed -i '/^    {"enableTLS12"/{n;a\
    {"enableReader", &Store::getUseReader, &Store::setUseReader, "reader", "enableReader", "true",\
     "false", 1, 1, AnyIsOn},
    }' $test
}
step_8() {
    behind tests/docs/tst_Schemas.cpp 'store.setUseTLS12(code);' '    store.setUseReader(code);'
    behind tests/docs/tst_Schemas.cpp 'wrong(title, "an unknown timing", "notDelete"' \
        '    wrong(title, "no reader", "<enableReader>true</enableReader>", "");'
}
step_9() {
    behind tools/velmora-profile/profile/Preferences.cpp 'of(kEnableTls12,' "${shown[4]}"
}
step_10() {
    local tests=tests/tools/commands/tst_prefs.cpp
    sed -i 's/lines.size(), 28)/lines.size(), 29)/; s/lines.at(21)/lines.at(22)/; s/lines.at(20)/lines.at(21)/' $tests
    behind $tests '{"security.enableTLS12", ' '{"reader.enableReader", "false true"},'
}

cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O0 \
    -DVELMORA_KIOSK=OFF > /dev/null
for step in 1 2 3 4 5 6 7 8 9 10; do
    [ "$step" = "${1-}" ] || "step_$step"
done
tests='tst_VLMC_BrowserCommonSetting tst_Schemas tst_FileFormats tst_prefs'
# shellcheck disable=SC2086 # several targets
ninja -C build velmora-profile $tests
ctest --test-dir build --output-on-failure --no-tests=error \
    -R "^(exported-symbols|${tests// /|})\$"
