#!/bin/sh
# check-qt-major.sh <cmake> <source> <folder to build in>: a major version of Qt that there is not is
# refused in one line that says what to do.
set -eu

for major in 3 7 five ''; do
  rm -rf "$3"
  if output=$("$1" -S "$2" -B "$3" -DVELMORA_QT_MAJOR=$major 2>&1); then
    echo "VELMORA_QT_MAJOR='$major' was accepted"
    exit 1
  fi
  if ! echo "$output" | grep -qF "VELMORA_QT_MAJOR is '$major': set it to 4, 5 or 6." \
    || [ "$(echo "$output" | grep -c 'CMake Error')" != 1 ]; then
    echo "$output"
    exit 1
  fi
done
