#!/usr/bin/env bash
# Runs small plans with scripts/plan.sh in a build folder of their own, and looks at what ran, when, and
# what was said.
set -euo pipefail

plan=$(cd "$(dirname "${BASH_SOURCE[0]}")/../../scripts" && pwd)/plan.sh
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
failed=0
mkdir "$tree/build"

# run: the plan that comes by the standard input; $out and $code tell what it said, $tree/ran what ran.
run() {
    : >"$tree/ran"
    code=0
    {
        printf 'source %q\nran() { echo "$1" >>%q; }\n' "$plan" "$tree/ran"
        cat
        printf 'plan_run\nexit "$PLAN_STATUS"\n'
    } >"$tree/script"
    out=$(cd "$tree" && TOLVANE_BUILD=$tree/build bash "$tree/script" 2>&1) || code=$?
}

expect() { # title, expected code, what ran, expected words
    local ran
    ran=$(paste -sd' ' "$tree/ran")
    if [[ $code == "$2" && $ran == "$3" && $out == *"$4"* ]]; then
        printf 'ok: %s\n' "$1"
    else
        printf 'FAILED: %s (code %s, ran "%s"): %s\n' "$1" "$code" "$ran" "$out"
        failed=1
    fi
}

run <<'PLAN'
job first "First" ran first
job second "Second" ran second; after first
PLAN
expect "steps run in their order" 0 "first second" "second: ok"

broken='bad() { ran bad; echo "the reason"; false; ran behind; }
other() { ran other; }
job bad "Bad" bad
job later "Later" ran later; after bad
job other "Other" other; lane slow; after slow
job slow "Slow" sleep 0.1; lane slow'
run <<<"${broken/after slow/}"
expect "a failure is shown with its reason" 1 "bad other" "the reason"

run <<'PLAN'
bad() { false; }
job bad "Bad" bad
job slow "Slow" sleep 60
PLAN
expect "a failure ends the others" 1 "" "ending the other steps"
[ "$SECONDS" -lt 50 ] || { printf 'FAILED: the others were waited for\n' && failed=1; }

run <<'PLAN'
PLAN_KEEP_GOING=yes
bad() { false; }
job bad "Bad" bad
job later "Later" ran later; after bad
job other "Other" eval 'sleep 1; ran other'
PLAN
expect "a run goes on behind a failure when asked" 1 "other" "later: not run, as bad has not passed"

echo one >"$tree/input"
reading='job look "Look" ran look; reads "in*"
job next "Next" ran next; after look'
run <<<"$reading"
expect "a step that reads runs" 0 "look next" "look: ok"
run <<<"$reading"
expect "what is up to date is left out" 0 "next" "look: up to date"
run <<<"PLAN_ALL=yes; $reading"
expect "unless all is asked for" 0 "look next" "look: ok"
run <<<"PLAN_FORCED=look; $reading"
expect "or the step itself" 0 "look next" "look: ok"
echo two >"$tree/input"
run <<<"$reading"
expect "a change of what it reads runs it again" 0 "look next" "look: ok"
run <<<"export GTEST_FILTER=a; $reading"
expect "so does another filter" 0 "look next" "look: ok"
run <<<'job look "Look" eval "ran look; false"; reads "in*"'
expect "a failure" 1 "look" "FAILED: look"
run <<<"$reading"
expect "leaves nothing that is up to date" 0 "look next" "look: ok"
run <<<'job look "Look" eval "ran look; echo three >input"; reads "in*"'
run <<<'job look "Look" eval "ran look; echo three >input"; reads "in*"'
expect "nor does a change behind its back" 0 "look" "look: ok"
run <<<'job look "Look" ran look; reads "nothing*"'
expect "a pattern that fits nothing is a mistake" 1 "" "reads nothing*, and there is no such file"

alone='turn() { ran "$1-begins"; sleep 0.5; ran "$1-ends"; }
job a "A" turn a; %s
job b "B" turn b; %s'
run <<<"${alone//%s/lane x}"
expect "a lane has one step at a time" 0 "a-begins a-ends b-begins b-ends" ""
run <<<"${alone//%s/alone x}"
expect "steps that share a word are never side by side" 0 "a-begins a-ends b-begins b-ends" ""
run <<<"${alone//%s/alone }"
expect "others are" 0 "a-begins b-begins a-ends b-ends" ""

run <<'PLAN'
job a "A" ran a
job b "B" ran b; after a
job c "C" ran c
plan_keep b
PLAN
expect "a part of a plan brings what it needs" 0 "a b" ""
exit "$failed"
