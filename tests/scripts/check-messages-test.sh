#!/usr/bin/env bash
# Gives scripts/check-messages.sh good and bad messages.
set -euo pipefail

check=$(cd "$(dirname "${BASH_SOURCE[0]}")/../../scripts" && pwd)/check-messages.sh
file=$(mktemp)
trap 'rm -f "$file"' EXIT
failed=0

expect() { # title, message, words of the refusal or nothing
    local code=0 out
    printf '%b' "$2" >"$file"
    out=$("$check" --file "$file") || code=$?
    if [[ $code == "$([ -z "$3" ] && echo 0 || echo 1)" && $out == *"$3"* ]]; then
        printf 'ok: %s\n' "$1"
    else
        printf 'FAILED: %s (code %s): %s\n' "$1" "$code" "$out"
        failed=1
    fi
}

longest=Keep$(printf '%068d' 0)
expect "a line passes" "Keep the layout\n" ""
expect "a line and a body pass" "Keep the layout\n\nIt was lost.\n" ""
expect "72 characters pass" "$longest\n" ""
expect "73 do not" "${longest}0\n" "73 characters"
expect "letters count, not bytes" "Запази $(printf '%065d' 0)\n" ""
expect "a small letter does not pass" "keep the layout\n" "capital letter"
expect "nothing does not pass" "" "capital letter"
expect "a full stop does not pass" "Keep the layout.\n" "full stop"
expect "a body needs an empty line before it" "Keep the layout\nIt was lost.\n" "second line"
exit "$failed"
