#!/usr/bin/env bash
# The zip and the installer of a release in Wine: unpacked or installed, used until articles are in a scale,
# upgraded over an older version with settings, refused where it has to be, and removed, which leaves exactly
# what was there before.
#
#   tests/release/windows.sh [made]    of the release that is made; else of a zip and an installer that
#                                      contain the programs of build/windows

source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/release-steps.sh"
source "$SCRIPTS/wine.sh"
source "$SCRIPTS/firebird.sh"
source "$SCRIPTS/fbclient.sh"
source "$SCRIPTS/demo-steps.sh"
source "$SCRIPTS/pascal.sh"
source "$(dirname "${BASH_SOURCE[0]}")/by-hand.sh"
cd "$ROOT"

WORK=$BUILD/release-test
SHOP=$WORK/shop.fdb
HOST="$WINE_PREFIX/drive_c/Търговия и везни"
HOST_PATH='C:\Търговия и везни'
# The folder stands in the command line without quotes: words that Wine joins with blanks.
read -ra IN_HOST <<<"/D=$HOST_PATH"
read -ra OF_HOST <<<"_?=$HOST_PATH\\Tolvane"
OLD_VERSION=0.9.0
UNINSTALL_KEY='HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\Tolvane C:/Търговия и везни'
# As the module writes its name, which is the same for Windows.
SETTINGS=Tolvane.Ini
# What scale 1 has to hold of the small shop: number and price in hundredths.
EXPECTED=$'1 250\n2 340\n3 410'

release_test_end() {
    local code=$?
    trap '' INT TERM
    wine_stop || true
    display_stop || true
    firebird_stop || true
    exit "$code"
}

# What is there already when test.sh runs this.
release_test_prepare() {
    "$SCRIPTS/packages.sh" build wine firebird winelib installer guide pascal
    fbclient_build
    [ ! -e "$BUILD/windows/demo/driver/window-driver.exe" ] || return 0
    cmake --preset windows -B "$BUILD/windows"
    cmake --build "$BUILD/windows" --target window-driver -- -j "$JOBS"
}

# A zip and an installer of the programs that the tests have built.
release_test_make() {
    RELEASE=$WORK/made
    RELEASE_WORK=$WORK/work
    RELEASE_WINDOWS=$BUILD/windows
    mkdir -p "$RELEASE_WORK"
    [ -d "$BUILD/guide" ] || "$SCRIPTS/guide.sh"
    cp -r "$BUILD/guide" "$RELEASE_WORK/guide"
    release_check_fonts
    release_make_zip
    release_make_installer
}

# The same module in an older version: some bytes follow it.
release_test_make_old() {
    local files=$WORK/old
    rm -rf "$files"
    cp -r "$WORK/zip/$RELEASE_ZIP" "$files"
    printf 'older' >>"$files/Operations/Tolvane.dll"
    release_nsis "$OLD_VERSION" "$files" "$WORK/setup-$OLD_VERSION.exe"
}

release_test_start() {
    wine_prefix_make
    display_start
    wine_regional 1251 comma
    firebird_start
    firebird_database "$SHOP" demo/schema.sql tests/command/program/shop.sql
    wine_session
    forget_earlier_run
}

# What a run that did not get to its end has left.
forget_earlier_run() {
    local key
    rm -rf "$HOST"
    for key in 'HKLM\Software\Tolvane' "$UNINSTALL_KEY"; do
        wine_command wine reg delete "$key" /f >/dev/null 2>&1 </dev/null || true
    done
}

# expect_code <code> <program> <argument>...: as Windows programs end. What it says is in $WORK/said, in UTF-8.
expect_code() {
    local expected=$1 code=0
    shift
    wine_command timeout 300 wine "$@" >"$WORK/said.raw" 2>&1 </dev/null || code=$?
    iconv -f CP1251 -t UTF-8 "$WORK/said.raw" >"$WORK/said" || cp "$WORK/said.raw" "$WORK/said"
    [ "$code" -eq "$expected" ] || fail "$* ended with $code instead of $expected: $(cat "$WORK/said")"
}

expect_said() {
    grep -qF -- "$1" "$WORK/said" || fail "it has not said \"$1\", but: $(cat "$WORK/said")"
}

# All names of a folder, with sizes and sums of the files.
content_of() {
    (cd "$1" && find . \( -type d -printf '%P/\n' -o -printf '%P %s ' -exec sh -c 'sha256sum <"$1"' sh {} \; \) | sort)
}

expect_same() {
    diff -u "$1" "$2" || fail "$3 (- expected, + found)"
}

