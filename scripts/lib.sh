# shellcheck shell=bash disable=SC2034
# Sourced by demo.sh, test.sh and the other scripts: where things are, and one line per step.
#
#   step "title" command args...
#       Runs the command in a subshell with errexit on. Its output goes to build/logs/<title>.log;
#       when it fails, the log's last lines are shown and the script ends with the command's code.
#       Call it as a statement of its own: after `if`, `!`, `&&` or `||` bash ignores errexit.
#       What a later step needs goes through files, as variables set in a step are lost.
#   step_begin "title" command args...
#       Starts such a step in the background. One at a time.
#   step_await
#       Waits for it, and ends the script when it failed.
#
# TOLVANE_BUILD moves the build folder (servers, prefixes and logs included), so that two runs can
# stand side by side. TOLVANE_LANE names a set of server, Wine prefix and display within it, so that
# two parts of one run can.

set -euo pipefail

ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
SCRIPTS=$ROOT/scripts
BUILD=${TOLVANE_BUILD:-$ROOT/build}
mkdir -p "$BUILD"
BUILD=$(cd "$BUILD" && pwd)
LOGS=$BUILD/logs
BESIDE=
LANE=${TOLVANE_LANE:+-$TOLVANE_LANE}
JOBS=$(nproc)

have_root() {
    [ "$(id -u)" -eq 0 ]
}

# Before the command of a virtual scale, and of what waits for its replies: a higher priority, because a real scale
# answers in time however busy this computer is, and so does a shop's computer.
SCALE_PRIORITY=()
if have_root; then SCALE_PRIORITY=(nice -n -10); fi

# say <text>...: one line to the terminal.
say() {
    printf '%s\n' "$*"
}

# fail <text>...: the reason why the running step or script ends.
fail() {
    printf '%s\n' "$*" >&2
    exit 1
}

step() {
    local title=$1 status=0 started=$SECONDS
    shift
    printf '%s ... ' "$title"
    set +e
    step_run "$title" "$@"
    status=$?
    set -e
    step_result "$title" "$status" "$started"
}

step_begin() {
    BESIDE_TITLE=$1
    BESIDE_ENDED=$LOGS/ended-beside
    BESIDE_STARTED=$SECONDS
    mkdir -p "$LOGS"
    set +e
    step_beside "$@" &
    set -e
    BESIDE=$!
    say "$1 ... started; runs during the next steps"
}

# Leaves a note of when it ended.
step_beside() {
    local status
    step_run "$@"
    status=$?
    printf '%s\n' "$SECONDS" >"$BESIDE_ENDED"
    return "$status"
}

step_await() {
    local status=0
    wait "$BESIDE" || status=$?
    BESIDE=
    printf '%s ... ' "$BESIDE_TITLE"
    step_result "$BESIDE_TITLE" "$status" "$((BESIDE_STARTED + SECONDS - $(cat "$BESIDE_ENDED")))"
}

step_log() {
    printf '%s/%s.log\n' "$LOGS" "$(tr -cs 'A-Za-z0-9.+\n' '-' <<<"$1")"
}

# step_run <title> <command>...
step_run() {
    local log
    mkdir -p "$LOGS"
    log=$(step_log "$1")
    shift
    (
        trap - EXIT
        set -e
        "$@"
    ) >"$log" 2>&1 </dev/null
}

# step_result <title> <status> <SECONDS when it began>: ends the script when it failed.
step_result() {
    local title=$1 status=$2 log
    log=$(step_log "$title")
    if [ "$status" -eq 0 ]; then
        printf 'ok (%d s)\n' "$((SECONDS - $3))"
        return 0
    fi
    printf '\n'
    {
        printf 'FAILED: %s\n' "$title"
        failure_excerpt "$log"
        printf 'whole log: %s\n' "$log"
    } >&2
    exit "$status"
}

# failure_excerpt <log>: its last lines without the tests that passed.
failure_excerpt() {
    tr -d '\r' <"$1" |
        sed -e '/^\[ RUN      \] /{N;/\n\[       OK \] /d}' \
            -e '/^\[       OK \] /d' -e '/^\[----------\]/d' -e '/^$/d' |
        tail -n 30
}

# wait_until <seconds> <command>...: polls the command until it succeeds; fails at the deadline.
wait_until() {
    local deadline=$((SECONDS + $1))
    shift
    until "$@"; do
        [ "$SECONDS" -lt "$deadline" ] || return 1
        sleep 0.05
    done
}

# process_is <pid> <word>: whether the process lives and has the word in its command line. A number
# that was kept in a file may belong to another program by now.
process_is() {
    [ -n "$1" ] && [ -r "/proc/$1/cmdline" ] && tr '\0' ' ' <"/proc/$1/cmdline" | grep -qF -- "$2"
}

# process_gone <pid>: whether it has ended, a zombie that nobody reaped included.
process_gone() {
    ! [ -d "/proc/$1" ] || grep -q '^State:[[:space:]]*Z' "/proc/$1/status" 2>/dev/null
}

# end_process <pid> <word>: asks the process to end, and makes it end after ten seconds.
end_process() {
    process_is "$1" "$2" || return 0
    kill "$1" 2>/dev/null || return 0
    wait_until 10 process_gone "$1" || kill -9 "$1" 2>/dev/null || true
    wait_until 10 process_gone "$1"
}

# newer_than <stamp> <file>...: whether the stamp is missing or a file has changed since.
newer_than() {
    local stamp=$1 file
    shift
    [ -e "$stamp" ] || return 0
    for file in "$@"; do
        [ "$file" -nt "$stamp" ] && return 0
    done
    return 1
}
