# shellcheck shell=bash disable=SC2154
# Sourced by windows.sh: the installer and the uninstaller by their windows, as somebody does it who begins, with
# pictures of all pages: build/release-test/install-*.png.

TRADE=$WINE_PREFIX/drive_c/Trade
# The numbers of their controls: the choice of a language, the page's title, the folder, the text of a message box,
# the last page's title and its box to tick.
LANGUAGE_CHOICE='#1002'
PAGE_TITLE='#1037'
PAGE_FOLDER='#1019'
BOX_TEXT='#65535'
LAST_TITLE='#1201'
LAST_TICK='#1203'

# by_hand_page <picture> <control> <text>: the page with this text, when it has it.
by_hand_page() {
    demo_drive contains "$2" "$3"
    demo_drive painted '#32770'
    screenshot "$WORK/install-$1.png"
}

# The button that Enter presses in the window in front.
by_hand_next() {
    demo_drive command '#32770' 1
}

by_hand_install() {
    (wine_run "$SETUP" >"$WORK/setup.out" 2>&1 </dev/null &)
    demo_drive window '#32770'
    by_hand_page 1-language "$LANGUAGE_CHOICE" "Български"
    by_hand_next
    by_hand_page 2-licence "$PAGE_TITLE" "Лицензионно"
    by_hand_next
    demo_drive contains "$PAGE_TITLE" "папка"
    demo_drive type "$PAGE_FOLDER" 'C:\няма такава'
    by_hand_next
    by_hand_page 3-no-folder "$BOX_TEXT" 'Няма такава папка: „C:\няма такава“'
    by_hand_next
    demo_drive type "$PAGE_FOLDER" 'C:\Trade'
    by_hand_page 4-folder "$PAGE_TITLE" "папка"
    by_hand_next
    by_hand_page 5-parts "$PAGE_TITLE" "компоненти"
    by_hand_next
    by_hand_page 6-done "$LAST_TITLE" "Tolvane $RELEASE_VERSION е инсталиран"
    demo_drive click "$LAST_TICK"
    by_hand_next
    demo_drive gone '#32770'
}

# In the language that was chosen for the installation: nobody is asked again.
by_hand_remove() {
    (wine_run "$TRADE/Tolvane/uninstall.exe" >"$WORK/uninstall.out" 2>&1 </dev/null &)
    by_hand_page 7-remove "$PAGE_TITLE" "компоненти"
    by_hand_next
    by_hand_page 8-removed "$PAGE_TITLE" "Край"
    by_hand_next
    demo_drive gone '#32770'
}

test_by_hand() {
    rm -rf "$TRADE"
    mkdir -p "$TRADE"
    cp "$WORK/zip/$RELEASE_ZIP/TradeHost.exe" "$TRADE/"
    content_of "$TRADE" >"$WORK/before"
    by_hand_install
    cmp "$WORK/zip/$RELEASE_ZIP/Operations/Tolvane.dll" "$TRADE/Operations/Tolvane.dll" || fail "another module is there"
    [ -s "$TRADE/Tolvane/tolvane.exe" ] && [ -s "$TRADE/Tolvane/guide/user-guide.html" ] || fail "files are missing"
    by_hand_remove
    content_of "$TRADE" >"$WORK/after"
    expect_same "$WORK/before" "$WORK/after" "removing by the window leaves something else"
    rm -r "$TRADE"
}

# While the host runs; the window goes on when it has been closed, or ends.
by_hand_held() {
    (
        code=0
        wine_run "$SETUP" "${IN_HOST[@]}" >"$WORK/setup.out" 2>&1 </dev/null || code=$?
        printf '%s\n' "$code" >"$WORK/held.code"
    ) &
    demo_drive contains "$LANGUAGE_CHOICE" "Български"
    by_hand_next
    demo_drive contains "$PAGE_TITLE" "Лицензионно"
    by_hand_next
    demo_drive contains "$PAGE_TITLE" "папка"
    by_hand_next
    demo_drive contains "$PAGE_TITLE" "компоненти"
    by_hand_next
    demo_drive contains "$BOX_TEXT" 'Търговската система работи и държи Operations\Tolvane.dll'
    screenshot "$WORK/install-10-held.png"
    demo_drive command '#32770' 2
    wait_until 60 test -s "$WORK/held.code" || fail "the installer does not end"
    [ "$(cat "$WORK/held.code")" -eq 3 ] || fail "the installer has ended with $(cat "$WORK/held.code")"
}

# In English, when that was chosen once; nothing is installed.
test_english() {
    expect_code 0 reg add 'HKLM\Software\Tolvane' /v Language /d 1033 /f
    (wine_run "$SETUP" >"$WORK/setup.out" 2>&1 </dev/null &)
    demo_drive contains "$PAGE_TITLE" "License Agreement"
    by_hand_next
    by_hand_page 9-english "$PAGE_TITLE" "Install Location"
    demo_drive command '#32770' 2
    demo_drive contains "$BOX_TEXT" "Are you sure"
    demo_drive command '#32770' 6
    demo_drive gone '#32770'
    expect_code 0 reg delete 'HKLM\Software\Tolvane' /f
}
