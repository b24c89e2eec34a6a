#!/usr/bin/env bash
# Checks the built module: its size, its exports and that it imports system DLLs only.
#
#   scripts/check-module.sh <Tolvane.dll>

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

module=${1:?the module file}
LIMIT=$((2 * 1024 * 1024))
EXPORTS="GetOperationTitle GetOperationType OperationProcedure SetTQ4ModuleString"
SYSTEM_DLLS="advapi32 comctl32 comdlg32 gdi32 kernel32 mswsock msvcrt ole32 oleaut32 shell32 user32
    uxtheme winmm winspool ws2_32"

headers=$(i686-w64-mingw32-objdump -p "$module")

size=$(stat -c %s "$module")
say "size: $size bytes, at most $LIMIT"
[ "$size" -le "$LIMIT" ] || fail "the module is too large"

exports=$(sed -n '/\[Ordinal\/Name Pointer\] Table/,/^$/s/^\t\[.*\] //p' <<<"$headers" | sort | xargs)
say "exports: $exports"
[ "$exports" = "$EXPORTS" ] || fail "the module must export exactly: $EXPORTS"

imports=$(sed -n 's/^.*DLL Name: //p' <<<"$headers" | tr '[:upper:]' '[:lower:]')
say "imports:" $imports
[ -n "$imports" ] || fail "no import was found; is this a DLL?"
for library in $imports; do
    case " $(xargs <<<"$SYSTEM_DLLS") " in
        *" ${library%.*} "*) ;;
        *) fail "the module must import system DLLs only, not $library" ;;
    esac
done
