#!/usr/bin/env bash
# Writes the demo's articles into fresh scales by `tolvane write`: with the database and the
# configuration that a finished demo has left, over the same links. Then the same by the program for
# Windows in Wine, through a server, for some of the articles. What the scales hold then is left in
# build/window and build/window/wine, for test_window, which compares it with what the window's run has
# left in build/demo. Where the scales have computers of their own, both programs also have to find them.
#
#   tests/command/window/run.sh <article>,<article>...     which articles the program for Windows writes

source "$(dirname "${BASH_SOURCE[0]}")/../../../scripts/lib.sh"
source "$SCRIPTS/wine.sh"
source "$SCRIPTS/firebird.sh"
source "$SCRIPTS/network.sh"
source "$SCRIPTS/demo-steps.sh"

articles=$1
DEMO_BEFORE=$DEMO
DEMO=$BUILD/window

window_prepare() {
    mkdir -p "$DEMO"
    cp "$DEMO_BEFORE/shop.fdb" "$DEMO/shop.fdb"
    # The module's own file, unless the TCP scales have got other ports.
    cp "$DEMO_BEFORE/TradeHost/Operations/Tolvane.ini" "$DEMO/Tolvane.ini"
    network_is_up || demo_configuration | iconv -f UTF-8 -t CP1251 >"$DEMO/Tolvane.ini"
    printf '[tolvane]\n' >"$DEMO/tolvane.conf"
}

window_tolvane() {
    FIREBIRD_LOCK=$BUILD/window/locks timeout --foreground 600 "$BUILD/native/src/command/tolvane" "$@"
}

window_tolvane_in_wine() {
    wine_command timeout --foreground 600 wine "$BUILD/windows/src/command/tolvane.exe" "$@"
}

# window_search <command>...: it finds both scales of the network, and nothing else.
window_search() {
    network_is_up || return 0
    "$@" discover --csv -q | tr -d '\r' >"$DEMO/found.csv"
    printf 'address,kind\n%s,UDP\n%s,TCP\n' "$(network_address ets)" "$(network_address s300)" |
        diff -u - "$DEMO/found.csv" || fail "$1 discover finds something else (- expected, + found)"
}

window_native() {
    demo_start_scales
    window_prepare
    window_search window_tolvane
    window_tolvane write --all --database "$DEMO/shop.fdb" --ini "$DEMO/Tolvane.ini" \
        --config "$DEMO/tolvane.conf" --state "$DEMO/state" --serial "$DEMO_COM=$DEMO/evl.port"
    demo_end_scales
}

window_wine() {
    local folder
    DEMO=$BUILD/window/wine
    folder=$(wine_path "$DEMO")
    mkdir -p "$DEMO"
    demo_start_scales
    window_prepare
    printf '%s\n' "$FIREBIRD_PASSWORD" >"$DEMO/password"
    demo_plug_in
    firebird_start
    wine_session
    window_search window_tolvane_in_wine
    window_tolvane_in_wine write --plu "$articles" --database "$(firebird_connection "$DEMO/shop.fdb")" \
        --user "$FIREBIRD_USER" --password-file "$folder\\password" --ini "$folder\\Tolvane.ini" \
        --config "$folder\\tolvane.conf" --state "$folder\\state"
    demo_end_scales
}

window_end() {
    local code=$?
    trap '' INT TERM
    demo_end_scales || true
    demo_unplug >/dev/null 2>&1 || true
    wine_stop || true
    firebird_stop || true
    network_down || true
    exit "$code"
}

trap window_end EXIT
trap 'exit 130' INT TERM

# The script starts itself once more inside the shop's network. Wine processes that run already would keep
# their sockets outside.
if [ "${TOLVANE_DEMO_INSIDE:-}" != 1 ]; then
    rm -rf "$DEMO"
    mkdir -p "$DEMO/locks"
    wine_stop
    firebird_stop
    network_down
    if [ -z "$(demo_network_refusal)" ]; then
        network_up ets s300
        network_enter env TOLVANE_DEMO_INSIDE=1 TOLVANE_BUILD="$BUILD" "${BASH_SOURCE[0]}" "$@"
    fi
fi

window_native
window_wine
