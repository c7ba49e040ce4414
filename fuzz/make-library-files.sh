#!/bin/sh
# Makes the corpus of target library-file anew, in the folder given: tiny libraries of several formats and machines.
# They change with the compilers, so what is checked in stays until there is a reason.
set -eu
cd "$1"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

cat >"$scratch/library.c" <<'END'
#ifdef _WIN32
__declspec(dllexport)
#endif
int CALLED(void) { return 0; }
END
cat >"$scratch/module.c" <<'END'
#ifdef _WIN32
#define EXPORT __declspec(dllexport)
#define IMPORT __declspec(dllimport)
#else
#define EXPORT __attribute__((visibility("default")))
#define IMPORT
EXPORT const struct { int id; const char* text; } TskKoraStrings[] = {{1, "first"}, {7, "seventh"}, {0, 0}};
#endif
IMPORT int CALLED(void);
EXPORT const char TskKoraVersion[] = VERSION;
EXPORT int ENTRY(void) { return CALLED(); }
END
printf 'STRINGTABLE BEGIN 1, "first" 7, "seventh" 7000, "far" END\n' >"$scratch/strings.rc"

entry=_Z11TskKoraMainR14eTskKoraModulePP13TskKoraModuled
here=_Z14TskMessagePumpv # what the library exports
elf='-shared -fPIC -nostdlib -Os -s -fvisibility=hidden -fno-asynchronous-unwind-tables -Wl,--build-id=none'
pe='-shared -nostdlib -Os -s -fno-asynchronous-unwind-tables -Wl,--no-insert-timestamp,--entry=0'

# elf FILE COMPILER LIBRARY ENTRY CALLED VERSION [OPTION...]
elf() {
    file=$1 cc=$2 library=$3 entry_name=$4 called=$5 version=$6
    shift 6
    $cc $elf "$@" -fvisibility=default -DCALLED="$called" "$scratch/library.c" -o "$scratch/$library" \
        -Wl,-soname,"$library"
    $cc $elf "$@" -DENTRY="$entry_name" -DCALLED="$called" -DVERSION="\"$version\"" "$scratch/module.c" -o "$file" \
        -L"$scratch" -l:"$library" -Wl,-rpath,'$ORIGIN/beside'
}

# pe FILE LIBRARY ENTRY CALLED VERSION [OBJECT...]
pe() {
    file=$1 library=$2 entry_name=$3 called=$4 version=$5
    shift 5
    i686-w64-mingw32-gcc $pe -DCALLED="$called" "$scratch/library.c" -o "$scratch/$library" \
        -Wl,--out-implib,"$scratch/import.a"
    i686-w64-mingw32-gcc $pe -DENTRY="$entry_name" -DCALLED="$called" -DVERSION="\"$version\"" "$scratch/module.c" \
        -o "$file" "$@" "$scratch/import.a"
}

small='-Wl,-z,noseparate-code -Wl,-z,max-page-size=4096'
elf good-x86-64.elf gcc libkora.so.0 $entry $here 0.1.0 $small
elf absent-x86-64.elf gcc libabsent.so.7 $entry $here 0.1.0 $small
elf newer-x86-64.elf gcc libkora.so.0 $entry _Z9TskFuturev 9.9.0 $small
elf undecorated-i386.elf gcc libkora.so.0 TskKoraMain $here 0.1.0 $small -m32 -Wl,--hash-style=sysv
elf good-mips.elf 'clang --target=mips-linux-gnu -fuse-ld=lld' libkora.so.0 $entry $here 0.1.0 -Wl,-z,max-page-size=4096

i686-w64-mingw32-windres "$scratch/strings.rc" "$scratch/strings.o"
pe good-i386.pe kora.dll $entry $here 0.1.0 "$scratch/strings.o"
pe absent-i386.pe absent.dll $entry $here 0.1.0
pe newer-i386.pe kora.dll $entry _Z9TskFuturev 9.9.0
pe undecorated-i386.pe kora.dll TskKoraMain $here 0.1.0
