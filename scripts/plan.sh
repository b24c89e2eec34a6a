# shellcheck shell=bash
# Sourced by test.sh: a plan of steps, and running it with several lanes at the same time.
#
#   job <name> "<title>" <command> [argument]...   adds a step to the plan; the lines that follow describe it
#       lane <name>       one step of a lane runs at a time, the first that may start
#       after <name>...   starts when these steps have passed
#       alone <word>...   never beside another step with one of the words
#       first             the steps after it in the plan wait until it has ended, even without `after`
#       reads <path>...   all that the result depends on: files, folders or patterns. Such a step is
#                         left out while nothing of it has changed since the step last passed.
#
#   plan_show             the steps, and how long each took last time (plan-show.sh)
#   plan_lock             makes sure that no other run is under way in the build folder
#   plan_run              runs the plan; PLAN_STATUS is then 1 when a step has failed. Like `step` of
#                         lib.sh it is to be called as a statement of its own.
#   plan_end              ends what still runs. A step's programs have to stay in its process group,
#                         so it calls `timeout --foreground`.
#
# PLAN_ALL=yes runs what is up to date too. PLAN_FORCED: the steps that run even when up to date.
# PLAN_KEEP_GOING=yes goes on after a failure. A step runs in a subshell as `step` of lib.sh runs it;
# STEP_RESULTS names a folder of its own, for what it counts.

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
source "$SCRIPTS/plan-show.sh"

PLAN_FOLDER=$BUILD/plan
PLAN_ALL=no
PLAN_FORCED=
PLAN_STATUS=0
PLAN_KEEP_GOING=no
# Most steps wait most of the time.
PLAN_LIMIT=$((JOBS + 4))
PLAN=()
declare -A JOB_TITLE JOB_COMMAND JOB_LANE JOB_AFTER JOB_ALONE JOB_FIRST JOB_READS
declare -A JOB_STATE JOB_PID JOB_STARTED JOB_KEY JOB_TOLD

job() {
    local name=$1
    PLAN+=("$name")
    JOB_TITLE[$name]=$2
    JOB_COMMAND[$name]=$(printf '%q ' "${@:3}")
    JOB_LANE[$name]=$name
    JOB_AFTER[$name]='' JOB_ALONE[$name]='' JOB_FIRST[$name]=no JOB_READS[$name]='' JOB_STATE[$name]=waiting
}

lane() { JOB_LANE[${PLAN[-1]}]=$1; }
after() { JOB_AFTER[${PLAN[-1]}]+=" $*"; }
alone() { JOB_ALONE[${PLAN[-1]}]+=" $*"; }
first() { JOB_FIRST[${PLAN[-1]}]=yes; }
reads() { JOB_READS[${PLAN[-1]}]+=$'\n'$(printf '%s\n' "$@"); }

job_log() { printf '%s/%s.log\n' "$LOGS" "$1"; }
job_results() { printf '%s/results/%s\n' "$PLAN_FOLDER" "$1"; }
job_last_time() { cat "$PLAN_FOLDER/seconds/$1" 2>/dev/null || true; }

# plan_keep <name>...: of the plan only these steps, and what they start after.
plan_keep() {
    local name kept=() wanted=" $* " before=
    until [ "$wanted" = "$before" ]; do
        before=$wanted
        for name in $wanted; do wanted=" $(tr ' ' '\n' <<<"$wanted${JOB_AFTER[$name]}" | sort -u | paste -sd' ') "; done
    done
    for name in "${PLAN[@]}"; do
        if [[ $wanted == *" $name "* ]]; then kept+=("$name"); fi
    done
    PLAN=("${kept[@]}")
}

# What every step's result depends on besides its own files: the programs of the machine, the rights
# of the user (as root more is tested), and what shortens or lengthens tests.
plan_machine() {
    id -u
    dpkg-query -W -f '${Package} ${Architecture} ${Version}\n'
    env | sed -nE '/^(TOLVANE|GTEST)_/p' | sort
}

