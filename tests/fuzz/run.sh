#!/usr/bin/env bash
# Runs the fuzzers, as many at a time as there are processors: each begins with its seeds and with what
# earlier runs have found to reach more of the code (build/fuzz/corpus). A find ends its fuzzer and fails;
# it lies in build/fuzz/finds then.
#
#   tests/fuzz/run.sh [SUBJECT]...
#
# TOLVANE_FUZZ_SECONDS: how long each runs (30).

source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/lib.sh"

HERE=$ROOT/tests/fuzz
TREE=$BUILD/fuzz
FINDS=$TREE/finds
DURATION=${TOLVANE_FUZZ_SECONDS:-30}

fuzz_subjects() {
    local seeds
    for seeds in "$HERE"/*/seeds; do basename "$(dirname "$seeds")"; done
}

fuzz_log() {
    printf '%s/fuzz-%s.log\n' "$LOGS" "$1"
}

# What an earlier run has found comes first: it is removed when it does no harm any more.
fuzz_finds_again() {
    local find
    for find in "$FINDS/$1"-*; do
        [ -e "$find" ] || continue
        nice -n 10 "$TREE/tests/fuzz/fuzz_$1" -timeout=60 -rss_limit_mb=2048 \
            -artifact_prefix="$FINDS/$1-" "$find" || return 1
        rm -f "$find"
    done
}

# With a low priority, so that it leaves the processor to tests that measure time-outs.
fuzz_run() {
    mkdir -p "$TREE/corpus/$1"
    fuzz_finds_again "$1" >"$(fuzz_log "$1")" 2>&1 || return 1
    nice -n 10 "$TREE/tests/fuzz/fuzz_$1" -max_total_time="$DURATION" -max_len=4096 -timeout=60 \
        -rss_limit_mb=2048 -print_final_stats=1 -artifact_prefix="$FINDS/$1-" \
        "$TREE/corpus/$1" "$HERE/$1/seeds" >"$(fuzz_log "$1")" 2>&1
}

# A fuzzer that has not got beyond its seeds has shown nothing.
fuzz_tell() {
    local log runs seeds
    log=$(fuzz_log "$1")
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    seeds=$(find "$HERE/$1/seeds" -type f | wc -l)
    if [ "${2:-1}" -ne 0 ]; then
        grep -v '^#' "$log" | head -n 60
        say "$1: FAILED; the input is $(find "$FINDS" -name "$1-*" | head -n 1)"
        return 1
    fi
    say "$1: ${runs:-0} inputs, $(find "$TREE/corpus/$1" -type f | wc -l) kept"
    [ "${runs:-0}" -gt "$seeds" ] || fail "$1 has hardly run; see $log"
}

main() {
    local subject subjects=("$@") status=0 result
    declare -A pids
    mkdir -p "$FINDS" "$LOGS"
    [ $# -gt 0 ] || mapfile -t subjects < <(fuzz_subjects)
    for subject in "${subjects[@]}"; do
        while [ "$(jobs -rp | wc -l)" -ge "$JOBS" ]; do sleep 0.2; done
        fuzz_run "$subject" &
        pids[$subject]=$!
    done
    for subject in "${subjects[@]}"; do
        result=0
        wait "${pids[$subject]}" || result=$?
        fuzz_tell "$subject" "$result" || status=1
    done
    return "$status"
}

main "$@"
