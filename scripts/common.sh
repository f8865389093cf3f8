# Shared by the scripts of this folder; sourced, never run.

set -eu
called_in=$PWD
cd "$(dirname "$0")/.."
jobs=$(nproc)

say() { printf '\n== %s\n' "$*"; }

# One line that says what is wrong and what to do; nothing has been changed.
fail() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 2
}

# absolute <path>: the path as the caller meant it, from whatever folder.
absolute() {
    case "$1" in
    /*) printf '%s' "$1" ;;
    *) printf '%s/%s' "$called_in" "$1" ;;
    esac
}

installed() { dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q 'ok installed'; }

# need <package>...: installs what is missing if run as root, otherwise names it.
need() {
    local missing=()
    local package
    for package in "$@"; do
        installed "$package" || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return
    command -v apt-get >/dev/null || fail "needs these Debian packages: ${missing[*]}"
    [ "$(id -u)" -eq 0 ] || fail "missing packages; install them with: apt-get install ${missing[*]}"
    say "Installing ${missing[*]}"
    local log
    log=$(mktemp)
    if ! { apt-get update -qq &&
           DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
               "${missing[@]}"; } >"$log" 2>&1; then
        cat "$log" >&2
        fail "apt-get could not install: ${missing[*]}"
    fi
    rm -f "$log"
}

# build <preset>: configures and builds, showing warnings and errors only.
build() {
    say "Building ($1)"
    cmake --preset "$1" -Wno-dev >/dev/null
    cmake --build --preset "$1" -j "$jobs"
}

# What a build with Qt 5.15 needs.
build_packages=(g++ cmake ninja-build pkg-config qtbase5-dev libfontconfig-dev libxml2-dev)
