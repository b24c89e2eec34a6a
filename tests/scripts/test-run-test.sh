#!/usr/bin/env bash
# Runs one step of test.sh, in a build folder of its own, with a tool that finds a fault and with one
# that finds none, and looks at the exit codes.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
failed=0

# expect <title> <what clang-format does> <code of the run>
expect() {
    local code=0 out
    printf '#!/bin/sh\n%s\n' "$2" >"$tree/clang-format"
    chmod 755 "$tree/clang-format"
    out=$(PATH=$tree:$PATH TOLVANE_BUILD=$tree/build "$root/test.sh" --only format 2>&1) || code=$?
    if [ "$code" -eq "$3" ]; then
        printf 'ok: %s\n' "$1"
    else
        printf 'FAILED: %s (code %s): %s\n' "$1" "$code" "$out"
        failed=1
    fi
}

expect "a step that passes ends the run well" "exit 0" 0
expect "a step that fails ends the run with 1" "exit 1" 1
expect "a run ends with 1 again when nothing has changed" "exit 1" 1
exit "$failed"