# start_scale <name> <virtual-scale.exe> [option]...: on a TCP port of its own, which is in $WORK/NAME.ready then.
start_scale() {
    rm -f "$WORK/$1".*
    wine_command setsid wine "$2" --model EVL --tcp 0 "${@:3}" --save "$(wine_path "$WORK/$1.json")" --save-on-weighing \
        --ready-file "$(wine_path "$WORK/$1.ready")" >"$WORK/$1.out" 2>&1 </dev/null &
    wait_until 60 test -s "$WORK/$1.ready" || fail "the scale $1 does not get ready"
}

# port_of <name> <tcp|http>
port_of() {
    sed -n "s/^ready $2 127\.0\.0\.1:\([0-9]*\).*$/\1/p" "$WORK/$1.ready"
}

# The example's first section, with the scale's address.
settings_for() {
    local port
    port=$(port_of "$1" tcp)
    iconv -f CP1251 -t UTF-8 "$WORK/zip/$RELEASE_ZIP/examples/Tolvane.ini" |
        sed -e '/^\[SCALE2\]/,$d' -e "s/^TCPAddress=.*\r/TCPAddress=127.0.0.1\r/" -e "s/^TCPPort=.*\r/TCPPort=$port\r/" |
        iconv -f UTF-8 -t CP1251
}

# A scale answers the end of a run after it has saved.
expect_in_scale() {
    local held
    held=$(wine_command wine "$2" --show "$(wine_path "$WORK/$1.json")" | tr -d '\r' |
        awk '$2 ~ /^[0-9]+\.[0-9][0-9]$/ { sub(/\./, "", $2); print $1, $2 + 0 }')
    [ "$held" = "$EXPECTED" ] || fail "the scale $1 holds: $held"
}

# What its pages refer to is there, and the examples can be compiled.
test_zip_files() {
    local zip=$WORK/zip/$RELEASE_ZIP target file
    for target in $(grep -oE '\]\([^)#]+' "$zip/examples/README.md" | sed 's/^](//'); do
        [ -e "$zip/examples/$target" ] || fail "examples/README.md refers to $target"
    done
    for file in guide/{user-guide,host-interface}.html guide/user-guide.pdf examples/c/host.c \
        examples/pascal/Host.pas licences/fonts-dejavu-core.txt demo/{schema,shop}.sql; do
        [ -s "$zip/$file" ] || fail "$file is not in the zip"
    done
    grep -qF '](../guide/host-interface.html)' "$zip/examples/README.md" || fail "the examples do not refer to the guide"
    i686-w64-mingw32-gcc -std=c11 "$zip/examples/c/host.c" -o "$WORK/host_c.exe"
    pascal_compile "$zip/examples/pascal/Host.pas" "$WORK/host_pascal.exe"
}

test_zip() {
    local zip=$WORK/zip/$RELEASE_ZIP program
    for program in tolvane virtual-scale; do
        expect_code 0 "$zip/$program.exe" --version
        expect_said "$program $RELEASE_VERSION"
    done
    start_scale zip "$zip/virtual-scale.exe"
    settings_for zip >"$WORK/Tolvane.ini"
    printf '%s\n' "$FIREBIRD_PASSWORD" >"$WORK/password"
    expect_code 0 "$zip/tolvane.exe" write --database "$(firebird_connection "$SHOP")" --user "$FIREBIRD_USER" \
        --password-file "$(wine_path "$WORK/password")" --ini "$(wine_path "$WORK/Tolvane.ini")" \
        --state "$(wine_path "$WORK/state")" --no-progress
    expect_in_scale zip "$zip/virtual-scale.exe"
}

# own_server_line <line of the guide>: as cmd does it, in the folder of the zip.
own_server_line() {
    local line=$1 words
    line=${line//'127.0.0.1:C:\Trial\shop.fdb'/$(firebird_connection "$WORK/trial.fdb")}
    line=${line//'demo\'/demo/}
    case $line in
        "set "*) export "${line#set }" ;;
        "echo "*" | isql")
            line=${line#echo }
            firebird_isql <<<"${line% | isql}"
            ;;
        "isql "*)
            read -ra words <<<"$line"
            firebird_isql "${words[@]:1}" </dev/null
            ;;
    esac
}

