#!/bin/sh
# unpacked.sh <cpack> <build folder> <library folder> <folder to work in>: the Debian packages of this
# build have nothing that lintian minds; unpacked, they hold a library that a program can be built
# against, and the tool. From the environment: what consumers/build-and-run.sh takes.
set -eu

cpack=$1
build=$2
libraries=$3
folder=$4
here=$(cd "$(dirname "$0")" && pwd)

rm -rf "$folder"
mkdir -p "$folder/root"
cd "$folder"
"$cpack" -G DEB --config "$build/CPackConfig.cmake" -B "$folder" >cpack.log 2>&1 || {
  cat cpack.log
  exit 1
}
test "$(ls ./*.deb | wc -l)" -eq 3
# A build for another place than /usr has its libraries in lib/ itself; scripts/package, which builds
# for /usr, asks for this one too.
lintian --fail-on error,warning --suppress-tags pkg-config-unavailable-for-cross-compilation \
  ./*.deb 2>lintian.err || {
  cat lintian.err
  exit 1
}
for package in ./*.deb; do
  dpkg-deb --extract "$package" root
done

# Each says what LICENSE does.
license=$here/../../LICENSE
for package in root/usr/share/doc/*; do
  grep -qxF "Copyright: $(sed -n 's/^Copyright //p' "$license")" "$package/copyright"
  grep -qxF " $(tail -n 1 "$license")" "$package/copyright"
done

"$here/../consumers/build-and-run.sh" cmake "$folder/root/usr" "$libraries" "$folder/consumer" \
  >consumer.log 2>&1 || {
  cat consumer.log
  exit 1
}

LD_LIBRARY_PATH=$folder/root/usr/$libraries
export LD_LIBRARY_PATH
mkdir profile
root/usr/bin/velmora-profile fonts add profile Sans
test "$(root/usr/bin/velmora-profile fonts list profile | grep -c Sans)" -eq 1
root/usr/bin/velmora-profile check profile
gzip -dc root/usr/share/man/man1/velmora-profile.1.gz | grep -q '^\.TH'
echo "the packages hold what they should"
