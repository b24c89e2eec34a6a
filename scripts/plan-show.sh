# shellcheck shell=bash disable=SC2034
# Sourced by plan.sh: what a run of a plan prints.

plan_clock() {
    printf '%d:%02d' "$((SECONDS / 60))" "$((SECONDS % 60))"
}

plan_tell() {
    plan_clear
    printf '%s  %s\n' "$(plan_clock)" "$*"
}

plan_clear() {
    if [ -t 1 ]; then printf '\r\e[K'; fi
}

plan_show() {
    local name seconds
    say "${#PLAN[@]} steps, up to $PLAN_LIMIT at the same time:"
    for name in "${PLAN[@]}"; do
        seconds=$(job_last_time "$name")
        printf '  %-18s %-46s %s\n' "$name" "${JOB_TITLE[$name]}" "${seconds:+$seconds s last time}"
    done
}

# job_progress <name>: how far it is, by the last count in its log: "[7/99]" of a build or of parts of the
# step, programs that ctest has ended, or tests that have ended of those that a program has.
job_progress() {
    tr -d '\r' 2>/dev/null <"$(job_log "$1")" | awk '
        /^\[[0-9]+\/[0-9]+\]/ { split($1, part, /[][]/); shown = part[2] }
        /^ *[0-9]+\/[0-9]+ Test +#/ { shown = $1 }
        /^\[==========\] Running / { all = $3; ended = 0 }
        /^\[(       OK |  FAILED  |  SKIPPED )\].* ms\)$/ { ++ended; shown = ended "/" all }
        END { print shown }'
}

# On a terminal a line that is written over; in a log a line a minute for each step that runs.
plan_progress() {
    local name text line=
    for name in "${PLAN[@]}"; do
        [ "${JOB_STATE[$name]}" = running ] || continue
        if [ ! -t 1 ] && [ $((SECONDS - JOB_TOLD[$name])) -lt 60 ]; then continue; fi
        text="$name $(job_progress "$name")"
        text="${text% } $((SECONDS - JOB_STARTED[$name])) s"
        if [ -t 1 ]; then
            line+="${line:+ | }$text"
        else
            JOB_TOLD[$name]=$SECONDS
            plan_tell "  $text"
        fi
    done
    if [ -t 1 ]; then printf '\r\e[K%s  %.*s' "$(plan_clock)" "$((${COLUMNS:-80} - 10))" "$line"; fi
}
