#!/usr/bin/env bash
# Makes a DLL that imports what another one imports and does nothing.
#
#   empty-module.sh <DLL> <new DLL> <C++ compiler> <objdump> <dlltool>

set -euo pipefail
module=$1 made=$2 compiler=$3 objdump=$4 dlltool=$5
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$objdump" -p "$module" | awk -v work="$work" '
    /DLL Name:/ { definition = work "/" $3 ".def"; print "LIBRARY " $3 "\nEXPORTS" > definition; next }
    /^$/ { definition = "" }
    definition != "" && $1 ~ /^[0-9a-f]+$/ { print $3 > definition; print ".long __imp__" $3 > (work "/imports.s") }'
libraries=()
for definition in "$work"/*.def; do
    "$dlltool" --input-def "$definition" --output-lib "$definition.a"
    libraries+=("$definition.a")
done
{
    printf '.data\n'
    cat "$work/imports.s"
} >"$work/table.s"
printf 'extern "C" int __stdcall Entry(void*, unsigned long, void*) { return 1; }\n' >"$work/entry.cpp"
"$compiler" -shared -nostdlib -s -Wl,-e,_Entry@12 "$work/entry.cpp" "$work/table.s" "${libraries[@]}" -o "$made"
