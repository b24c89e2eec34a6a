#!/usr/bin/env bash
# Runs small scripts of steps, one of them beside the others, and looks at what they print and end with.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
failed=0

# expect <title> <script> <its code> <what it prints, numbers of seconds as N>
expect() {
    local code=0 out
    out=$(TOLVANE_BUILD=$tree/build bash -c "source '$root/scripts/lib.sh'; $2" 2>"$tree/err") || code=$?
    out=$(sed 's/([0-9]* s)/(N s)/' <<<"$out")
    if [ "$code" -eq "$3" ] && [ "$out" = "$4" ]; then
        printf 'ok: %s\n' "$1"
    else
        printf 'FAILED: %s (code %s): %s\n' "$1" "$code" "$out"
        failed=1
    fi
}

expect "steps one after another" 'step A true; step B true' 0 $'A ... ok (N s)\nB ... ok (N s)'
expect "a step that fails ends the script" 'step A sh -c "exit 7"; step B true' 7 'A ... '
expect "a step goes on beside the next" \
    'step_begin A sh -c "until [ -e $BUILD/b ]; do sleep 0.05; done"; step B touch "$BUILD/b"; step_await' 0 \
    $'A ... started; runs during the next steps\nB ... ok (N s)\nA ... ok (N s)'
expect "a step that fails beside the next ends the script when it is awaited" \
    'step_begin A sh -c "echo why; exit 7"; step B true; step_await; step C true' 7 \
    $'A ... started; runs during the next steps\nB ... ok (N s)\nA ... '
grep -qx 'FAILED: A' "$tree/err" && grep -qx 'why' "$tree/err" ||
    { printf 'FAILED: its log is shown: %s\n' "$(cat "$tree/err")"; failed=1; }
exit "$failed"
