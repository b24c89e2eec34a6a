# Sourced by test.sh after the runtime scripts: the steps of the module tests.
#
#   module_prepare <build folder>   databases, and the program's folder as a host's one
#   module_test <build folder> <code page> <separator> [argument of the test program]...
#
# Screenshots are left in build/screenshots.

MODULE_TESTS=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
MODULE_DATABASES=$BUILD/module-databases
MODULE_SHOTS=$BUILD/screenshots

module_prepare() {
    local program=$1/tests/module schema=$MODULE_TESTS/schema.sql
    mkdir -p "$program/Operations" "$MODULE_DATABASES"
    cp -f "$1/src/entry/Tolvane.dll" "$program/Operations/"
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
    local program=$1/tests/module codepage=$2 separator=$3 status=0
    shift 3
    wine_regional "$codepage" "$separator"
    mkdir -p "$MODULE_SHOTS"
    rm -f "$program/Operations/Tolvane.ini"
    wine_session
    TOLVANE_FB_SERVER=127.0.0.1/$(firebird_port) TOLVANE_FB_PASSWORD=$FIREBIRD_PASSWORD \
        TOLVANE_FB_FOLDER=$MODULE_DATABASES TOLVANE_SCREENSHOTS=$MODULE_SHOTS \
        wine_command timeout 600 wine "$program/test_module.exe" "$@" || status=$?
    module_pictures
    return "$status"
}

# The bitmaps that the tests have left become pictures.
module_pictures() {
    local bitmap
    for bitmap in "$MODULE_SHOTS"/*.bmp; do
        [ -e "$bitmap" ] || continue
        convert "$bitmap" -alpha off "${bitmap%.bmp}.png"
        rm -f "$bitmap"
    done
}
