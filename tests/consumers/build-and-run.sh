#!/bin/sh
# build-and-run.sh cmake|pkg-config|qmake <prefix> <library folder> <folder to build in>: builds the
# program beside this script against the library installed at prefix, and runs it.
#
# From the environment: CMAKE, CMAKE_OPTIONS, CXX, CXXFLAGS, QMAKE, STANDARD, the language standard of
# Qt, PKG_CONFIG_PATH, where it lacks Qt's own folder, and EMULATOR.
set -eu

kind=$1
prefix=$2
libraries=$prefix/$3
build=$4
source=$(cd "$(dirname "$0")" && pwd)

rm -rf "$build"
mkdir -p "$build"
cd "$build"
PKG_CONFIG_PATH=$libraries/pkgconfig${PKG_CONFIG_PATH:+:$PKG_CONFIG_PATH}
export PKG_CONFIG_PATH

case $kind in
cmake)
  # A toolchain's programs look for packages below their own roots alone.
  "$CMAKE" -S "$source/cmake" -B . -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_FIND_ROOT_PATH="$prefix" \
    -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_CXX_FLAGS="$CXXFLAGS" ${CMAKE_OPTIONS-}
  "$CMAKE" --build .
  ;;
pkg-config)
  # Qt itself wants position-independent code.
  $CXX $CXXFLAGS -std="$STANDARD" -fPIC "$source/main.cpp" \
    $(pkg-config --cflags --libs velmora-settings) -Wl,-rpath,"$libraries" -o consumer
  ;;
qmake)
  "$QMAKE" "$source/qmake/consumer.pro" QMAKE_CXX="$CXX" QMAKE_LINK="$CXX" \
    QMAKE_CXXFLAGS+="$CXXFLAGS" QMAKE_LFLAGS+="$CXXFLAGS -Wl,-rpath,$libraries"
  make
  ;;
esac

test "$(${EMULATOR-} ./consumer ./)" = "1 Sans"
