#!/usr/bin/env bash
# Runs one step of test.sh, in a build folder of its own, with a tool that finds a fault and with one
# that finds none, and looks at the exit codes.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

# expect_run <title> <what clang-format does> <code of the run> <expected words>
expect_run() {
    printf '#!/bin/sh\n%s\n' "$2" >"$tree/clang-format"
    chmod 755 "$tree/clang-format"
    run env PATH="$tree:$PATH" TOLVANE_BUILD="$tree/build" "$root/test.sh" --only format
    expect "$1" "$3 *$4*" "$code $out"
}

expect_run "a step that passes ends the run well" "exit 0" 0 "format: ok"
expect_run "a step that fails ends the run with 1" "exit 1" 1 "FAILED: format"
expect_run "a run ends with 1 again when nothing has changed" "exit 1" 1 "FAILED: format"

run env TOLVANE_BUILD="$tree/build" "$root/test.sh" --only format --only layers
expect "two names are refused" "1 *--only stands once*" "$code $out"
expect_end