# job_key <name>: a number that changes with anything that the step reads; nothing when it reads
# nothing. A pattern that fits no file is a mistake in the plan.
job_key() {
    local IFS=$'\n' pattern path paths=()
    [ -n "${JOB_READS[$1]}" ] || return 0
    for pattern in ${JOB_READS[$1]}; do
        for path in $pattern; do
            [ -e "$path" ] || fail "the step $1 reads $pattern, and there is no such file"
            paths+=("$path")
        done
    done
    {
        plan_machine
        printf '%s\n' "${JOB_COMMAND[$1]}"
        find "${paths[@]}" -type f ! -path '*/CMakeFiles/*' -print0 | sort -zu | xargs -0 sha256sum
    } | sha256sum | cut -c1-40
}

job_is_current() {
    [ "$PLAN_ALL" = no ] && [[ " $PLAN_FORCED " != *" $1 "* ]] && [ -n "${JOB_KEY[$1]}" ] &&
        [ "$(cat "$PLAN_FOLDER/passed/$1" 2>/dev/null)" = "${JOB_KEY[$1]}" ]
}

# Whether a step may start now; one whose predecessor has failed never does.
job_may_start() {
    local name=$1 other word
    for other in ${JOB_AFTER[$name]}; do
        case ${JOB_STATE[$other]} in
            passed | current) ;;
            failed | dropped)
                JOB_STATE[$name]=dropped
                plan_tell "$name: not run, as $other has not passed"
                return 1
                ;;
            *) return 1 ;;
        esac
    done
    for other in "${PLAN[@]}"; do
        [ "${JOB_STATE[$other]}" = running ] || continue
        [ "${JOB_LANE[$other]}" != "${JOB_LANE[$name]}" ] || return 1
        for word in ${JOB_ALONE[$name]}; do
            [[ " ${JOB_ALONE[$other]} " != *" $word "* ]] || return 1
        done
    done
}

job_start() {
    local name=$1
    JOB_STARTED[$name]=$SECONDS
    mkdir -p "$LOGS"
    if ! JOB_KEY[$name]=$(job_key "$name" 2>"$(job_log "$name")"); then
        job_fail "$name"
        return 0
    fi
    if job_is_current "$name"; then
        JOB_STATE[$name]=current
        plan_tell "$name: up to date"
        return 0
    fi
    rm -rf "$PLAN_FOLDER/passed/$name" "$(job_results "$name")"
    mkdir -p "$(job_results "$name")"
    JOB_STATE[$name]=running JOB_TOLD[$name]=$SECONDS
    plan_tell "$name: ${JOB_TITLE[$name]} ..."
    # In a process group of its own, so that it can be ended with all that it has started.
    set -m
    (
        trap - EXIT INT TERM
        set +m -e
        export STEP_RESULTS
        STEP_RESULTS=$(job_results "$name")
        eval "${JOB_COMMAND[$name]}"
    ) >"$(job_log "$name")" 2>&1 </dev/null 8>&- &
    JOB_PID[$name]=$!
    set +m
}

job_finish() {
    local name=$1 status=0 seconds=$((SECONDS - JOB_STARTED[$1]))
    wait "${JOB_PID[$name]}" || status=$?
    if [ "$status" -eq 0 ]; then
        JOB_STATE[$name]=passed
        # Some of its tests tell nothing about the time of all.
        [ -n "${GTEST_FILTER:-}" ] || printf '%s\n' "$seconds" >"$PLAN_FOLDER/seconds/$name"
        # The step may not have seen a file that has changed meanwhile.
        if [ -n "${JOB_KEY[$name]}" ] && [ "$(job_key "$name")" = "${JOB_KEY[$name]}" ]; then
            printf '%s\n' "${JOB_KEY[$name]}" >"$PLAN_FOLDER/passed/$name"
        fi
        plan_tell "$name: ok ($seconds s)"
        return 0
    fi
    job_fail "$name"
}

