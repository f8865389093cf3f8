#!/bin/sh
# check-platform-library.sh <cmake> <compiler> <source> <platform library> <folder to build in>:
# builds the library with VELMORA_PLATFORM_LIBRARY and runs a program with it. The folder is kept, so
# that only what has changed is built anew.
#
# From the environment: QT_MAJOR, CMAKE_OPTIONS, PKG_CONFIG_PATH, where it lacks Qt's own folder, and
# EMULATOR.
set -eu

cmake=$1
cxx=$2
source=$3
platform=$4
build=$5

"$cmake" -S "$source" -B "$build" -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS=-O0 \
  -DCMAKE_CXX_COMPILER="$cxx" -DBUILD_TESTING=OFF \
  -DVELMORA_TOOLS=OFF -DVELMORA_KIOSK=OFF -DVELMORA_QT_MAJOR="$QT_MAJOR" \
  -DVELMORA_PLATFORM_LIBRARY="$platform" ${CMAKE_OPTIONS-}
"$cmake" --build "$build" --target velmora-settings
"$cmake" --install "$build" --prefix "$build/prefix"
libraries=$(dirname "$(find "$build/prefix" -name libvelmora-settings.so)")

needed=$(readelf -d "$libraries/libvelmora-settings.so" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
if ! echo "$needed" | grep -qxF "$(basename "$platform")"; then
  echo "the library does not need $platform, but:"
  echo "$needed"
  exit 1
fi
if find "$build/prefix" -name 'libvelmora-platform*' | grep . \
  || echo "$needed" | grep libvelmora-platform; then
  echo "the host's platform library is still there"
  exit 1
fi

PKG_CONFIG_PATH=$libraries/pkgconfig${PKG_CONFIG_PATH:+:$PKG_CONFIG_PATH}
export PKG_CONFIG_PATH
$cxx -std=c++11 -fPIC "$source/tests/consumers/main.cpp" \
  $(pkg-config --cflags --libs velmora-settings) \
  -Wl,-rpath,"$libraries" -Wl,-rpath-link,"$(dirname "$platform")" -o "$build/consumer"
# The loader of a device finds its platform library by itself.
LD_LIBRARY_PATH=$(dirname "$platform")${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}
export LD_LIBRARY_PATH
output=$(cd "$build" && ${EMULATOR-} ./consumer ./)
echo "$output"
echo "$output" | grep -qxF "[VLMC_FontListSetting::loadFontList] start"
echo "$output" | grep -qxF "1 Sans"
