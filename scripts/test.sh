#!/bin/sh
# Builds everything and runs every test.
#
#   scripts/test.sh              on this system
#   scripts/test.sh --sanitize   built with clang, under the address, leak and undefined-behaviour sanitizers
#   scripts/test.sh --windows    as a 32-bit Windows library and programs, under Wine
#
# Further arguments go to ctest: scripts/test.sh -R settings. What is missing on the machine is installed first.
set -eu
. "$(dirname "$0")/prepare.sh"

preset=posix
case ${1:-} in
--sanitize) preset=sanitize && shift ;;
--windows) preset=windows && shift ;;
--help | -h) sed -n '2,9s/^# \{0,1\}//p' "$0" && exit 0 ;;
esac

need cmake ninja-build g++ gcc googletest pkg-config
[ "$preset" = windows ] || need_nmbd
case $preset in
sanitize) need clang libclang-rt-14-dev ;;
windows) need g++-mingw-w64-i686-posix gcc-mingw-w64-i686-posix mingw-w64-i686-dev debootstrap ;;
esac

build "$preset"
cd "$top"
case $preset in
windows)
    scripts/wine.sh --prepare
    exec scripts/wine.sh --session ctest --preset windows "$@"
    ;;
*) exec ctest --preset "$preset" "$@" ;;
esac