# The demo shop on a server, by the lines of the guide, but for the server's port, the file and the slashes.
test_own_server() {
    local zip=$WORK/zip/$RELEASE_ZIP line
    grep -E '^    (set |echo |isql )' docs/user-guide.en.md | sed 's/^ *//' >"$WORK/trial.lines"
    [ "$(wc -l <"$WORK/trial.lines")" -eq 5 ] || fail "the guide has not the five lines that make the demo shop"
    grep -E '^    (set |echo |isql )' docs/user-guide.md | sed 's/^ *//' | diff - "$WORK/trial.lines" ||
        fail "the guides have different lines"
    (
        cd "$zip"
        while IFS= read -r line; do own_server_line "$line"; done <"$WORK/trial.lines"
    )
    expect_code 0 "$zip/tolvane.exe" articles --user "$FIREBIRD_USER" \
        --password-file "$(wine_path "$WORK/password")" --database "$(firebird_connection "$WORK/trial.fdb")"
    expect_said "Свински врат"
}

# The guide's trial without a shop, from the unpacked zip. Debian has no engine for Windows: an empty file stands in
# for it, and the client library in Wine lets the server open the shop's file, for which it wants a password. The
# command asks for an engine by its name, and gets the server's.
test_trial() {
    local zip=$WORK/zip/$RELEASE_ZIP
    fbclient_place "$zip"
    mkdir -p "$zip/plugins"
    touch "$zip/plugins/engine12.dll"
    printf '[Database]\r\nUser=%s\r\nPassword=%s\r\n' "$FIREBIRD_USER" "$FIREBIRD_PASSWORD" >"$zip/TradeHost.ini"
    export TOLVANE_FB_SERVER
    TOLVANE_FB_SERVER=127.0.0.1/$(firebird_port)
    start_scale trial "$zip/virtual-scale.exe" --http 0
    (wine_run "$zip/TradeHost.exe" >"$WORK/trial.out" 2>&1 </dev/null &)
    demo_drive window TDatabaseForm
    test_picture trial-1-database
    demo_drive click DemoButton
    demo_drive --seconds 120 gone TDatabaseForm
    demo_drive command TTradeHostForm 1000
    demo_drive rows aDBGrid 305
    test_picture trial-2-list
    use_describe_scale trial trial
    use_write_all trial trial
    use_look_at_page trial "Свински врат"
    demo_drive close TSetPluForm
    demo_drive gone TSetPluForm
    demo_drive close TTradeHostForm
    demo_drive gone TTradeHostForm
    expect_code 0 "$zip/tolvane.exe" write --user "$FIREBIRD_USER" --password-file "$(wine_path "$WORK/password")" \
        --database "$(firebird_connection "$zip/demo/shop.fdb")" --ini "$(wine_path "$zip/Operations/$SETTINGS")" \
        --state "$(wine_path "$WORK/trial-state")" --no-progress --plu 1
    unset TOLVANE_FB_SERVER
    expect_code 0 taskkill /f /im virtual-scale.exe
    rm -r "$zip/plugins" "$zip/fbclient.dll" "$zip/TradeHost.ini" "$zip/Operations/$SETTINGS" "$zip/demo/shop.fdb"
}

# A host without an Operations folder.
make_host() {
    mkdir -p "$HOST"
    cp "$WORK/zip/$RELEASE_ZIP/TradeHost.exe" "$HOST/"
    printf '[Database]\r\nDatabase=%s\r\nUser=%s\r\nPassword=%s\r\n' \
        "$(firebird_connection "$SHOP")" "$FIREBIRD_USER" "$FIREBIRD_PASSWORD" >"$HOST/TradeHost.ini"
    cp "$HOST/TradeHost.ini" "$WORK/"
    content_of "$HOST" >"$WORK/before"
}

test_wrong_folders() {
    expect_code 2 "$SETUP" /S
    expect_said "Няма такава папка"
    expect_code 2 "$SETUP" /S '/D=C:\няма' такава
    expect_said 'Няма такава папка: „C:\няма такава“'
    [ ! -e "$WINE_PREFIX/drive_c/няма такава" ] || fail "a refused installation has made the folder"
}

expect_module() {
    cmp "$1" "$HOST/Operations/Tolvane.dll" || fail "the host's module is another one"
}

# A folder that cannot be made, and a file that cannot be written.
test_cannot_write() {
    touch "$HOST/Operations"
    content_of "$HOST" >"$WORK/with-file"
    expect_code 4 "$SETUP" /S "${IN_HOST[@]}"
    expect_said "не може да се пише"
    content_of "$HOST" >"$WORK/after"
    expect_same "$WORK/with-file" "$WORK/after" "a failed installation leaves something"
    rm "$HOST/Operations"
}

