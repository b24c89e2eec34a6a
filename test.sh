#!/usr/bin/env bash
# Does all the set-up, builds for Linux and for Windows, and passes every test. Can be repeated.
#
#   ./test.sh            everything
#   ./test.sh --quick    what needs no Wine: checks, unit and integration tests

source "$(dirname "${BASH_SOURCE[0]}")/scripts/lib.sh"
source "$SCRIPTS/wine.sh"
source "$SCRIPTS/fbclient.sh"
source "$SCRIPTS/firebird.sh"
source "$SCRIPTS/test-steps.sh"
cd "$ROOT"

quick=no
case ${1:-} in
    "") ;;
    --quick) quick=yes ;;
    *) fail "usage: ./test.sh [--quick]" ;;
esac

trap test_end EXIT
trap 'exit 130' INT TERM

step "Packages" "$SCRIPTS/packages.sh"
step "Layers" "$SCRIPTS/check-layers.sh"
step "The layers check finds planted faults" tests/scripts/check-layers-test.sh
step "Reasons of the coverage report" tests/coverage/check-reasons.sh
step "The reasons check finds planted faults" tests/coverage/check-reasons-test.sh
step "Format" "$SCRIPTS/check-format.sh"

step "Build for Linux" test_build native
step "clang-tidy, Linux" "$SCRIPTS/tidy.sh" native
step "Unit tests" test_native unit
step "Start a Firebird server" firebird_start
step "Integration tests" test_native integration
step "Run engine under ThreadSanitizer" test_threads
if [ "$quick" = yes ]; then
    test_report
    exit 0
fi

step "Build for Windows" test_build windows
step "clang-tidy, Windows" "$SCRIPTS/tidy.sh" windows
step "One kind of Asio's threads" "$SCRIPTS/check-asio-threads.sh" "$BUILD/windows"
step "The module's file" "$SCRIPTS/check-module.sh" "$BUILD/windows/src/entry/Tolvane.dll"
step "Build the client library for Wine" fbclient_build
step "Make the Wine prefix" wine_prefix_make
step "Start a display" display_start
step "Unit tests for Windows" test_windows_units
step "Databases of the module tests" module_prepare "$BUILD/windows"
step "Host tests" test_host_run
step "Module tests, code page 1251, decimal comma" test_module_run 1251 comma
step "Module tests, code page 1252, decimal point" test_module_run 1252 point
step "List window, 144 dots per inch" test_module_resolution 144
step "Settings windows, 96 dots per inch" test_settings_run 96 1251
step "Settings windows, 144 dots per inch" test_settings_run 144 1252
step "Links over a COM port and a shop's network" test_links_run
step "A full disk" test_disk_run
test_end_runtime
step "Demo" ./demo.sh
step "Articles of the demo, byte for byte" test_demo_articles
step "Delete in the demo's scales, over each link" test_demo_deletes
test_report
