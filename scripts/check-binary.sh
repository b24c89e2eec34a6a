#!/usr/bin/env bash
# Checks a built module or program, for Windows or for Linux: that the system can protect it, that nothing of the
# machine that has built it is inside, and that it loads nothing and starts nothing that it should not.
#
#   scripts/check-binary.sh <folder of the build> <file in it>
#
# For Windows the linker has left its map in the folder: NAME.map for NAME.dll or NAME.exe.

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

export LC_ALL=C TZ=UTC
folder=$(cd "${1:?the folder of the build}" && pwd)
file=$folder/${2:?the file in it}
name=$(basename "$file")
map=$folder/${name%.*}.map
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

MODULE_LIMIT=$((2 * 1024 * 1024))
EXPORTS="GetOperationTitle GetOperationType OperationProcedure SetTQ4ModuleString"
WINDOWED="Tolvane.dll TradeHost.exe"
SYSTEM_DLLS="advapi32 comctl32 comdlg32 gdi32 kernel32 mswsock msvcrt ole32 oleaut32 shell32 user32
    uxtheme version winmm winspool ws2_32"
SYSTEM_LIBRARIES="ld-linux-x86-64.so.2 libc.so.6 libgcc_s.so.1 libm.so.6 libstdc++.so.6"

# Who may load a library, and which:
#   tolvane_system      Library_win32: the database's client, for a program; never from the current folder
#   tolvane_host        OperationModule: modules by their whole paths
#   crtbegin            the compiler's library, when another module has loaded it already
#   rand_s              advapi32, which all that have this function import anyway
LOADERS="src/system/libtolvane_system.a host/libtolvane_host.a crtbegin.o rand_s.o"
# The parts of the compiler's libraries that do something before the module's first function is called: all of them
# only set variables or allocate memory.
#   eh_alloc            memory for exceptions; crtend: tells the unwinder where the module's tables are
STARTERS="crtend.o eh_alloc.o cxx11-locale-inst.o cxx11-wlocale-inst.o cxx11-ios_failure.o locale-inst.o
    wlocale-inst.o system_error.o"
# What the loader calls by itself: the C library's own parts, the thread library, and the module's end.
CALLBACKS="cinitexe.o dllcrt2.o tlssup.o thread.o Unloading.cpp.obj"
# What the constructors of our own global objects may call. WSAStartup is Asio's, whose counter is set before, see
# SocketsInModule_win32.cpp.
STARTUP_CALLS="_atexit ___cxa_guard_acquire ___cxa_guard_release ___cxa_guard_abort ___stack_chk_fail
    asio::system_category asio::error::get_misc_category asio::detail::throw_error
    .text\$_ZN4asio6detail17winsock_init_base7startupERNS1_4dataEhh.part.0 __imp__WSAStartup@8
    __imp__TlsAlloc@0 __imp__GetLastError@0
    __imp__GetCurrentProcessId@0 __imp__GetCurrentThreadId@0 __imp__GetSystemTimeAsFileTime@4
    __imp__QueryPerformanceCounter@4"

# is_one_of <word> <words>
is_one_of() {
    case " $(xargs <<<"$2") " in
        *" $1 "*) ;;
        *) return 1 ;;
    esac
}

# ends_as_one_of <word> <endings>
ends_as_one_of() {
    local ending
    for ending in $2; do [[ $1 != *"$ending" ]] || return 0; done
    return 1
}

check_paths() {
    local paths
    paths=$({ strings -a "$file"; strings -a -el "$file"; } |
        grep -F -e "$ROOT/" -e "$BUILD/" -e "${HOME:-/root}/" -e /home/ | head -n 5 || true)
    [ -z "$paths" ] || fail "$name tells where it was built: $paths"
}

