#!/usr/bin/env bash
# Installs the packages of a folder into a fresh Debian that debootstrap makes, builds a program
# against them there and runs the tool: fresh-root.sh <folder with packages> [<mirror>]. Needs root
# and a mirror that can be reached, and takes minutes.
set -eu

packages=$(cd "$1" && pwd)
mirror=${2:-}
here=$(cd "$(dirname "$0")" && pwd)
root=$(mktemp -d)
trap 'umount "$root/proc" 2>/dev/null || true; rm -rf --one-file-system "$root"' EXIT

debootstrap --variant=minbase bookworm "$root" ${mirror:+"$mirror"} >"$root.log" 2>&1 || {
    tail -n 5 "$root.log"
    echo "debootstrap could not make a fresh root"
    exit 1
}
rm -f "$root.log"
chmod 755 "$root"
rm -f "$root/etc/apt/sources.list"
cp -a /etc/apt/. "$root/etc/apt/"
mkdir -p "$root/packages" "$root/consumer"
cp "$packages"/*.deb "$root/packages"
cp -r "$here/../consumers/." "$root/consumer"
mount -t proc proc "$root/proc"
chroot "$root" sh -eu -c '
    export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8
    apt-get update -qq
    apt-get install -y -qq --no-install-recommends /packages/*.deb g++ cmake make >/dev/null
    CMAKE=cmake CXX=g++ CXXFLAGS= /consumer/build-and-run.sh cmake /usr lib /tmp/consumer >/dev/null
    mkdir /tmp/profile
    velmora-profile fonts add /tmp/profile Sans
    velmora-profile fonts list /tmp/profile | grep Sans
    velmora-profile check /tmp/profile
    apt-get purge -y -qq velmora-profile libvelmora-settings-dev libvelmora-settings1 >/dev/null
    test ! -e /usr/bin/velmora-profile'
echo "the packages install, work and go away in a fresh Debian"
