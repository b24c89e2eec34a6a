# Sourced by test.sh after tests/module/steps.sh, whose databases these tests use: the tests of
# TradeHost.
#
#   host_test <build folder> [argument of the test program]...

host_test() {
    local program=$1/tests/module_host status=0
    shift
    mkdir -p "$MODULE_BITMAPS"
    TOLVANE_FB_SERVER=127.0.0.1/$(firebird_port) TOLVANE_FB_PASSWORD=$FIREBIRD_PASSWORD \
        TOLVANE_FB_FOLDER=$MODULE_DATABASES TOLVANE_SCREENSHOTS=$MODULE_BITMAPS \
        wine_run "$program/test_host_module.exe" "$@" || status=$?
    module_pictures
    return "$status"
}
