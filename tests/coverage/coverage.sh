#!/usr/bin/env bash
# Builds the scale, comm, upload and config folders with gcov's counters in a build folder of their
# own, runs their unit and link tests, and prints line and branch coverage per folder, with every
# branch that no test takes and its reason. Fails below 95 % of the branches that are no system-call
# failures, and for a branch that reasons.txt does not explain; names reasons that explain nothing.
#
#   tests/coverage/coverage.sh

source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/lib.sh"

HERE=$ROOT/tests/coverage
TREE=$BUILD/coverage
PROGRAMS=(test_scale test_comm test_comm_links test_discovery test_upload test_config)
# Portable code: windows and the channels' system halves are tested on the systems themselves.
COUNTED='src/(scale|comm|upload|config)/[^/]+$'
NOT_COUNTED='src/comm/.*_(posix|win32)\.cpp$'

coverage_build() {
    cmake -S "$ROOT" -B "$TREE" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DTOLVANE_SANITIZE= \
        -DCMAKE_CXX_FLAGS=--coverage "-DCMAKE_CXX_FLAGS_DEBUG=-O0 -g1"
    cmake --build "$TREE" --target "${PROGRAMS[@]}" -- -j "$JOBS"
}

# Counts of earlier runs would be added to.
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
"$HERE/report.py" "$ROOT" "$TREE/coverage.json" "$HERE/reasons.txt"
