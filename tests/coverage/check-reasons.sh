#!/usr/bin/env bash
# Checks that every line of code that reasons.txt explains still stands in its file, so that an entry
# does not outlive its code unseen between two runs of coverage.sh. Needs no build.
#
#   tests/coverage/check-reasons.sh [ROOT REASONS.TXT]
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=${1:-$(cd "$here/../.." && pwd)}
reasons=${2:-$here/reasons.txt}

ROOT=$root awk '
    function trim(text) {
        gsub(/^[ \t\r]+|[ \t\r]+$/, "", text)
        return text
    }
    # Cuts the last field off the global `rest` and returns it; the code may hold the separator.
    function last_field(    at, from, found) {
        for (from = 1; (found = index(substr(rest, from), " | ")) > 0; from += found)
            at = from + found - 1
        if (!at) return ""
        found = substr(rest, at + 3)
        rest = substr(rest, 1, at - 1)
        return found
    }
    function read_source(name,    path, text, status) {
        path = ENVIRON["ROOT"] "/" name
        while ((status = (getline text < path)) > 0)
            stands[name, trim(text)] = 1
        close(path)
        readable[name] = status == 0
    }
    function complain(text) {
        printf "%s:%d: %s\n", FILENAME, FNR, text
        failed = 1
    }
    { rest = trim($0) }
    rest == "" || rest ~ /^#/ { next }
    {
        why = last_field()
        kind = last_field()
        at = index(rest, " | ")
        if (!at || why == "" || (kind != "system" && kind != "other")) {
            complain("not \"file | line of code | kind | why\"")
            next
        }
        name = substr(rest, 1, at - 1)
        code = substr(rest, at + 3)
        ++entries
        if (!(name in readable)) read_source(name)
        if (!readable[name])
            complain("there is no file " name)
        else if (!((name, code) in stands))
            complain(name " has no such line any more: " code)
        if ((name, code) in explained) complain(name " is explained twice: " code)
        explained[name, code] = 1
    }
    END {
        if (!entries) {
            print "no line of code is explained"
            failed = 1
        }
        exit failed
    }
' "$reasons"
