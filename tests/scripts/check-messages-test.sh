#!/usr/bin/env bash
# Gives scripts/check-messages.sh good and bad messages, in a file and as commits.
set -euo pipefail

check=$(cd "$(dirname "${BASH_SOURCE[0]}")/../../scripts" && pwd)/check-messages.sh
tree=$(mktemp -d)
file=$tree/message
trap 'rm -rf "$tree"' EXIT
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
expect "what the editor leaves passes" "Keep the layout\n# Please enter\n#\n" ""
expect "a message for another commit passes" "fixup! Keep the layout\n" ""

# A repository with one bad commit between two good ones.
mkdir "$tree/repository"
cp -r "$(dirname "$check")" "$tree/repository/scripts"
cd "$tree/repository"
git init -q
for message in "Keep the layout" "keep the marks" "Keep the search"; do
    git -c user.name=Test -c user.email=test@example.com commit -q --allow-empty -m "$message"
done
expect_commits() { # title, code, words, argument...
    local code=0 out
    out=$(TOLVANE_BUILD=$tree/build scripts/check-messages.sh "${@:4}" 2>&1) || code=$?
    if [[ $code == "$2" && $out == *"$3"* ]]; then
        printf 'ok: %s\n' "$1"
    else
        printf 'FAILED: %s (code %s): %s\n' "$1" "$code" "$out"
        failed=1
    fi
}
expect_commits "the bad commit of a history is found" 1 "keep the marks"
expect_commits "one outside of the range is not" 0 "" HEAD~1..HEAD
expect_commits "an unknown range is an error" 1 "does not know" nowhere..HEAD
rm -rf .git
expect_commits "without a history there is nothing to check" 0 "no history"
exit "$failed"
