#!/usr/bin/env bash
# The tool runs from where it was installed, with its manual page and its completion beside it:
# installed.sh <prefix> <programs> <manual pages> <data>
set -eu
prefix=$1
env -u LD_LIBRARY_PATH "$prefix/$2/velmora-profile" --version
gzip -dc "$prefix/$3/man1/velmora-profile.1.gz" | grep -q '^\.TH' ||
    { echo "the manual page is missing"; exit 1; }
source "$prefix/$4/bash-completion/completions/velmora-profile"
complete -p velmora-profile
