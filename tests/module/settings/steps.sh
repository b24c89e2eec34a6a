# Sourced by test.sh after the steps of the module tests.
#
#   settings_test <build folder> <dots per inch> [argument of the test program]...
#
# Screenshots are left beside the module tests'. A run of all tests lays them beside the layout that
# docs/settings-windows.md asks for, in settings.html.

SETTINGS_TESTS=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
SETTINGS_LAYOUT=$ROOT/docs/settings-windows.md

# settings_page <dots per inch>: the page; fails when a picture that the document names was not taken,
# or one was taken that it does not name.
settings_page() {
    local taken named page=settings.html
    [ "$1" = 96 ] || page=settings-$1.html
    taken=$(find "$MODULE_SHOTS" -name "settings-*-$1.png" -printf '%f\n' |
        sed "s/^settings-//; s/-$1\.png$//" | sort)
    named=$(sed -n 's/^- `\([^`]*\)`:.*/\1/p' "$SETTINGS_LAYOUT" | sort)
    [ -n "$named" ] || fail "$SETTINGS_LAYOUT names no picture"
    if ! diff <(printf '%s\n' "$named") <(printf '%s\n' "$taken"); then
        fail "pictures that $SETTINGS_LAYOUT names and were not taken: <, the other way round: >"
    fi
    awk -v dots="$1" -f "$SETTINGS_TESTS/page.awk" "$SETTINGS_LAYOUT" >"$MODULE_SHOTS/$page"
}

settings_test() {
    local program=$1/tests/module/settings/test_settings.exe resolution=$2 all=yes status=0
    shift 2
    if [ -n "${GTEST_FILTER:-}" ] || [[ $* == *--gtest_filter* ]]; then all=no; fi
    wine_resolution "$resolution"
    mkdir -p "$MODULE_SHOTS" "$MODULE_BITMAPS"
    [ "$all" = no ] || rm -f "$MODULE_SHOTS"/settings-*-"$resolution".png
    TOLVANE_SCREENSHOTS=$MODULE_BITMAPS wine_run "$program" "$@" || status=$?
    module_pictures
    if [ "$status" -eq 0 ] && [ "$all" = yes ]; then settings_page "$resolution"; fi
    return "$status"
}
