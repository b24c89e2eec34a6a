#!/usr/bin/env bash
# Checks the form of commit messages: a first line of up to 72 characters that begins with a capital
# letter and does not end with a full stop, then an empty line when more follows.
#
#   scripts/check-messages.sh             all commits since the rule exists
#   scripts/check-messages.sh <range>     these, as git log takes them
#   scripts/check-messages.sh --file <f>  the message in a file; as a hook: .git/hooks/commit-msg

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

# Count characters, not bytes.
export LC_ALL=C.UTF-8
# The last commit from before the rule.
RULE_SINCE=394f761857a3917252dbcb3b8c671680bba87065

# check_message <name> [being-written]: the message is read from the standard input. One that is
# being written may be meant for another commit.
check_message() {
    local first second reason=
    IFS= read -r first || true
    IFS= read -r second || true
    if [ -n "${2:-}" ] && [[ $first =~ ^(fixup|squash|amend)!\  ]]; then
        return 0
    elif [ "${#first}" -gt 72 ]; then
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

# The folder may belong to another user, as in a container.
history() {
    git -c safe.directory="$ROOT" "$@"
}

cd "$ROOT"
failed=0
if [ "${1:-}" = --file ]; then
    # As git will keep it: without the comments that it shows in the editor.
    check_message "$2" being-written < <(sed '/^# -* >8/,$d' "$2" | git stripspace --strip-comments) ||
        failed=1
elif [ $# -eq 0 ] && ! [ -e .git ]; then
    say "there is no history here, and no message to check"
else
    # A shallow clone has only the newest commits.
    range=${1:-$RULE_SINCE..HEAD}
    [ $# -gt 0 ] || history cat-file -e "$RULE_SINCE" 2>/dev/null || range=HEAD
    commits=$(history rev-list --no-merges "$range") || fail "check-messages.sh: git does not know $range"
    for commit in $commits; do
        check_message "${commit:0:10}" < <(history log -1 --format=%B "$commit") || failed=1
    done
fi
exit "$failed"