# The functions of the file are called by address: its symbols are gone, so the map has to tell the address.
check_stack_protector() {
    local address calls own object without=0
    address=$(sed -nE 's/^ +0x0*([0-9a-f]+) +_*stack_chk_fail$/\1/p' "$map" | head -n 1)
    [ -n "$address" ] || fail "$name has no stack protector"
    calls=$(i686-w64-mingw32-objdump -d --no-show-raw-insn "$file" | grep -cE "(call|jmp) +0x$address" || true)
    [ "$calls" -gt 0 ] || fail "nothing in $name uses the stack protector"
    # The map's last part tells for each symbol who uses it.
    own=$(sed -nE 's/^ \.text[^ ]* .* ((src|host|simulator)\/[^ (]*\.a)\(.*$/\1/p' "$map" | sort -u)
    for object in $own; do
        used_by _*stack_chk_fail | grep -qF "$object" || { say "without a stack protector: $object"; without=1; }
    done
    [ "$without" -eq 0 ] || fail "$name has parts without a stack protector"
    say "stack protector: $calls calls"
}

# used_by <pattern of a symbol>: the objects that use it.
used_by() {
    awk -v "symbol=^($1)\$" '
        /^Cross Reference Table/ { table = 1; next }
        !table { next }
        /^[^ ]/ { wanted = $1 ~ symbol; if (wanted) print $2; next }
        wanted { print $1 }' "$map"
}

