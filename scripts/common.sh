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

# need_qt4 <variable> <what for> [arm]: the variable names the prefix of a Qt 4.8.
need_qt4() {
    local prefix=${!1:-}
    [ -n "$prefix" ] || fail "$1 is not set; let it name a Qt 4.8 for $2, which 'scripts/qt4 <clone> <prefix>${3:+ $3}' makes"
    [ -x "$prefix/bin/qmake" ] || fail "'$prefix/bin/qmake' is missing; let $1 name the prefix of a Qt 4.8 for $2"
}

# build <preset>: configures and builds, showing warnings and errors only.
build() {
    say "Building ($1)"
    cmake --preset "$1" -Wno-dev >/dev/null
    cmake --build --preset "$1" -j "$jobs"
}

# What a build with Qt 5.15 needs.
build_packages=(g++ cmake ninja-build pkg-config qtbase5-dev libfontconfig-dev libxml2-dev)
# What those with the other two need beside them.
qt6_packages=(qt6-base-dev qt6-5compat-dev)
qt4_packages=(libx11-6 libxext6 libxrender1 libfreetype6 zlib1g)
