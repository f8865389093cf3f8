#!/usr/bin/env bash
# Installs the packages of a folder into a fresh Debian that debootstrap makes, builds a program
# against them there and runs the tool: fresh-root.sh <folder with packages>. Takes a minute or more.
# Ends with status 77 where no such root can be made: that takes an administrator and the mirror that
# this machine has its packages from.
set -eu

packages=$(cd "$1" && pwd)
cannot() { echo "skipped: $*"; exit 77; }
[ "$(id -u)" -eq 0 ] || cannot "only root can make a fresh root"
command -v debootstrap >/dev/null || cannot "there is no debootstrap here (Debian package debootstrap)"
mirror=$(apt-get indextargets --format '$(REPO_URI) $(CODENAME)' 'Created-By: Packages' |
    sed -n 's/ bookworm$//p' | head -n 1)
[ -n "$mirror" ] || cannot "this machine has no packages of Debian 12"
here=$(cd "$(dirname "$0")" && pwd)
root=$(mktemp -d)
trap 'umount "$root/proc" 2>/dev/null || true; rm -rf --one-file-system "$root"' EXIT

debootstrap --variant=minbase bookworm "$root" "$mirror" >"$root.log" 2>&1 || {
    tail -n 5 "$root.log"
    cannot "debootstrap could not make a fresh root"
}
rm -f "$root.log"
chmod 755 "$root"
rm -f "$root/etc/apt/sources.list"
cp -a /etc/apt/. "$root/etc/apt/"
# Nothing in this root has to survive a power cut.
echo force-unsafe-io >"$root/etc/dpkg/dpkg.cfg.d/quick"
mkdir -p "$root/packages" "$root/consumer"
cp "$packages"/*.deb "$root/packages"
cp -r "$here/../consumers/." "$root/consumer"
mount -t proc proc "$root/proc"
export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8
chroot "$root" sh -eu -c '
    apt-get update -qq
    apt-get install -y -qq --no-install-recommends g++ cmake make >/dev/null' >"$root/apt.log" 2>&1 || {
    tail -n 5 "$root/apt.log"
    cannot "the fresh root gets no packages of Debian"
}
chroot "$root" sh -eu -c '
    apt-get install -y -qq --no-install-recommends /packages/*.deb >/dev/null
    CMAKE=cmake CXX=g++ CXXFLAGS= /consumer/build-and-run.sh cmake /usr lib /tmp/consumer >/dev/null
    mkdir /tmp/profile
    velmora-profile fonts add /tmp/profile Sans
    velmora-profile fonts list /tmp/profile | grep Sans
    velmora-profile check /tmp/profile
    apt-get purge -y -qq velmora-profile libvelmora-settings-dev libvelmora-settings1 >/dev/null
    test ! -e /usr/bin/velmora-profile'
echo "the packages install, work and go away in a fresh Debian"