job_fail() {
    local name=$1
    JOB_STATE[$name]=failed
    plan_clear
    {
        printf 'FAILED: %s (%s), after %d s\n' "$name" "${JOB_TITLE[$name]}" "$((SECONDS - JOB_STARTED[$name]))"
        failure_excerpt "$(job_log "$name")"
        printf 'whole log: %s\n' "$(job_log "$name")"
    } >&2
}

plan_running() {
    local name count=0
    for name in "${PLAN[@]}"; do
        if [ "${JOB_STATE[$name]}" = running ]; then count=$((count + 1)); fi
    done
    printf '%d\n' "$count"
}

# plan_has <state>: whether a step is in that state.
plan_has() {
    local name
    for name in "${PLAN[@]}"; do
        [ "${JOB_STATE[$name]}" != "$1" ] || return 0
    done
    return 1
}

plan_start_more() {
    local name
    for name in "${PLAN[@]}"; do
        if [ "${JOB_STATE[$name]}" = waiting ]; then
            [ "$(plan_running)" -lt "$PLAN_LIMIT" ] || return 0
            if job_may_start "$name"; then job_start "$name"; fi
        fi
        case ${JOB_FIRST[$name]}-${JOB_STATE[$name]} in
            yes-waiting | yes-running) return 0 ;;
        esac
    done
}

# What is up to date, or will not be run, may let a step before it in the plan start.
plan_start_all() {
    local before=
    until [ "$before" = "${JOB_STATE[*]}" ]; do
        before=${JOB_STATE[*]}
        plan_start_more
    done
}

plan_finish_some() {
    local name
    for name in "${PLAN[@]}"; do
        if [ "${JOB_STATE[$name]}" = running ] && process_gone "${JOB_PID[$name]}"; then
            job_finish "$name"
        fi
    done
}

# Two runs in one build folder would end each other's servers. What a step starts does not hold this.
plan_lock() {
    mkdir -p "$PLAN_FOLDER"
    exec 8>"$PLAN_FOLDER/lock"
    flock -n 8 || fail "another run is under way in $BUILD"
}

plan_run() {
    plan_check
    mkdir -p "$LOGS" "$PLAN_FOLDER"/{passed,seconds,results}
    while true; do
        if [ "$PLAN_KEEP_GOING" = yes ] || ! plan_has failed; then plan_start_all; fi
        plan_has running || break
        sleep 0.3
        plan_finish_some
        if [ "$PLAN_KEEP_GOING" = no ] && plan_has failed && plan_has running; then
            plan_tell "ending the other steps; --keep-going lets them run"
            plan_end
            break
        fi
        plan_progress
    done
    plan_clear
    PLAN_STATUS=0
    if plan_has failed; then
        PLAN_STATUS=1
    elif plan_has waiting; then
        fail "the plan goes round in a circle"
    fi
}

# A step after one that is not in the plan would never start.
plan_check() {
    local name other
    for name in "${PLAN[@]}"; do
        for other in ${JOB_AFTER[$name]}; do
            [[ " ${PLAN[*]} " == *" $other "* ]] || fail "the step $name is after $other, and there is no such step"
        done
    done
}

plan_end() {
    local name
    for name in "${PLAN[@]}"; do
        [ "${JOB_STATE[$name]}" = running ] || continue
        kill -- "-${JOB_PID[$name]}" 2>/dev/null || true
        JOB_STATE[$name]=ended
    done
    for name in "${PLAN[@]}"; do
        if [ "${JOB_STATE[$name]}" = ended ]; then
            wait_until 15 group_gone "${JOB_PID[$name]}" || kill -9 -- "-${JOB_PID[$name]}" 2>/dev/null || true
        fi
    done
}

# group_gone <number>: whether no process of the group runs any more.
group_gone() {
    ! pgrep --pgroup "$1" --runstates D,I,R,S,T,t >/dev/null
}
