# Sourced by test.sh after the runtime scripts: the steps of the module tests.
#
#   module_prepare <build folder>   databases, and a folder for the program as a host has one
#   module_test <build folder> <code page> <separator> [argument of the test program]...
#
# Screenshots are left in build/screenshots.

MODULE_TESTS=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
MODULE_PROGRAM=$BUILD/module-program$LANE
MODULE_DATABASES=$BUILD/module-databases$LANE
MODULE_SHOTS=$BUILD/screenshots
MODULE_BITMAPS=$BUILD/screenshots/bitmaps$LANE

module_prepare() {
    local schema=$MODULE_TESTS/schema.sql
    mkdir -p "$MODULE_PROGRAM/Operations" "$MODULE_DATABASES"
    cp -f "$1/tests/module/test_module.exe" "$1/tests/module/second_host.exe" "$MODULE_PROGRAM/"
    cp -f "$1"/tests/module/unloading/*.dll "$MODULE_PROGRAM/"
    cp -f "$1/src/entry/Tolvane.dll" "$MODULE_PROGRAM/Operations/"
    firebird_database "$MODULE_DATABASES/shop.fdb" "$schema" "$MODULE_TESTS/shop.sql"
    firebird_database "$MODULE_DATABASES/scales.fdb" "$schema" "$MODULE_TESTS/shop.sql" \
        "$MODULE_TESTS/scales.sql"
    firebird_database "$MODULE_DATABASES/empty.fdb" "$MODULE_TESTS/empty.sql"
    firebird_database "$MODULE_DATABASES/bare.fdb" "$schema"
    firebird_database "$MODULE_DATABASES/big.fdb" "$schema" "$MODULE_TESTS/big.sql"
    firebird_database "$MODULE_DATABASES/broken.fdb" "$schema" "$MODULE_TESTS/broken.sql"
    firebird_database "$MODULE_DATABASES/noindex.fdb" "$schema" "$MODULE_TESTS/shop.sql" \
        "$MODULE_TESTS/noindex.sql"
}

module_test() {
    local codepage=$2 separator=$3 status=0
    shift 3
    wine_regional "$codepage" "$separator"
    mkdir -p "$MODULE_BITMAPS"
    rm -f "$MODULE_PROGRAM/Operations/Tolvane.ini"
    wine_session
    TOLVANE_FB_SERVER=127.0.0.1/$(firebird_port) TOLVANE_FB_PASSWORD=$FIREBIRD_PASSWORD \
        TOLVANE_FB_FOLDER=$MODULE_DATABASES TOLVANE_SCREENSHOTS=$MODULE_BITMAPS \
        wine_command timeout --foreground 1800 wine "$MODULE_PROGRAM/test_module.exe" "$@" || status=$?
    module_pictures
    return "$status"
}

# The bitmaps that the tests have left become pictures.
module_pictures() {
    local bitmap name
    mkdir -p "$MODULE_SHOTS"
    for bitmap in "$MODULE_BITMAPS"/*.bmp; do
        [ -e "$bitmap" ] || continue
        name=$(basename "$bitmap" .bmp)
        convert "$bitmap" -alpha off "$MODULE_SHOTS/$name.png"
        rm -f "$bitmap"
    done
}
