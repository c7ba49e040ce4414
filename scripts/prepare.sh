# Sourced by the other scripts: what they share.

top=$(cd "$(dirname "$0")/.." && pwd -P)

as_root() {
    if [ "$(id -u)" = 0 ]; then "$@"; else sudo "$@"; fi
}

# need PACKAGE...: installs the Debian packages that are missing.
need() {
    missing=
    for package in "$@"; do
        dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' ||
            missing="$missing $package"
    done
    [ -z "$missing" ] && return
    echo "Installing:$missing" >&2
    as_root apt-get update -qq >&2
    # shellcheck disable=SC2086
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing >&2
}

# need_nmbd: puts Samba's nmbd on the PATH. Where it is not installed, its package is unpacked alone: installed, it would
# start Samba's services, now and with the system.
need_nmbd() {
    PATH=$PATH:/usr/sbin:/sbin
    need iproute2 samba-common-bin samba-libs
    command -v nmbd >/dev/null && return
    version=$(dpkg-query -W -f '${Version}' samba-libs)
    PATH=$PATH:$top/build/samba-${version#*:}
    command -v nmbd >/dev/null && return
    mkdir -p "${PATH##*:}"
    (cd "${PATH##*:}" && apt-get download -qq "samba=$version" &&
        dpkg-deb --fsys-tarfile samba_*.deb | tar -x --strip-components=3 ./usr/sbin/nmbd && rm samba_*.deb) >&2
}

# build PRESET [TARGET...]: configures and builds build/PRESET, with ccache where that is installed. What one preset has
# compiled serves another: nothing but the build folder's name, in the debugger's notes, may then be the other's.
build() {
    export CCACHE_NOHASHDIR=yes
    preset=$1
    shift
    launcher=
    command -v ccache >/dev/null && launcher=-DCMAKE_CXX_COMPILER_LAUNCHER=ccache
    (cd "$top" && cmake --preset "$preset" $launcher >"/tmp/kora-configure.$$" 2>&1) || {
        cat "/tmp/kora-configure.$$" >&2
        rm -f "/tmp/kora-configure.$$"
        return 1
    }
    rm -f "/tmp/kora-configure.$$"
    (cd "$top" && cmake --build --preset "$preset" ${1:+--target "$@"})
}

# write_settings FILE: a profile with the built modules' folder and the colours of tables.
write_settings() {
    cat >"$1" <<END
[System]
toolfolder = $top/build/posix/bin/tools
[System SpreadSheet]
Cell Protected Color = 0x80f7ecdd
GridLines Color = ltgray
END
}
