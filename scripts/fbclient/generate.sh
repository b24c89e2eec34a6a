#!/usr/bin/env bash
# generate.sh <functions.txt> <fbclient.spec> <forwards.h>: the export list of the library and the
# forwards that can be generated, both from the table of prototypes.

set -euo pipefail

awk -v spec="$2" -v forwards="$3" '
function trim(text) { gsub(/^ +| +$/, "", text); return text }

/^#/ || /^ *$/ { next }
{
    own = sub(/^own /, "")
    open = index($0, "(")
    head = substr($0, 1, open - 1)
    match(head, /[a-z_0-9]+$/)
    name = substr(head, RSTART)
    result = trim(substr(head, 1, RSTART - 1))
    list = substr($0, open + 1)
    sub(/\) *$/, "", list)
    count = list == "void" ? 0 : split(list, types, ",")
    convention = "stdcall"; exported = ""; taken = ""; given = ""
    for (i = 1; i <= count; ++i) {
        type = trim(types[i])
        if (type == "...") { convention = "varargs"; continue }
        exported = exported (i > 1 ? " " : "") (type ~ /\*/ ? "ptr" : "long")
        taken = taken (i > 1 ? ", " : "") type " a" i
        given = given (i > 1 ? ", " : "") "a" i
    }
    printf "@ %s %s(%s) forward_%s\n", convention, name, exported, name > spec
    if (own) next
    printf "%s FORWARD forward_%s(%s)\n{\n    %s%s(%s);\n}\n", result, name, count ? taken : "void",
        result == "void" ? "" : "return ", name, given > forwards
}' "$1"
