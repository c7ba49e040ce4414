#!/bin/sh
# Makes the packages: Debian's for this system, and a ZIP for 32-bit Windows, in build/packages.
#
#   scripts/package.sh           makes them
#   scripts/package.sh --check   and tries them: Debian's are installed in a bare Debian 12, the ZIP is unpacked, and the
#                                netlist module is built with each of them and loaded by its host, under Wine for Windows
#
# What is missing on the machine is installed first. docs/package.md tells what is in the packages.
set -eu
. "$(dirname "$0")/prepare.sh"

check=
case ${1:-} in
--check) check=yes ;;
--help | -h) sed -n '2,8s/^# \{0,1\}//p' "$0" && exit 0 ;;
?*) echo "There is no option $1; --help shows all." >&2 && exit 2 ;;
esac

need cmake ninja-build g++ gcc googletest dpkg-dev file g++-mingw-w64-i686-posix gcc-mingw-w64-i686-posix \
    mingw-w64-i686-dev ${check:+debootstrap}

cd "$top"
umask 022  # everybody can read what is installed
packages=$top/build/packages
rm -rf "$packages"
# Packages of the same commit are the same.
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct 2>/dev/null || date +%s)
export SOURCE_DATE_EPOCH
scripts/docs.sh >&2
for preset in debian windows; do
    build "$preset" kora-parts >&2
    cpack --config "build/$preset/CPackConfig.cmake" -B "$packages" >"$top/build/$preset/cpack.log" 2>&1 || {
        cat "$top/build/$preset/cpack.log" >&2
        exit 1
    }
done
rm -rf "$packages/_CPack_Packages"
du -h build/packages/*
[ -n "$check" ] || exit 0

try=$top/build/package-check
as_root rm -rf "$try"  # Wine's part of it is root's
mkdir -p "$try/debian" "$try/windows" "$try/bare/tools"

# The netlist module is built with the unpacked packages alone, and loaded by their hosts.
set -- -D NAME=netlist -D "FOLDER=$top/modules/netlist" -D GENERATOR=Ninja -P tests/package/UseModule.cmake
for package in "$packages"/*.deb; do
    dpkg -x "$package" "$try/debian"
done
libraries=$try/debian/usr/lib/$(dpkg-architecture -q DEB_HOST_MULTIARCH)
LD_LIBRARY_PATH=$libraries cmake -D PACKAGE="$try/debian/usr" -D WORK="$try/debian-netlist" -D COMPILER=g++ "$@"
(cd "$try/windows" && cmake -E tar xf "$packages"/kora-*.zip)
scripts/wine.sh --prepare
scripts/wine.sh --session cmake -D PACKAGE="$(echo "$try"/windows/kora-*)" -D WORK="$try/windows-netlist" \
    -D TOOLCHAIN=yes -D EMULATOR="$top/scripts/wine.sh" "$@"
echo "Both packages build the netlist module, and their hosts load it."

cp "$packages"/*.deb "$try/bare"
cp "$try/debian-netlist/build/netlist.qzx" "$try/bare/tools"
# shellcheck disable=SC2016
scripts/bare-debian.sh "$try/bare" sh -euxc '
    dpkg --install /mnt/*.deb >/dev/null
    test -z "$(dpkg --verify libkora0 kora-tools libkora-dev)"
    ldconfig -p | grep libkora.so.0
    for program in $(dpkg --listfiles kora-tools | grep /bin/); do $program --help >/dev/null; done
    kora-host --tools /mnt/tools --list
    kora-host --why /mnt/tools/netlist.qzx
    kora-host --tools /mnt/tools -net /usr/share/doc/libkora-dev/modules/netlist/netlists/c17.blif
    dpkg --purge libkora-dev kora-tools libkora0 >/dev/null
    test -z "$(find / -xdev -iname "*kora*" ! -path "/mnt/*" ! -path "/var/log/*")"
    test -z "$(ldconfig -p | grep libkora)"
'
