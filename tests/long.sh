#!/usr/bin/env bash
# The full counts of what test.sh runs shortened; for a release, after a test.sh that has passed in
# the same build folder. Takes some hours: each fuzzer has half an hour of a processor.
#
#   1,000 kills of a save and of a run that keeps a ledger, on either system
#   300 kills of the command while it writes
#   1,000 cycles of opening and closing the list window
#   1,000 runs stopped or closed at random times
#   100,000 exchanges over each wire with faults
#   each fuzzer for half an hour, or for TOLVANE_FUZZ_SECONDS, and what they reach
#   1,000 cycles of loading and unloading the module
#   ten minutes of random messages at the module
#   the core's unit tests under valgrind
#   the command, the virtual scale, the channels and the search under ThreadSanitizer
#   the command and the virtual scale under UBSan, with the libraries for the command line and for JSON
#   the built files for Linux
#   the coverage, see tests/coverage
#   the release itself: made twice, installed, used, upgraded and removed
#
#   tests/long.sh [STEP]...    only these, for example kills stops; a wrong name shows them all

export TOLVANE_LANE=a
source "$(dirname "${BASH_SOURCE[0]}")/../scripts/lib.sh"
source "$SCRIPTS/wine.sh"
source "$SCRIPTS/fbclient.sh"
source "$SCRIPTS/firebird.sh"
source "$SCRIPTS/test-steps.sh"
cd "$ROOT"

# A filter that matches nothing would pass as well.
long_some() {
    local out=$BUILD/long-$BASHPID.out status=0
    "$@" | tee "$out" || status=$?
    ! grep -q -e ' 0 tests ran' -e 'Running 0 tests' "$out" || status=1
    rm -f "$out"
    return "$status"
}

long_kills() {
    TOLVANE_KILLS=1000 long_some "$BUILD/native/tests/unit/config/test_config" --gtest_filter='WriteIniFile.*Killed'
    TOLVANE_KILLS=1000 long_some "$BUILD/native/tests/unit/command/test_command" --gtest_filter='KilledRun.*'
}

long_kills_command() {
    test_shop_make
    TOLVANE_FB_SHOP=$(test_shop_file) TOLVANE_COMMAND_KILLS=300 long_some \
        "$BUILD/native/tests/command/kill/test_kill" --gtest_filter='KilledWrite.*'
}

long_kills_windows() {
    wine_session
    TOLVANE_KILLS=1000 long_some wine_command wine \
        "$BUILD/windows/tests/unit/config/test_config.exe" --gtest_filter='WriteIniFile.*Killed'
    TOLVANE_KILLS=1000 long_some wine_command wine \
        "$BUILD/windows/tests/unit/command/test_command.exe" --gtest_filter='KilledRun.*'
}

long_soak() {
    TOLVANE_SOAK_EXCHANGES=100000 long_some "$BUILD/native/tests/integration/comm/test_comm_soak"
}

long_cycles() {
    module_prepare "$BUILD/windows"
    TOLVANE_CYCLES=1000 long_some module_test "$BUILD/windows" 1251 comma --gtest_filter='Cycles.*:LoadCycles.*'
}

long_storm() {
    module_prepare "$BUILD/windows"
    TOLVANE_STORM_SECONDS=600 long_some module_test "$BUILD/windows" 1251 comma --gtest_filter='Storm.*'
}

# The sanitizers do not see memory that is read before anything was written there. Killed processes and
# times that are measured are no matter of valgrind's.
long_valgrind() {
    local name programs=(test_text test_scale test_comm test_config test_articles test_upload test_settings_rules)
    "$SCRIPTS/packages.sh" build valgrind
    test_build release "${programs[@]}"
    for name in "${programs[@]}"; do
        say "== $name"
        long_some valgrind --quiet --error-exitcode=9 --leak-check=full --errors-for-leak-kinds=definite,indirect \
            "$(find "$BUILD/release/tests/unit" -name "$name" -type f)" --gtest_brief=1 --gtest_filter=-*Killed*
    done
}

