#!/usr/bin/env bash
# Builds the text, system, scale, comm, upload, config and settings folders with gcov's counters in a build folder of
# their own, runs their unit and link tests and those of the command and of failing calls, and prints line and branch
# coverage per folder, with every branch that no test takes. Fails when the tests take less than 95 % of a folder's
# branches.
#
#   tests/coverage/coverage.sh

source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/lib.sh"

HERE=$ROOT/tests/coverage
TREE=$BUILD/coverage
PROGRAMS=(test_text test_system test_scale test_comm test_comm_links test_discovery test_upload test_config test_settings_rules
    test_command test_failing_files test_failing_sockets)
COUNTED='src/(text|system|scale|comm|upload|config|settings)/[^/]+$'
NOT_COUNTED='src/system/.*_(posix|win32)\.cpp$'

coverage_build() {
    cmake -S "$ROOT" -B "$TREE" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DTOLVANE_SANITIZE= \
        -DCMAKE_CXX_FLAGS=--coverage "-DCMAKE_CXX_FLAGS_DEBUG=-O0 -g1"
    cmake --build "$TREE" --target "${PROGRAMS[@]}" -- -j "$JOBS"
}

# New counts would be added to those of earlier runs.
coverage_run() {
    local IFS='|'
    find "$TREE" -name '*.gcda' -delete
    ctest --test-dir "$TREE" -R "^(${PROGRAMS[*]})\$" --output-on-failure --no-tests=error
}

# The edges of an exception are gcov's, not the code's: those to its landing pad, and there the
# comparison of its type with the handler's.
coverage_collect() {
    gcovr --root "$ROOT" --object-directory "$TREE" --filter "$COUNTED" --exclude "$NOT_COUNTED" \
        --exclude-throw-branches --exclude-unreachable-branches \
        --exclude-branches-by-pattern '\s*\} catch \(.*' --json "$TREE/coverage.json" "$TREE"
}

step "Packages for coverage" "$SCRIPTS/packages.sh" build coverage
step "Build with counters" coverage_build
step "Run the tests" coverage_run
step "Collect the counts" coverage_collect
"$HERE/report.py" "$ROOT" "$TREE/coverage.json"
