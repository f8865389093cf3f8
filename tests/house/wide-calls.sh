#!/usr/bin/env bash
# wide-calls.sh <nm> <library>...: the libraries call no function that takes file sizes, inode numbers
# or, on a 32-bit system, times of 32 bits.
set -eu
nm=$1
shift
narrow='open openat creat stat lstat fstat fstatat readdir readdir_r scandir ftruncate truncate lseek
    fopen freopen fseeko ftello tmpfile fcntl lockf mkstemp pread pwrite mmap statfs fstatfs statvfs
    fstatvfs posix_fallocate posix_fadvise sendfile glob ftw nftw'
narrow_times='stat64 lstat64 fstat64 fstatat64 fcntl64 time gettimeofday clock_gettime utime utimes
    futimens utimensat nanosleep select mktime localtime localtime_r gmtime gmtime_r'
for library in "$@"; do
    called=$("$nm" -D --undefined-only "$library" | sed -n 's/^ *[Uw] \([^@]*\)@.*GLIBC.*/\1/p')
    grep -qx __cxa_finalize <<<"$called" || { echo "$library: not read"; exit 1; }
    names=$narrow
    if "$nm" -D --defined-only "$library" | grep -qE '^[0-9a-f]{8} '; then
        names+=" $narrow_times"
    fi
    wrong=$(grep -xF "$(tr -s ' \n' '\n' <<<"$names")" <<<"$called" || true)
    [ -z "$wrong" ] || { echo "$library calls:"; echo "$wrong"; exit 1; }
done
echo "$# libraries call nothing narrow"
