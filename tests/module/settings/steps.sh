# Sourced by test.sh after the steps of the module tests.
#
#   settings_test <build folder> <dots per inch> [argument of the test program]...
#
# Screenshots are left beside the module tests'.

settings_resolution() {
    local file=$WINE_PREFIX/drive_c/tolvane-resolution.reg
    printf 'REGEDIT4\n\n[HKEY_CURRENT_USER\\Control Panel\\Desktop]\n"LogPixels"=dword:%08x\n' "$1" >"$file"
    wine_import "$file"
}

settings_test() {
    local program=$1/tests/module/settings/test_settings.exe resolution=$2 status=0
    shift 2
    settings_resolution "$resolution"
    mkdir -p "$MODULE_SHOTS"
    TOLVANE_SCREENSHOTS=$MODULE_SHOTS wine_run "$program" "$@" || status=$?
    module_pictures
    [ "$resolution" = 96 ] || settings_resolution 96
    return "$status"
}
