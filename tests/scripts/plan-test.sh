#!/usr/bin/env bash
# Runs small plans with scripts/plan.sh in a build folder of their own, and looks at what ran, when, and
# what was printed.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
plan=$root/scripts/plan.sh
mkdir "$tree/build"
cd "$tree"

# run_plan: runs the plan that is read from the standard input; $tree/ran is then what ran.
run_plan() {
    : >"$tree/ran"
    {
        printf 'source %q\nran() { echo "$1" >>%q; }\n' "$plan" "$tree/ran"
        cat
        printf 'plan_run\nexit "$PLAN_STATUS"\n'
    } >"$tree/script"
    run env TOLVANE_BUILD="$tree/build" bash "$tree/script"
}

expect_run() { # title, expected code, what ran, expected words
    expect "$1" "code $2, ran \"$3\": *$4*" "code $code, ran \"$(paste -sd' ' "$tree/ran")\": $out"
}

run_plan <<'PLAN'
job first "First" ran first
job second "Second" ran second; after first
PLAN
expect_run "steps run in their order" 0 "first second" "second: ok"

run_plan <<'PLAN'
bad() { ran bad; echo "the reason"; false; ran after; }
job other "Other" ran other
job bad "Bad" bad; after other
job later "Later" ran later; after bad
PLAN
expect_run "a failure is shown with its reason" 1 "other bad" "the reason"

began=$SECONDS
run_plan <<'PLAN'
job bad "Bad" bad
slow() { timeout --foreground 60 sh -c 'echo $$ >slow.pid; exec sleep 60'; }
bad() { timeout 30 sh -c 'until [ -s slow.pid ]; do sleep 0.1; done'; false; }
job slow "Slow" slow
PLAN
expect_run "a failure ends the others" 1 "" "ending the other steps"
expect "with all that they have started" "gone" "$([ -d "/proc/$(cat slow.pid)" ] && echo "still there" || echo gone)"
expect "nobody waits for the others" yes "$([ $((SECONDS - began)) -lt 50 ] && echo yes || echo "no, $((SECONDS - began)) s")"

run_plan <<'PLAN'
PLAN_KEEP_GOING=yes
bad() { false; }
job bad "Bad" bad
job later "Later" ran later; after bad
job other "Other" eval 'sleep 1; ran other'
PLAN
expect_run "a run goes on after a failure when asked" 1 "other" "later: not run, as bad has not passed"

run_plan <<'PLAN'
many() {
    echo "[==========] Running 700 tests from 1 test suite."
    for ((i = 0; i < 600; ++i)); do echo "[       OK ] ManyTests.WithALongName$i (1 ms)"; done
    ran "$(job_progress many)"
}
job many "Many" many
PLAN
expect_run "all tests that have ended are counted" 0 "600/700" "many: ok"

run_plan <<'PLAN'
programs() {
    echo "[==========] Running 7 tests from 1 test suite."
    echo "[       OK ] SomeTest.Passes (1 ms)"
    echo "[2/24]"
    ran "$(job_progress programs)"
    echo "  3/61 Test  #5: test_text ............   Passed    0.11 sec"
    ran "$(job_progress programs)"
}
job programs "Programs" programs
PLAN
expect_run "so are a step's parts and programs" 0 "2/24 3/61" "programs: ok"

echo one >"$tree/input"
reading='job look "Look" ran look; reads "in*"
job next "Next" ran next; after look'
run_plan <<<"$reading"
expect_run "a step that reads runs" 0 "look next" "look: ok"
run_plan <<<"$reading"
expect_run "what is up to date is left out" 0 "next" "look: up to date"
run_plan <<<"PLAN_ALL=yes; $reading"
expect_run "unless all is asked for" 0 "look next" "look: ok"
run_plan <<<"PLAN_FORCED=look; $reading"
expect_run "or the step itself" 0 "look next" "look: ok"
echo two >"$tree/input"
run_plan <<<"$reading"
expect_run "a change of what it reads runs it again" 0 "look next" "look: ok"
run_plan <<<"export GTEST_FILTER=a; $reading"
expect_run "so does another filter" 0 "look next" "look: ok"
run_plan <<<'job look "Look" eval "ran look; false"; reads "in*"'
expect_run "a failure" 1 "look" "FAILED: look"
run_plan <<<"$reading"
expect_run "leaves nothing that is up to date" 0 "look next" "look: ok"
run_plan <<<'job look "Look" eval "ran look; echo three >input"; reads "in*"'
run_plan <<<'job look "Look" eval "ran look; echo three >input"; reads "in*"'
expect_run "nor does a change of the file by the step itself" 0 "look" "look: ok"
run_plan <<<'job look "Look" ran look; reads "nothing*"'
expect_run "a pattern that fits nothing is a mistake" 1 "" "reads nothing*, and there is no such file"
run_plan <<'PLAN'
PLAN_KEEP_GOING=yes
job look "Look" ran look; reads "nothing*"
job other "Other" eval 'sleep 1; ran other'
PLAN
expect_run "of that step alone" 1 "other" "FAILED: look"
run_plan <<<'job look "Look" ran look; after nobody'
expect_run "so is a step that is after none" 1 "" "look is after nobody"

later='job first "First" ran first; after look
job look "Look" ran look; reads "in*"'
run_plan <<<"$later"
expect_run "a step may be after one below it" 0 "look first" ""
run_plan <<<"$later"
expect_run "which may be up to date" 0 "first" "look: up to date"
run_plan <<'PLAN'
PLAN_KEEP_GOING=yes
bad() { false; }
job second "Second" ran second; after first
job first "First" ran first; after bad
job bad "Bad" bad
PLAN
expect_run "or never run" 1 "" "second: not run, as first has not passed"

alone='turn() { ran "$1-begins"; sleep 0.5; ran "$1-ends"; }
job a "A" turn a; %s
job b "B" turn b; %s'
run_plan <<<"${alone//%s/lane x}"
expect_run "a lane has one step at a time" 0 "a-begins a-ends b-begins b-ends" ""
run_plan <<<"${alone//%s/alone x}"
expect_run "steps that share a word are never side by side" 0 "a-begins a-ends b-begins b-ends" ""
# Each ends only after the other has begun.
run_plan <<PLAN
meet() {
    ran "\$1-begins"
    timeout 60 sh -c 'until [ "\$(wc -l <$tree/ran)" -ge 2 ]; do sleep 0.1; done'
    ran "\$1-ends"
}
job a "A" meet a
job b "B" meet b
PLAN
expect_run "others are" 0 "?-begins ?-begins ?-ends ?-ends" ""

run_plan <<'PLAN'
turn() { ran "$1-begins"; sleep 0.5; ran "$1-ends"; }
job before "Before" ran before
job a "A" turn a; after before; first
job b "B" turn b; first
job c "C" ran c
PLAN
expect_run "what comes first has nothing later beside it" 0 "before a-begins a-ends b-begins b-ends c" ""
run_plan <<'PLAN'
PLAN_KEEP_GOING=yes
bad() { false; }
job a "A" bad; first
job b "B" ran b
PLAN
expect_run "a failed first step holds nothing up" 1 "b" "FAILED: a"

run_plan <<'PLAN'
job a "A" ran a
job b "B" ran b; after a
job c "C" ran c
plan_keep b
PLAN
expect_run "a part of a plan brings what it needs" 0 "a b" ""
run_plan <<'PLAN'
job x "X" ran x
job b "B" ran b; after c
job y "Y" ran y
job c "C" ran c; after y
plan_keep b
PLAN
expect_run "also from below" 0 "y c b" ""
expect_end
