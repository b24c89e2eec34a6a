#!/usr/bin/env bash
# Checks the form of commit messages: a first line of up to 72 characters that begins with a capital
# letter and does not end with a full stop, then an empty line when more follows.
#
#   scripts/check-messages.sh             all commits since the rule exists
#   scripts/check-messages.sh <range>     these, as git log takes them
#   scripts/check-messages.sh --file <f>  the message in a file; as a hook: .git/hooks/commit-msg

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

# A line is as long as its letters are many.
export LC_ALL=C.UTF-8
# The last commit from before the rule.
RULE_SINCE=394f761857a3917252dbcb3b8c671680bba87065

# check_message <name>: the message comes by the standard input.
check_message() {
    local first second reason=
    IFS= read -r first || true
    IFS= read -r second || true
    if [ "${#first}" -gt 72 ]; then
        reason="the first line has ${#first} characters; 72 is the limit"
    elif ! [[ $first =~ ^[[:upper:]] ]]; then
        reason="the first line does not begin with a capital letter"
    elif [[ $first == *. ]]; then
        reason="the first line ends with a full stop"
    elif [ -n "$second" ]; then
        reason="the second line is not empty"
    else
        return 0
    fi
    printf '%s: %s\n    %s\n' "$1" "$reason" "$first"
    return 1
}

cd "$ROOT"
failed=0
if [ "${1:-}" = --file ]; then
    check_message "$2" <"$2" || failed=1
elif [ $# -eq 0 ] && ! git rev-parse --git-dir >/dev/null 2>&1; then
    say "there is no history here, and no message to check"
else
    # A shallow clone has only the newest commits.
    range=${1:-$RULE_SINCE..HEAD}
    [ $# -gt 0 ] || git cat-file -e "$RULE_SINCE" 2>/dev/null || range=HEAD
    commits=$(git rev-list --no-merges "$range") || fail "check-messages.sh: git does not know $range"
    for commit in $commits; do
        check_message "${commit:0:10}" < <(git log -1 --format=%B "$commit") || failed=1
    done
fi
exit "$failed"
