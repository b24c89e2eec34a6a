# shellcheck shell=bash disable=SC1091
# Sourced by test.sh and tests/long.sh: what the steps do. A step of a lane has a Wine prefix, a display
# and a Firebird server of its own.

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
source "$SCRIPTS/wine.sh"
source "$SCRIPTS/fbclient.sh"
source "$SCRIPTS/firebird.sh"
source "$SCRIPTS/pascal.sh"
source "$ROOT/tests/module/steps.sh"
source "$ROOT/tests/module/settings/steps.sh"
source "$ROOT/tests/module_host/steps.sh"

LANES=(a b c d bench)

# test_in_lane <lane> <command>...: runs it with the lane's own Wine prefix, display and servers.
test_in_lane() {
    export TOLVANE_LANE=$1
    shift
    source "$SCRIPTS/test-steps.sh"
    "$@"
}

# test_build native|windows|threads|fuzz|release [target]...
test_build() {
    local preset=$1
    shift
    cmake --preset "$preset" -B "$BUILD/$preset"
    cmake --build "$BUILD/$preset" ${1:+--target "$@"} -- -j "$JOBS"
}

# What is given to others, as it is built for Windows.
test_files() {
    local file
    for file in src/entry/Tolvane.dll host/TradeHost.exe src/command/tolvane.exe simulator/virtual-scale.exe; do
        "$SCRIPTS/check-binary.sh" "$BUILD/windows" "$file"
    done
    "$SCRIPTS/check-same-bytes.sh" "$BUILD/windows"
}

# test_native <argument of ctest>...: programs that run on this system, $JOBS at a time. Each leaves its
# list of results.
test_native() {
    mkdir -p "$BUILD/integration-databases"
    TOLVANE_FB_SERVER=127.0.0.1/$(firebird_port) TOLVANE_FB_PASSWORD=$FIREBIRD_PASSWORD \
        TOLVANE_FB_DIR=$BUILD/integration-databases TOLVANE_FB_SHOP=$(test_shop_file) \
        TOLVANE_FB_ROOT=$FIREBIRD_FOLDER GTEST_OUTPUT=json:$STEP_RESULTS/ \
        ctest --test-dir "$BUILD/native" "$@" --output-on-failure --no-tests=error -j "$JOBS"
}

# The demo shop's database on the lane's server. The small shop for the tests of the command lies beside.
test_shop_file() {
    printf '%s\n' "$BUILD/integration-databases$LANE/shop.fdb"
}

test_shop_make() {
    [ "${TEST_SHOP_IS_MADE:-}" != yes ] || return 0
    firebird_start
    firebird_database "$(test_shop_file)" "$ROOT/demo/schema.sql" "$ROOT/demo/shop.sql"
    firebird_database "$(dirname "$(test_shop_file)")/small.fdb" "$ROOT/demo/schema.sql" \
        "$ROOT/tests/command/program/shop.sql"
}

test_integration() {
    test_shop_make
    test_native -L '^integration$' "$@"
}

# test_command native|windows: the built command.
test_command() {
    test_shop_make
    if [ "$1" = windows ]; then
        test_runtime
        wine_regional 1251 comma
        wine_session
        test_shards windows program/test_program 24 8
    else
        test_shards native program/test_program 96 16
    fi
}

