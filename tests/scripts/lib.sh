# shellcheck shell=bash disable=SC2034
# Sourced by the tests of scripts.
#
#   run <command>...                     $out is then what the command printed on stdout and stderr, $code its code
#   expect <title> <pattern> <found>     one line; "found" must fit the pattern, in which * stands for any text
#   expect_end                           ends the script, with 1 when anything did not fit
#
# $root is the source tree. $tree is an empty folder, removed at the end.

set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
failed=0

run() {
    code=0
    out=$("$@" 2>&1) || code=$?
}

expect() {
    # shellcheck disable=SC2053
    if [[ $3 == $2 ]]; then
        printf 'ok: %s\n' "$1"
    else
        printf 'FAILED: %s: "%s" instead of "%s"\n' "$1" "$3" "$2"
        failed=1
    fi
}

expect_end() {
    exit "$failed"
}
