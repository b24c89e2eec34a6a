# Sourced by test.sh: its steps.

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
source "$ROOT/tests/module/steps.sh"
source "$ROOT/tests/module/settings/steps.sh"
source "$ROOT/tests/module_host/steps.sh"

RESULTS=$BUILD/test-results
rm -rf "$RESULTS"
mkdir -p "$RESULTS"

test_build() {
    cmake --preset "$1" -B "$BUILD/$1"
    cmake --build "$BUILD/$1" -- -j "$JOBS"
}

# test_native unit|integration: the programs of that level, two at a time. Each leaves its list of
# results beside the others'.
test_native() {
    mkdir -p "$BUILD/integration-databases"
    TOLVANE_FB_SERVER=127.0.0.1/$(cat "$FIREBIRD_FOLDER/port" 2>/dev/null || true) \
        TOLVANE_FB_PASSWORD=$FIREBIRD_PASSWORD TOLVANE_FB_DIR=$BUILD/integration-databases \
        GTEST_OUTPUT=json:$RESULTS/ \
        ctest --test-dir "$BUILD/native" -L "^$1\$" --output-on-failure --no-tests=error -j "$JOBS"
}

# The run engine under ThreadSanitizer; only its program is built so. The sanitizer does not stand
# addresses as random as some systems make them.
test_threads() {
    cmake --preset threads -B "$BUILD/threads"
    cmake --build "$BUILD/threads" --target test_threads -- -j "$JOBS"
    TSAN_OPTIONS=halt_on_error=1 GTEST_OUTPUT=json:$RESULTS/threads.json \
        setarch -R "$BUILD/threads/tests/integration/threads/test_threads"
}

test_module_run() {
    module_test "$BUILD/windows" "$1" "$2" \
        "--gtest_output=json:$(wine_path "$RESULTS/module-$1-$2.json")"
}

# The list window at another resolution.
test_module_resolution() {
    local status=0
    settings_resolution "$1"
    module_test "$BUILD/windows" 1251 comma "--gtest_filter=ResolutionTest.*" \
        "--gtest_output=json:$(wine_path "$RESULTS/module-at-$1.json")" || status=$?
    settings_resolution 96
    return "$status"
}

test_settings_run() {
    wine_regional "$2" comma
    settings_test "$BUILD/windows" "$1" \
        "--gtest_output=json:$(wine_path "$RESULTS/settings-$1.json")"
}

# The unit tests' and the links' programs as they are built for Windows. The virtual scale is no part
# of the module: its own tests run natively, since Wine now and then tells a connection's reset as its
# plain end.
test_windows_units() {
    local program name
    wine_regional 1251 comma
    wine_session
    find "$BUILD/windows/tests/unit" "$BUILD/windows/tests/integration" -name 'test_*.exe' \
        ! -name 'test_simulator.exe' | sort |
        while read -r program; do
            name=$(basename "$program" .exe)
            say "== $name"
            wine_command timeout 300 wine "$program" \
                "--gtest_output=json:$(wine_path "$RESULTS/windows-$name.json")" </dev/null
        done
}

# Beside the virtual scale that was built natively; the Wine prefix has its own sockets there.
test_links_run() {
    wine_regional 1251 comma
    "$ROOT/tests/module/links/run.sh" "$BUILD/windows" "$BUILD/native/simulator/virtual-scale" \
        "--gtest_output=json:$(wine_path "$RESULTS/links.json")"
}

test_disk_run() {
    wine_regional 1251 comma
    "$ROOT/tests/module/disk/run.sh" "$BUILD/windows" \
        "--gtest_output=json:$(wine_path "$RESULTS/disk.json")"
}

test_host_run() {
    wine_regional 1251 comma
    host_test "$BUILD/windows" "--gtest_output=json:$(wine_path "$RESULTS/host.json")"
}

test_demo_articles() {
    TOLVANE_DEMO_FOLDER=$BUILD/demo GTEST_OUTPUT=json:$RESULTS/ \
        "$BUILD/native/tests/demo/test_demo"
}

test_demo_deletes() {
    "$ROOT/tests/demo/deletes.sh"
    TOLVANE_DELETES_FOLDER=$BUILD/deletes GTEST_OUTPUT=json:$RESULTS/ \
        "$BUILD/native/tests/demo/test_deletes"
}

# The sum of all programs' own counts; the plain last line is for whoever reads only that.
test_report() {
    local counts tests failures
    counts=$(sed -n '/^  "tests"/{s/[^0-9]//g;p}' "$RESULTS"/*.json | paste -sd+)
    tests=$((${counts:-0}))
    counts=$(sed -n '/^  "failures"/{s/[^0-9]//g;p}' "$RESULTS"/*.json | paste -sd+)
    failures=$((${counts:-0}))
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
    local code=$?
    test_end_runtime || true
    exit "$code"
}
