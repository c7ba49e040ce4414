#!/bin/sh
# Runs 32-bit Windows programs of this checkout under Wine.
#
#   scripts/wine.sh PROGRAM.exe ARGUMENT...     runs one program
#   scripts/wine.sh --session COMMAND...        runs a command of this system (ctest, say) within which further calls
#                                               share one Wine server
#   scripts/wine.sh --prepare                   only sees to it that Wine is there
#
# Wine lives in a small 32-bit Debian root of its own, made once with debootstrap and kept in
# ${XDG_CACHE_HOME:-~/.cache}/kora/wine-root. The checkout is mounted into it at its own path, in a private mount
# namespace, so nothing stays mounted.
set -eu

checkout=$(cd "$(dirname "$0")/.." && pwd -P)
root=${KORA_WINE_ROOT:-${XDG_CACHE_HOME:-$HOME/.cache}/kora/wine-root}
prefix=/root/prefix-$(printf %s "$checkout" | cksum | cut -d' ' -f1)

in_root() {
    chroot "$root" /usr/bin/env HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 WINEPREFIX="$prefix" \
        WINEDEBUG="${WINEDEBUG:--all}" WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe=" \
        /bin/sh -c 'cd "$0" && exec "$@"' "$@"
}

if [ "$(id -u)" != 0 ]; then
    exec sudo --preserve-env=XDG_CACHE_HOME,KORA_WINE_ROOT,WINEDEBUG,DISPLAY,HOME "$0" "$@"
fi

if [ -z "${KORA_WINE_INSIDE:-}" ]; then
    mkdir -p "$(dirname "$root")"
    (
        flock 9
        if [ ! -d "$root" ]; then
            rm -rf "$root.new"
            debootstrap --arch=i386 --variant=minbase --include=wine,wine32 bookworm "$root.new" >&2
            rm -rf "$root.new/var/cache/apt/archives"
            mv "$root.new" "$root"
        fi
    ) 9>"$root.lock"
    [ "$1" = --prepare ] && exit 0
    export KORA_WINE_INSIDE=1
    exec unshare --mount "$0" "$@"
fi

if [ -z "${KORA_WINE_MOUNTED:-}" ]; then
    mount -t proc proc "$root/proc"
    mount --rbind /dev "$root/dev"
    mkdir -p "$root$checkout"
    mount --bind "$checkout" "$root$checkout"
    export KORA_WINE_MOUNTED=1
    if [ ! -f "$root$prefix/system.reg" ]; then
        # A checkout has a Wine prefix of its own; those of checkouts that are gone go too.
        for other in "$root"/root/prefix-*; do
            if [ -f "$other/checkout" ] && [ ! -d "$(cat "$other/checkout")" ]; then rm -rf "$other"; fi
        done
        in_root / wineboot --init >&2
        in_root / wineserver --wait
        echo "$checkout" >"$root$prefix/checkout"
    fi
fi

case $1 in
--session)
    shift
    result=0
    "$@" || result=$?
    in_root / wineserver --kill || true
    exit $result
    ;;
*)
    case $PWD in
    "$checkout" | "$checkout"/*) directory=$PWD ;;
    *) directory=$checkout ;;
    esac
    in_root "$directory" wine "$@"
    ;;
esac
