#!/usr/bin/env bash
# The manual page and the completion that the build has made: roff finds nothing wrong with the page, it
# names every command and option of the help, and bash completes command lines.
#
#   tests/command/examples/texts.sh <folder of tolvane, tolvane.1 and tolvane.bash>

# shellcheck disable=SC1091,SC2154
source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/lib.sh"

folder=$1

run groff -ww -man -Tutf8 -z "$folder/tolvane.1"
expect "roff takes the page" "" "$out"
page=$(groff -man -Tutf8 -P-c -P-b -P-u "$folder/tolvane.1")
for title in NAME SYNOPSIS DESCRIPTION EXAMPLES COMMANDS OPTIONS "EXIT STATUS" FILES; do
    expect "the page has the part $title" "*$title*" "$page"
done
expect "the page tells what a code means" "*11*another run works on the scale.*" "$page"
commands="check write delete test release status articles lines scales discover ledger"
for command in $commands; do
    expect "the page has the command $command" "*tolvane $command*" "$page"
    for option in $("$folder/tolvane" "$command" --help | grep -oE '^  (-., ?)?--[a-z0-9-]+' | grep -oE -- '--.*' | grep -v help); do
        expect "the page has $option of $command" "*$option*" "$page"
    done
done
for option in $("$folder/tolvane" --help | grep -oE '^  (-., ?)?--[a-z0-9-]+' | grep -oE -- '--.*' | grep -v help); do
    expect "the page has $option" "*$option*" "$page"
done

# The exit codes have the same words wherever people meet them.
codes=$("$folder/tolvane" --help | sed -nE '/^Ends with:/,$s/^  ([0-9]+) +(.*)$/\1|\2/p')
expect "the help has all codes" "9" "$(printf '%s\n' "$codes" | wc -l)"
while IFS='|' read -r code words; do
    expect "tolvane-failed says the words of $code" "run: $words ($code)" \
        "$("$root/tools/systemd/tolvane-failed" run "$code")"
    expect "exit-codes.yml has the words of $code" "  $code: $words" \
        "$(grep -E "^  $code: " "$root/tools/ansible/exit-codes.yml")"
    for page in command chain; do
        expect "$page.md has the words of $code" "| $code | $words |*" \
            "$(grep -E "^\| $code \|" "$root/docs/$page.md")"
    done
done <<<"$codes"

# complete <word>...: what bash offers for the last word, sorted.
complete_words() {
    bash -c 'source "$0"; COMP_WORDS=("$@"); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _tolvane
        printf "%s\n" "${COMPREPLY[@]}" | sort | paste -sd" "' "$folder/tolvane.bash" "$@"
}

expect "a command is completed" "write" "$(complete_words tolvane wr)"
expect "all commands are offered" "*check*delete*discover*write*" "$(complete_words tolvane "")"
expect "an option of a command is completed" "--changed" "$(complete_words tolvane write --ch)"
expect "an option of all commands is completed" "--lock-wait" "$(complete_words tolvane test --lo | tr ' ' '\n' | grep lock)"
expect "an option of another command is not offered" "" "$(complete_words tolvane test --pr)"
expect "the values of an option are offered" "retail wholesale" "$(complete_words tolvane write --price "")"
expect "a command's command is offered" "forget" "$(complete_words tolvane ledger fo)"
expect "a file is completed" "$folder/tolvane.1" "$(complete_words tolvane check --ini "$folder/tolvane.1")"
expect_end