# test_shards native|windows <program in tests/command> <parts> <at a time>: the program's tests in so many
# parts, each a process. The command's runs mostly wait for the pauses that scales need.
test_shards() {
    local program=$BUILD/$1/tests/command/$2 part status=0 ended=0
    local -A running=()
    for ((part = 0; part < $3; ++part)); do
        if [ ${#running[@]} -ge "$4" ]; then test_shard_end "$3" || status=1; fi
        GTEST_TOTAL_SHARDS=$3 GTEST_SHARD_INDEX=$part \
            test_command_program "$1" "$program" "$STEP_RESULTS/$part.json" >"$STEP_RESULTS/$part.log" 2>&1 &
        running[$!]=$part
    done
    while [ ${#running[@]} -gt 0 ]; do test_shard_end "$3" || status=1; done
    return "$status"
}

# test_shard_end <parts>: waits for one of $running, and shows what it printed.
test_shard_end() {
    local pid='' status=0
    wait -n -p pid "${!running[@]}" || status=$?
    if [ -z "$pid" ]; then
        cat "$STEP_RESULTS"/*.log
        fail "a part was killed"
    fi
    cat "$STEP_RESULTS/${running[$pid]}.log"
    unset "running[$pid]"
    ended=$((ended + 1))
    say "[$ended/$1]"
    return "$status"
}

# test_command_program native|windows <program> <result>
test_command_program() {
    export TOLVANE_FB_SERVER TOLVANE_FB_PASSWORD=$FIREBIRD_PASSWORD TOLVANE_FB_DIR TOLVANE_FB_SHOP
    TOLVANE_FB_SERVER=127.0.0.1/$(firebird_port)
    TOLVANE_FB_SHOP=$(test_shop_file)
    TOLVANE_FB_DIR=$(dirname "$TOLVANE_FB_SHOP")
    if [ "$1" = windows ]; then
        wine_command timeout --foreground 1200 wine "$2.exe" "--gtest_output=json:$(wine_path "$3")" </dev/null
    else
        # The embedded engine's threads may still be ending when leaks are looked for, which that does not
        # survive.
        ASAN_OPTIONS=detect_leaks=0 timeout --foreground 600 "$2" "--gtest_output=json:$3"
    fi
}

# Each script of tests/browser, with the native build's folder.
test_browser() {
    local script
    for script in "$ROOT"/tests/browser/*.sh; do "$script" "$BUILD/native"; done
}

# The demo without windows, by the programs that are built already, in a folder of its own: its steps have
# the names of the other demo's.
test_headless() {
    TOLVANE_DEMO_PROGRAMS=$BUILD/native TOLVANE_BUILD=$BUILD/headless-test \
        "$ROOT/demo.sh" --headless
}

# The built command, killed and interrupted.
test_kills() {
    test_shop_make
    test_shards native kill/test_kill 4 4
}

# The run engine under ThreadSanitizer; only its program is built so. Without setarch it would fail on
# systems that randomise addresses more than it can stand.
test_threads() {
    TSAN_OPTIONS=halt_on_error=1 GTEST_OUTPUT=json:$STEP_RESULTS/threads.json \
        setarch -R "$BUILD/threads/tests/integration/threads/test_threads"
}

# What every Windows program of a lane needs. Each step starts a session of its own, so that none
# depends on what ran before it.
test_runtime() {
    wine_prefix_make
    display_start
    wine_stop
}

# The same with a Firebird server and the databases of the module tests.
test_module_runtime() {
    test_runtime
    firebird_start
    module_prepare "$BUILD/windows"
}

test_module_run() {
    test_module_runtime
    # The pictures of the other code page stay.
    [ "$2" = comma ] || MODULE_SHOTS+=/$1-$2
    module_test "$BUILD/windows" "$1" "$2" \
        "--gtest_output=json:$(wine_path "$STEP_RESULTS/module-$1-$2.json")"
}

# test_resolutions <dots per inch>...: whether each window has room for its texts.
test_resolutions() {
    local dots
    test_module_runtime
    for dots in "$@"; do
        say "== $dots dots per inch"
        wine_resolution "$dots"
        module_test "$BUILD/windows" 1251 comma "--gtest_filter=ResolutionTest.*" \
            "--gtest_output=json:$(wine_path "$STEP_RESULTS/module-at-$dots.json")"
        test_layout settings/test_settings "LayoutTest.*" "$dots"
        test_layout run/test_upload_forms "*.EveryTextHasItsRoom*:*.TheWindowFollowsItsMonitor" "$dots"
        host_test "$BUILD/windows" "--gtest_filter=HostResolutionTest.*" \
            "--gtest_output=json:$(wine_path "$STEP_RESULTS/host-at-$dots.json")"
    done
}

# test_layout <program under tests/module> <tests> <dots per inch>
test_layout() {
    wine_run "$BUILD/windows/tests/module/$1.exe" "--gtest_filter=$2" \
        "--gtest_output=json:$(wine_path "$STEP_RESULTS/${1##*/}-at-$3.json")"
}

test_settings_run() {
    test_runtime
    wine_regional "$2" comma
    settings_test "$BUILD/windows" "$1" \
        "--gtest_output=json:$(wine_path "$STEP_RESULTS/settings-$1.json")"
}

# test_windows_programs <name>...: unit tests' and links' programs as they are built for Windows.
test_windows_programs() {
    local name
    test_runtime
    wine_regional 1251 comma
    wine_session
    for name in "$@"; do
        say "== $name"
        TOLVANE_FB_SERVER=127.0.0.1/$(firebird_port) TOLVANE_FB_PASSWORD=$FIREBIRD_PASSWORD \
            TOLVANE_FB_SHOP=$(test_shop_file) \
            wine_command timeout --foreground 1800 wine "$(test_windows_program "$name")" \
            "--gtest_output=json:$(wine_path "$STEP_RESULTS/windows-$name.json")" </dev/null
    done
}

# An old build may still hold a program in the folder that its tests have left: the newest one counts.
test_windows_program() {
    find "$BUILD/windows/tests/unit" "$BUILD/windows/tests/integration" "$BUILD/windows/tests/module/run" \
        -name "$1.exe" -printf '%T@ %p\n' | sort -rn | sed -n '1s/^[^ ]* //p' | grep .
}

# test_windows_level unit|integration: all programs of that level; with the unit tests also those of the
# run window. The runs that are stopped at random are a step of their own. The virtual scale is no part
# of the module: its tests run natively, since Wine now and then reports a reset connection as a normal end.
test_windows_level() {
    local names folders=("$BUILD/windows/tests/$1")
    [ "$1" != unit ] || folders+=("$BUILD/windows/tests/module/run")
    mapfile -t names < <(find "${folders[@]}" -name 'test_*.exe' ! -name 'test_simulator.exe' \
        ! -name 'test_upload_stops.exe' -printf '%f\n' | sed 's/\.exe$//' | sort -u)
    [ ${#names[@]} -gt 0 ] || fail "there are no programs under $BUILD/windows/tests/$1"
    [ "$1" = unit ] || test_shop_make
    test_windows_programs "${names[@]}"
}

# Uses the virtual scale that was built natively; the Wine prefix has its own sockets there.
test_links_run() {
    test_runtime
    wine_regional 1251 comma
    "$ROOT/tests/module/links/run.sh" "$BUILD/windows" "$BUILD/native/simulator/virtual-scale" \
        "--gtest_output=json:$(wine_path "$STEP_RESULTS/links.json")"
}

test_disk_run() {
    local shop
    shop=$(test_shop_file)
    test_module_runtime
    test_shop_make
    wine_regional 1251 comma
    TOLVANE_FB_SHOP=$shop TOLVANE_FB_DIR=$(dirname "$shop") \
        "$ROOT/tests/module/disk/run.sh" "$BUILD/windows" \
        "--gtest_output=json:$(wine_path "$STEP_RESULTS/disk.json")"
}

test_host_run() {
    test_module_runtime
    wine_regional 1251 comma
    host_test "$BUILD/windows" "--gtest_output=json:$(wine_path "$STEP_RESULTS/host.json")"
}

test_example_hosts() {
    test_runtime
    wine_regional 1251 comma
    firebird_start
    "$ROOT/tests/examples/run.sh" "$BUILD/windows"
}

# The demo, and what its scales hold then.
test_demo() {
    "$ROOT/demo.sh"
    TOLVANE_DEMO_FOLDER=$BUILD/demo GTEST_OUTPUT=json:$STEP_RESULTS/ "$BUILD/native/tests/demo/test_demo"
}

# What the command leaves in the same scales; the program for Windows in some of their articles.
test_window() {
    # Promotions of each kind, pieces, long texts.
    local articles=38,91,97,101,169,224,238,248,256,276
    "$ROOT/tests/command/window/run.sh" "$articles"
    TOLVANE_DEMO_FOLDER=$BUILD/demo TOLVANE_WINDOW_FOLDER=$BUILD/window \
        TOLVANE_WINDOW_ARTICLES=$articles GTEST_OUTPUT=json:$STEP_RESULTS/ \
        "$BUILD/native/tests/command/window/test_window"
}

test_demo_deletes() {
    "$ROOT/tests/demo/deletes.sh"
    TOLVANE_DELETES_FOLDER=$BUILD/deletes GTEST_OUTPUT=json:$STEP_RESULTS/ \
        "$BUILD/native/tests/demo/test_deletes"
}

# test_sum <member> <file>...: sums a count over the programs' results.
test_sum() {
    local sum
    sum=$(sed -n "/^  \"$1\"/{s/[^0-9]//g;p}" "${@:2}" | paste -sd+)
    printf '%d\n' "$((${sum:-0}))"
}

# test_each_ran <folder of results>...: a filter in a step that fits no test any more would pass as well.
test_each_ran() {
    local file status=0
    [ -z "${GTEST_FILTER:-}" ] || return 0
    while read -r file; do
        say "FAILED: no test has run in $file"
        status=1
    done < <(find "$@" -name '*.json' -exec grep -l '^  "tests": 0,' {} +)
    return "$status"
}

# test_report <folder of results>...: the sum of all, as a plain last line.
test_report() {
    local files tests failures
    mapfile -t files < <(find "$@" -name '*.json' 2>/dev/null)
    [ ${#files[@]} -gt 0 ] || fail "no test has left a result"
    tests=$(test_sum tests "${files[@]}")
    failures=$(test_sum failures "${files[@]}")
    [ "$tests" -gt 0 ] || fail "no test has left a result"
    printf '%s passed, %s failed\n' "$((tests - failures))" "$failures"
    [ "$failures" -eq 0 ]
}

test_end_runtime() {
    wine_stop
    display_stop
    firebird_stop
}

# Ends what this run has started, however it ends.
test_end() {
    local code=$1 lane
    for lane in "" first "${LANES[@]}"; do
        (test_in_lane "$lane" test_end_runtime) || true
    done
    exit "$code"
}