# What test.sh does for the run engine alone, for all that has threads on this system. Processes that are killed are
# forks, which ThreadSanitizer does not follow.
long_threads() {
    local name programs=(test_command test_simulator test_comm_links test_discovery)
    test_build threads "${programs[@]}"
    for name in "${programs[@]}"; do
        say "== $name"
        TSAN_OPTIONS=halt_on_error=1 long_some setarch -R \
            "$(find "$BUILD/threads/tests" -name "$name" -type f)" --gtest_brief=1 --gtest_filter=-*Killed*
    done
}

# The parts that test.sh leaves out, as compiling them takes long: the command's and the virtual scale's files that
# read the libraries for the command line and for JSON, Asio's own code, and the tests.
long_undefined() {
    local name programs=(test_command test_simulator) STEP_RESULTS=$BUILD/undefined/results
    test_build undefined "${programs[@]}" test_program virtual-scale
    for name in "${programs[@]}"; do
        say "== $name"
        long_some "$(find "$BUILD/undefined/tests" -name "$name" -type f)" --gtest_brief=1
    done
    say "== test_program"
    rm -rf "$STEP_RESULTS"
    mkdir -p "$STEP_RESULTS"
    test_shop_make
    test_shards undefined program/test_program 96 16
    test_report "$STEP_RESULTS"
}

long_files() {
    test_build release tolvane virtual-scale
    "$SCRIPTS/check-binary.sh" "$BUILD/release" src/command/tolvane
    "$SCRIPTS/check-binary.sh" "$BUILD/release" simulator/virtual-scale
}

long_stops() {
    wine_session
    TOLVANE_RANDOM_STOPS=1000 long_some wine_command wine \
        "$BUILD/windows/tests/module/run/test_upload_stops.exe" --gtest_filter='*Random*'
}

long_fuzz() {
    test_build fuzz fuzzers
    TOLVANE_FUZZ_SECONDS=${TOLVANE_FUZZ_SECONDS:-1800} tests/fuzz/run.sh
}

trap 'test_end $?' EXIT
trap 'exit 130' INT TERM

wanted=("$@")
known=$(sed -n 's/^long_step \([a-z-]*\) .*/\1/p' "${BASH_SOURCE[0]}" | paste -sd' ')
for name in "${wanted[@]}"; do
    [[ " $known " == *" $name "* ]] || fail "there is no step $name; there are: $known"
done

# long_step <name> "<title>" <command> [argument]...
long_step() {
    if [ ${#wanted[@]} -eq 0 ] || [[ " ${wanted[*]} " == *" $1 "* ]]; then step "${@:2}"; fi
}

# long_for "<name>..." "<title>" <command> [argument]...: what these steps need.
long_for() {
    local name
    for name in ${wanted[*]:-$1}; do
        [[ " $1 " == *" $name "* ]] || continue
        step "${@:2}"
        return
    done
}

long_step coverage "Coverage" tests/coverage/coverage.sh
long_step valgrind "Valgrind" long_valgrind
long_step threads "ThreadSanitizer" long_threads
long_for "undefined kills-command cycles storm" "Start a Firebird server" firebird_start
long_step undefined "UBSan over all code" long_undefined
long_step files "Built files for Linux" long_files
long_step kills "Kills of a save" long_kills
long_step soak "Soak of every wire" long_soak
long_step kills-command "Kills of the command" long_kills_command
in_wine="kills-windows stops cycles storm"
long_for "$in_wine" "Make the Wine prefix" wine_prefix_make
long_for "$in_wine" "Set Bulgarian formats" wine_regional 1251 comma
long_for "$in_wine" "Start a display" display_start
long_step kills-windows "Kills of a save, Windows" long_kills_windows
long_step stops "Runs stopped at random times" long_stops
long_step cycles "Cycles of the list window" long_cycles
long_step storm "A storm of messages" long_storm
long_step release "The release" "$SCRIPTS/release.sh"
long_step again "The release again, in another folder" tests/release/again.sh
long_step packages "The Debian packages in a clean Debian" tests/release/debian.sh
long_step installer "The zip and the installer in Wine" tests/release/windows.sh made
long_step fuzz "Fuzzers" long_fuzz
long_step fuzz-coverage "What the fuzzers reach" tests/fuzz/coverage.sh
