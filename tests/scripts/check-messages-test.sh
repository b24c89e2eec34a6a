#!/usr/bin/env bash
# Gives scripts/check-messages.sh good and bad messages, in a file and as commits.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
check=$root/scripts/check-messages.sh

expect_message() { # title, message, words of the refusal ("" for none)
    printf '%b' "$2" >"$tree/message"
    run "$check" --file "$tree/message"
    expect "$1" "$([ -z "$3" ] && echo 0 || echo 1) *$3*" "$code $out"
}

longest=Keep$(printf '%068d' 0)
expect_message "a line passes" "Keep the layout\n" ""
expect_message "a line and a body pass" "Keep the layout\n\nIt was lost.\n" ""
expect_message "72 characters pass" "$longest\n" ""
expect_message "73 do not" "${longest}0\n" "73 characters"
expect_message "letters count, not bytes" "Запази $(printf '%065d' 0)\n" ""
expect_message "a small letter does not pass" "keep the layout\n" "capital letter"
expect_message "nothing does not pass" "" "capital letter"
expect_message "a full stop does not pass" "Keep the layout.\n" "full stop"
expect_message "a body needs an empty line before it" "Keep the layout\nIt was lost.\n" "second line"
expect_message "what the editor leaves passes" "Keep the layout\n# Please enter\n#\n" ""
expect_message "a message for another commit passes" "fixup! Keep the layout\n" ""

# A repository with one bad commit between two good ones.
mkdir "$tree/repository"
cp -r "$(dirname "$check")" "$tree/repository/scripts"
cd "$tree/repository"
git init -q
for message in "Keep the layout" "keep the marks" "Keep the search"; do
    git -c user.name=Test -c user.email=test@example.com commit -q --allow-empty -m "$message"
done
expect_commits() { # title, code, words, argument...
    run env TOLVANE_BUILD="$tree/build" scripts/check-messages.sh "${@:4}"
    expect "$1" "$2 *$3*" "$code $out"
}
expect_commits "the bad commit of a history is found" 1 "keep the marks"
expect_commits "one outside of the range is not" 0 "" HEAD~1..HEAD
expect_commits "an unknown range is an error" 1 "does not know" nowhere..HEAD
rm -rf .git
expect_commits "without a history there is nothing to check" 0 "no history"
expect_end
