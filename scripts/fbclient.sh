# shellcheck shell=bash disable=SC1091
# Sourced: the Firebird client library for 32-bit Windows programs under Wine, built from
# scripts/fbclient against the system's libfbclient:i386.
#
#   fbclient_build           makes it, when its sources or its libraries have changed
#   fbclient_place <folder>  puts fbclient.dll into a folder, as a program that brings its own has it
#
# Wine finds the library's body through WINEDLLPATH (see wine.sh), so the file that is put beside a
# program is only a placeholder.

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

FBCLIENT_FOLDER=$BUILD/fbclient
FBCLIENT_LIBRARY=/usr/lib/i386-linux-gnu/libfbclient.so.2

fbclient_build() {
    local sources=$SCRIPTS/fbclient work=$FBCLIENT_FOLDER/work stamp=$FBCLIENT_FOLDER/built
    newer_than "$stamp" "$sources"/* "$SCRIPTS/fbclient.sh" "$FBCLIENT_LIBRARY" /usr/include/ibase.h ||
        return 0
    rm -rf "$FBCLIENT_FOLDER"
    mkdir -p "$work" "$FBCLIENT_FOLDER/i386-unix" "$FBCLIENT_FOLDER/i386-windows"
    bash "$sources/generate.sh" "$sources/functions.txt" "$work/fbclient.spec" "$work/forwards.h"
    winegcc -m32 -mstackrealign -fPIC -O2 -Wall -Werror -I"$work" -c "$sources/fbclient.c" \
        -o "$work/fbclient.o"
    winegcc -m32 -shared "$work/fbclient.spec" "$work/fbclient.o" "$FBCLIENT_LIBRARY" \
        -o "$FBCLIENT_FOLDER/i386-unix/fbclient.dll.so"
    winegcc -m32 -shared -Wb,--fake-module "$work/fbclient.spec" "$work/fbclient.o" \
        "$FBCLIENT_LIBRARY" -o "$FBCLIENT_FOLDER/i386-windows/fbclient.dll"
    touch "$stamp"
}

fbclient_place() {
    mkdir -p "$1"
    cp -f "$FBCLIENT_FOLDER/i386-windows/fbclient.dll" "$1/fbclient.dll"
}