check_loaders() {
    local object
    for object in $(used_by '(_imp__)?LoadLibrary(Ex)?[AW]@[0-9]+' | sort -u); do
        [[ $object != */libkernel32.a\(* ]] || continue
        ends_as_one_of "${object%)}" "$LOADERS" || ends_as_one_of "${object%(*}" "$LOADERS" ||
            fail "$name loads a library in $object"
    done
}

# take_object <object or archive(member) as the map names it>: makes it a file in the work folder.
take_object() {
    local member=${1##*(}
    if [[ $1 == *\(* ]]; then
        (cd "$folder" && i686-w64-mingw32-ar p "${1%%(*}" "${member%)}") >"$work/object"
    else
        (cd "$folder" && cp "$1" "$work/object")
    fi
}

# The loader holds a lock meanwhile: whoever waits there for another thread, or loads a library, may never return.
check_static_initialisation() {
    local object call
    for object in $(sed -nE 's/^ \.CRT\$X[ICLP][A-Z]* +0x[0-9a-f]+ +0x[0-9a-f]+ (.*)$/\1/p' "$map" | sort -u); do
        ends_as_one_of "${object%)}" "$CALLBACKS" || fail "the loader calls $object of $name"
    done
    for object in $(sed -nE 's/^ \.ctors[.0-9]* +0x[0-9a-f]+ +0x[0-9a-f]+ (.*)$/\1/p' "$map" | sort -u); do
        if [[ $object == /usr/* ]]; then
            object=${object%)}
            is_one_of "${object##*[/(]}" "$STARTERS" || fail "$name has a global object in $object"
            continue
        fi
        take_object "$object"
        for call in $(i686-w64-mingw32-objdump -r "$work/object" |
            awk '/^RELOCATION RECORDS/ { startup = /\.text\.startup/ } startup && ($2 == "DISP32" || $3 ~ /__imp_/) { print $3 }' |
            c++filt -_ | sed 's/(.*//' | sort -u); do
            is_one_of "$call" "$STARTUP_CALLS" || fail "a global object of $name in $object calls $call when it is made"
        done
    done
}

check_windows() {
    local headers sections version want exports library
    [ -f "$map" ] || fail "the linker has left no map of $name"
    headers=$(i686-w64-mingw32-objdump -p "$file")
    sections=$(i686-w64-mingw32-objdump -h "$file")

    # field <name>: of the header.
    field() {
        awk -v "field=$1" '$1 == field { sub(/^[^ \t]+[ \t]+/, ""); print; exit }' <<<"$headers"
    }
    ! grep -q 'relocations stripped' <<<"$headers" || fail "$name has no relocations"
    grep -qE '^Entry 5 [0-9a-f]+ 0*[1-9a-f][0-9a-f]* Base Relocation' <<<"$headers" || fail "$name has no relocations"
    grep -q DYNAMIC_BASE <<<"$headers" || fail "$name cannot be loaded at a random address"
    grep -q NX_COMPAT <<<"$headers" || fail "$name lets data be executed"
    awk '/^ +[0-9]+ / { name = $2; next } name != "" { if (/CODE/ && !/READONLY/) { print name; bad = 1 } name = "" }
         END { exit bad }' <<<"$sections" || fail "$name has a section that is writable and executable"
    grep -q 'symbols stripped' <<<"$headers" || fail "$name has symbols"
    [ "$(field Time/Date)" = "Thu Jan  1 00:00:00 1970" ] || fail "$name tells when it was built"
    version=$(field MajorOSystemVersion).$(field MinorOSystemVersion),$(field MajorSubsystemVersion).$(field MinorSubsystemVersion)
    [ "$version" = 6.1,6.1 ] || fail "$name is marked for Windows $version instead of 6.1"
    want=3
    is_one_of "$name" "$WINDOWED" && want=2
    [ "$(field Subsystem)" = "$(printf '%08d' "$want")	$([ "$want" = 2 ] && echo '(Windows GUI)' || echo '(Windows CUI)')" ] ||
        fail "$name is marked for another subsystem: $(field Subsystem)"

    want=$(sed -nE 's/^project\(Tolvane VERSION ([0-9.]+) .*$/\1/p' "$ROOT/CMakeLists.txt")
    version=$({ i686-w64-mingw32-windres -O rc "$file" 2>/dev/null || true; } | sed -nE 's/^ *VALUE "FileVersion", "(.*)"$/\1/p')
    [ "$version" = "$want" ] || fail "$name has the version \"$version\" instead of \"$want\""
    if [ "$name" = TradeHost.exe ]; then
        grep -aqF " name=\"Tolvane.TradeHost\" version=\"$want.0\"" "$file" ||
            fail "the manifest of $name has another version than $want.0"
    fi

    exports=$(sed -n '/\[Ordinal\/Name Pointer\] Table/,/^$/s/^\t\[.*\] //p' <<<"$headers" | sort | xargs)
    want=
    if [[ $name == *.dll ]]; then
        want=$EXPORTS
        say "size: $(stat -c %s "$file") bytes, at most $MODULE_LIMIT"
        [ "$(stat -c %s "$file")" -le "$MODULE_LIMIT" ] || fail "$name is too large"
        check_static_initialisation
    fi
    [ "$exports" = "$want" ] || fail "$name must export exactly: $want"

    want=$(sed -n 's/^.*DLL Name: //p' <<<"$headers" | tr '[:upper:]' '[:lower:]')
    say "imports:" $want
    [ -n "$want" ] || fail "$name imports nothing"
    for library in $want; do
        is_one_of "${library%.*}" "$SYSTEM_DLLS" || fail "$name must import system DLLs only, not $library"
    done
    check_stack_protector
    check_loaders
}

check_linux() {
    local headers library
    headers=$(readelf -W -h -l -d --dyn-syms "$file")
    grep -qE '\(FLAGS_1\).*PIE' <<<"$headers" || fail "$name cannot be loaded at a random address"
    grep -q GNU_RELRO <<<"$headers" || fail "$name keeps its tables of addresses writable"
    grep -qE '\(FLAGS\).*BIND_NOW' <<<"$headers" || fail "$name keeps its tables of addresses writable"
    grep -qE '^ +GNU_STACK .* RW +0x' <<<"$headers" || fail "$name lets the stack be executed"
    ! grep -qE '^ +LOAD .* RWE +0x' <<<"$headers" || fail "$name has memory that is writable and executable"
    ! grep -qE '\(R(UN)?PATH\)' <<<"$headers" || fail "$name looks for libraries in a folder of its own"
    grep -q '__stack_chk_fail' <<<"$headers" || fail "$name has no stack protector"
    grep -qE '__(mem|str|v?s?n?printf|fd|read|recv|f?puts)[a-z]*_chk|__[a-z]+_chk@' <<<"$(grep -v stack_chk <<<"$headers")" ||
        fail "$name calls no function that knows the size of what it writes to"
    for library in $(sed -nE 's/^.*\(NEEDED\).*\[(.*)\]$/\1/p' <<<"$headers"); do
        is_one_of "$library" "$SYSTEM_LIBRARIES" || fail "$name must need system libraries only, not $library"
    done
}

[ -f "$file" ] || fail "there is no $file"
case $(head -c 4 "$file" | od -An -c | tr -d ' ') in
    MZ*) check_windows ;;
    177ELF) check_linux ;;
    *) fail "$name is neither for Windows nor for Linux" ;;
esac
check_paths
say "$name: nothing to say against it"
