#!/usr/bin/env bash
# Measures the module's window and its opening in Wine, with the programs that are built for Windows: makes a
# private Firebird server with databases, a Wine prefix and a display, and ends what it has started, not what
# its lane had before. --quick takes small numbers.
#
#   tests/bench/window/run.sh [--quick]

source "$(dirname "${BASH_SOURCE[0]}")/../../../scripts/lib.sh"

# They have a lane of their own.
export TOLVANE_LANE=${TOLVANE_LANE:-bench}
source "$SCRIPTS/test-steps.sh"

HERE=$ROOT/tests/bench/window
PROGRAMS=$BUILD/bench-window
DATABASES=$BUILD/bench-databases

# bench_database <articles>
bench_database() {
    sed "s/ARTICLES/$1/" "$HERE/shop.sql" >"$DATABASES/shop-$1.sql"
    firebird_database "$DATABASES/articles-$1.fdb" "$ROOT/tests/module/schema.sql" "$DATABASES/shop-$1.sql"
}

bench_prepare() {
    local count
    fbclient_build
    test_runtime
    wine_regional 1251 comma
    firebird_start
    mkdir -p "$PROGRAMS/Operations" "$DATABASES"
    for count in "${COUNTS[@]}"; do
        bench_database "$count"
    done
    cp -f "$BUILD/windows/tests/bench/window/"{bench_window.exe,bench_open.exe,empty.dll} "$PROGRAMS/"
    cp -f "$BUILD/windows/src/entry/Tolvane.dll" "$PROGRAMS/Operations/"
    rm -f "$PROGRAMS/Operations/Tolvane.ini"
    wine_session
}

# bench_program <name> <argument>...
bench_program() {
    TOLVANE_FB_SERVER=127.0.0.1/$(firebird_port) TOLVANE_FB_PASSWORD=$FIREBIRD_PASSWORD \
        TOLVANE_FB_FOLDER=$DATABASES \
        wine_command timeout --foreground 600 wine "$PROGRAMS/$1.exe" "${@:2}" </dev/null
}

# What runs already is the caller's. Wine's processes are always new, as test_runtime ends those before.
STARTED=(wine_stop)
process_is "$(display_pid)" "Xvfb -fbdir $DISPLAY_FOLDER" || STARTED+=(display_stop)
firebird_runs || STARTED+=(firebird_stop)

bench_end() {
    local end
    for end in "${STARTED[@]}"; do "$end"; done
}

COUNTS=(1000 10000 100000)
[ "${1:-}" != --quick ] || COUNTS=(1000)
trap bench_end EXIT
bench_prepare
bench_program bench_open "$@"
bench_program bench_window "$@"