test_cannot_replace() {
    local place
    for place in new old; do
        mkdir -p "$HOST/Operations/Tolvane.dll.$place/full"
        expect_code 4 "$SETUP" /S "${IN_HOST[@]}"
        expect_said "не може да се пише"
        expect_module "$WORK/old/Operations/Tolvane.dll"
        rm -r "$HOST/Operations/Tolvane.dll.$place"
        [ -z "$(find "$HOST/Operations" -name 'Tolvane.dll.*')" ] || fail "another module lies beside"
    done
}

expect_version() {
    expect_code 0 reg query "$UNINSTALL_KEY" /v DisplayVersion
    expect_said "$1"
    expect_code 0 reg query "$UNINSTALL_KEY" /v Publisher
    expect_said "${RELEASE_MAINTAINER% <*}"
}

# What is on the display, for whoever looks at the steps: build/release-test/NAME.png.
test_picture() {
    demo_drive painted TTradeHostForm
    screenshot "$WORK/$1.png"
}

# The window for a new program asks for the database.
use_connect() {
    rm "$HOST/TradeHost.ini"
    (wine_run "$HOST/TradeHost.exe" --start 1 >"$WORK/host.out" 2>&1 </dev/null &)
    demo_drive type DatabaseEdit "$(firebird_connection "$SHOP")"
    demo_drive type UserEdit "$FIREBIRD_USER"
    demo_drive type PasswordEdit "$FIREBIRD_PASSWORD"
    test_picture use-1-database
    demo_drive click ConnectButton
    demo_drive rows aDBGrid 4
    test_picture use-2-list
}

# use_describe_scale <name of start_scale> <prefix of the pictures>
use_describe_scale() {
    demo_drive command TElicomPluScaleListForm 1005
    demo_drive window TScaleComunicationForm
    demo_drive click btnAddScale
    demo_drive type edtScaleName "Щанд месо"
    demo_drive click rbTCP
    demo_drive type edtIpAddress 127.0.0.1
    demo_drive type edtPort "$(port_of "$1" tcp)"
    test_picture "$2-3-scale"
    demo_drive click btnOk
    demo_drive gone TfrmScaleSettings
    test_picture "$2-4-scales"
    demo_drive click btnOk
    demo_drive gone TScaleComunicationForm
}

# use_write_all <name of start_scale> <prefix of the pictures>
use_write_all() {
    demo_drive command TElicomPluScaleListForm 1002
    demo_drive window TSetPluForm
    demo_drive click SaveBtn
    wait_until 240 test -s "$WORK/$1.json" || fail "the run does not end"
    demo_drive --seconds 120 enabled SaveBtn
    test_picture "$2-5-written"
}

# use_look_at_page <name of start_scale> <article>: the scale's page shows its label.
use_look_at_page() {
    python3 - "http://127.0.0.1:$(port_of "$1" http)/" >"$WORK/page.html" <<'PAGE'
import sys, urllib.request
print(urllib.request.urlopen(sys.argv[1], timeout=30).read().decode())
PAGE
    grep -q "$2" "$WORK/page.html" || fail "the page of the scale does not show what it holds"
}

# By the window, as somebody does it who begins: the database, the scale, all articles.
test_use() {
    start_scale host "$HOST/Tolvane/virtual-scale.exe" --http 0
    use_connect
    use_describe_scale host use
    use_write_all host use
    use_look_at_page host "Ябълки"
    expect_in_scale host "$HOST/Tolvane/virtual-scale.exe"
}

# While the host runs nothing is replaced, and it is told why.
test_held() {
    expect_code 3 "$SETUP" /S "${IN_HOST[@]}"
    expect_said "Търговската система работи и държи Operations\\Tolvane.dll"
    expect_module "$WORK/old/Operations/Tolvane.dll"
    expect_code 3 "$HOST/Tolvane/uninstall.exe" /S "${OF_HOST[@]}"
    expect_said "Търговската система работи"
    expect_module "$WORK/old/Operations/Tolvane.dll"
    by_hand_held
    expect_module "$WORK/old/Operations/Tolvane.dll"
}

close_host() {
    demo_drive close TSetPluForm
    demo_drive gone TSetPluForm
    demo_drive close TTradeHostForm
    demo_drive gone TTradeHostForm
    # Where its window was, and which database was open.
    mv "$WORK/TradeHost.ini" "$HOST/"
    # The scale is one of the files that are to be replaced.
    expect_code 3 "$SETUP" /S "${IN_HOST[@]}"
    expect_said "virtual-scale.exe"
    expect_code 0 taskkill /f /im virtual-scale.exe
}

