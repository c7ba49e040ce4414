#!/bin/sh
# Runs a command in a bare Debian 12, in which FOLDER stands at /mnt. What the command changes there is forgotten.
#
#   scripts/bare-debian.sh FOLDER COMMAND...
#
# The system is made once with debootstrap and kept in ${XDG_CACHE_HOME:-~/.cache}/kora/debian-root. It is mounted in a
# private mount namespace, so nothing stays mounted.
set -eu

root=${KORA_DEBIAN_ROOT:-${XDG_CACHE_HOME:-$HOME/.cache}/kora/debian-root}

if [ "$(id -u)" != 0 ]; then
    exec sudo --preserve-env=XDG_CACHE_HOME,KORA_DEBIAN_ROOT,HOME "$0" "$@"
fi

if [ -z "${KORA_DEBIAN_INSIDE:-}" ]; then
    mkdir -p "$(dirname "$root")"
    (
        flock 9
        if [ ! -d "$root" ]; then
            rm -rf "$root.new"
            debootstrap --variant=minbase bookworm "$root.new" >&2
            rm -rf "$root.new/var/cache/apt/archives"
            mv "$root.new" "$root"
        fi
    ) 9>"$root.lock"
    export KORA_DEBIAN_INSIDE=1
    exec unshare --mount "$0" "$@"
fi

folder=$(cd "$1" && pwd -P)
shift
copy=$root.copy
mkdir -p "$copy"
mount -t tmpfs tmpfs "$copy"
mkdir "$copy/changes" "$copy/work" "$copy/root"
mount -t overlay overlay -o "lowerdir=$root,upperdir=$copy/changes,workdir=$copy/work" "$copy/root"
mount --bind "$folder" "$copy/root/mnt"
mount -t proc proc "$copy/root/proc"
mount --rbind /dev "$copy/root/dev"
mount --rbind /sys "$copy/root/sys"
exec chroot "$copy/root" /usr/bin/env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 \
    DEBIAN_FRONTEND=noninteractive "$@"
