# shellcheck shell=bash disable=SC1091
# Sourced: Free Pascal for 32-bit Windows. Debian's is for this system only, but brings its sources.
#
#   pascal_build                          makes the compiler and its units, when Debian's have changed
#   pascal_compile <source> <program.exe> compiles a program that uses the units System and Windows

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

PASCAL_FOLDER=$BUILD/pascal
PASCAL_COMPILER=$PASCAL_FOLDER/ppcross386

# The texts of the compiler's messages are compiled in.
pascal_build_compiler() {
    local sources=$1/compiler work=$PASCAL_FOLDER/work messages
    messages=/usr/lib/x86_64-linux-gnu/fpc/$(fpc -iV)/msg/errore.msg
    mkdir -p "$work"
    fpc -v0 "-FU$work" "-o$work/msg2inc" "$sources/utils/msg2inc.pp"
    (cd "$work" && ./msg2inc "$messages" msg msg)
    fpc -v0 -O1 -di386 -dGDB -dBROWSERLOG "-FU$work" "-Fi$work" "-Fi$sources" "-Fi$sources"/{i386,x86} \
        "-Fu$sources"/{i386,x86,systems} "-o$PASCAL_COMPILER" "$sources/pp.pas"
}

pascal_run() {
    "$PASCAL_COMPILER" -n -Twin32 -Pi386 "-FU$PASCAL_FOLDER/units" "-Fu$PASCAL_FOLDER/units" "$@"
}

# pascal_build_units <folder of the sources>: with what each of them needs.
pascal_build_units() {
    local unit rtl=$1/rtl
    local folders=("-Fi$rtl"/{win32,win,win/wininc,inc,i386,objpas} "-Fu$rtl"/{win32,win,inc,objpas})
    pascal_run -v0 "${folders[@]}" -Us -Sg "$rtl/win32/system.pp"
    for unit in objpas/objpas win32/sysinitpas win32/windows inc/fpintres; do
        pascal_run -v0 "${folders[@]}" "$rtl/$unit.pp"
    done
}

pascal_build() {
    local sources stamp=$PASCAL_FOLDER/built
    sources=/usr/share/fpcsrc/$(fpc -iV)
    newer_than "$stamp" "$sources/compiler/pp.pas" "$SCRIPTS/pascal.sh" "$(command -v fpc)" || return 0
    rm -rf "$PASCAL_FOLDER"
    mkdir -p "$PASCAL_FOLDER/units"
    pascal_build_compiler "$sources"
    pascal_build_units "$sources"
    rm -rf "$PASCAL_FOLDER/work"
    touch "$stamp"
}

# Warnings and notes are errors.
pascal_compile() {
    mkdir -p "$(dirname "$2")"
    pascal_run -v0 -vewn -Sewn "-o$2" "$1"
}