test_upgrade() {
    cp "$HOST/Operations/$SETTINGS" "$WORK/settings"
    expect_code 0 "$SETUP" /S "${IN_HOST[@]}"
    expect_module "$WORK/zip/$RELEASE_ZIP/Operations/Tolvane.dll"
    cmp "$WORK/settings" "$HOST/Operations/$SETTINGS" || fail "an upgrade changes the settings"
    expect_version "$RELEASE_VERSION"
}

# remove [argument of the uninstaller]: it goes on in a copy of itself, which removes it.
remove() {
    expect_code 0 "$HOST/Tolvane/uninstall.exe" /S "$@"
    wait_until 60 test ! -e "$HOST/Tolvane" || fail "this stays in the folder: $(ls -R "$HOST/Tolvane")"
    wait_until 60 uninstaller_has_ended || fail "the uninstaller does not end"
    expect_code 1 reg query "$UNINSTALL_KEY"
    expect_code 1 reg query 'HKLM\Software\Tolvane'
}

uninstaller_has_ended() {
    ! wine_command wine tasklist 2>/dev/null </dev/null | grep -qi 'Un.*\.exe'
}

# The settings are kept, and nothing else.
test_remove() {
    remove
    [ "$(ls -A "$HOST/Operations")" = "$SETTINGS" ] || fail "Operations holds more than the settings"
    cmp "$WORK/settings" "$HOST/Operations/$SETTINGS" || fail "removing changes the settings"
    rm -r "$HOST/Operations"
    content_of "$HOST" >"$WORK/after"
    expect_same "$WORK/before" "$WORK/after" "removing leaves something else"
}

# All goes when it is asked for, and the folder with it.
test_remove_settings() {
    expect_code 0 "$SETUP" /S "${IN_HOST[@]}"
    cp "$WORK/settings" "$HOST/Operations/$SETTINGS"
    remove /SETTINGS
    content_of "$HOST" >"$WORK/after"
    expect_same "$WORK/before" "$WORK/after" "removing with the settings leaves something else"
}

# A module that somebody has copied there by hand comes back, and what else was there stays.
test_foreign() {
    mkdir -p "$HOST/Operations"
    printf 'by hand' >"$HOST/Operations/Tolvane.dll"
    printf 'another module' >"$HOST/Operations/Other.dll"
    cp "$WORK/settings" "$HOST/Operations/$SETTINGS"
    content_of "$HOST" >"$WORK/before"
    expect_code 0 "$SETUP" /S "${IN_HOST[@]}"
    expect_module "$WORK/zip/$RELEASE_ZIP/Operations/Tolvane.dll"
    expect_code 0 "$SETUP" /S "${IN_HOST[@]}"
    remove
    content_of "$HOST" >"$WORK/after"
    expect_same "$WORK/before" "$WORK/after" "what was there before is not there again"
}

scene() {
    say "== $1"
    "${@:2}"
}

trap release_test_end EXIT
trap 'exit 130' INT TERM
rm -rf "$WORK"
mkdir -p "$WORK/zip"
scene "Prepare" release_test_prepare
[ "${1:-}" = made ] || scene "Make a zip and an installer" release_test_make
SETUP=$RELEASE/$RELEASE_SETUP
pascal_build
unzip -q "$RELEASE/$RELEASE_ZIP.zip" -d "$WORK/zip"
scene "The zip: pages and examples" test_zip_files
scene "Make an older version" release_test_make_old
scene "Start a database" release_test_start
scene "The zip: articles by the command" test_zip
scene "The demo shop on a server" test_own_server
# Half a minute of pauses that a scale needs.
[ "${1:-}" != made ] || scene "The trial without a shop" test_trial
scene "Install and remove by the windows" test_by_hand
scene "In English" test_english
make_host
scene "Wrong folders" test_wrong_folders
scene "A folder that cannot be made" test_cannot_write
scene "Install an older version" expect_code 0 "$WORK/setup-$OLD_VERSION.exe" /S "${IN_HOST[@]}"
expect_module "$WORK/old/Operations/Tolvane.dll"
expect_version "$OLD_VERSION"
[ ! -e "$HOST/Operations/$SETTINGS" ] || fail "the installer makes settings"
scene "Articles by the window" test_use
scene "A host holds the module" test_held
close_host
scene "A file that cannot be written" test_cannot_replace
scene "Upgrade" test_upgrade
scene "Remove" test_remove
scene "Remove with the settings" test_remove_settings
scene "Over a module that was copied by hand" test_foreign
rm -rf "$HOST"
say "All is as expected."
