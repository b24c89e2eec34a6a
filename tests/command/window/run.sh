#!/usr/bin/env bash
# Writes the demo's articles into fresh scales by `tolvane write`: with the database and the
# configuration that a finished demo has left, over the same links. What the scales hold then is left
# in build/window, for test_window, which compares it with what the window's run has left in
# build/demo.

source "$(dirname "${BASH_SOURCE[0]}")/../../../scripts/lib.sh"
source "$SCRIPTS/network.sh"
source "$SCRIPTS/demo-steps.sh"

DEMO_BEFORE=$DEMO
DEMO=$BUILD/window

window_write() {
    cp "$DEMO_BEFORE/shop.fdb" "$DEMO/shop.fdb"
    # The module's own file, unless the TCP scales have got other ports.
    cp "$DEMO_BEFORE/TradeHost/Operations/Tolvane.ini" "$DEMO/Tolvane.ini"
    network_is_up || demo_configuration | iconv -f UTF-8 -t CP1251 >"$DEMO/Tolvane.ini"
    FIREBIRD_LOCK=$DEMO/locks "$BUILD/native/src/command/tolvane" write --all \
        --database "$DEMO/shop.fdb" --ini "$DEMO/Tolvane.ini" --config "$DEMO/tolvane.conf" \
        --state "$DEMO/state" --serial "$DEMO_COM=$DEMO/evl.port"
}

window_end() {
    local code=$?
    trap '' INT TERM
    demo_end_scales || true
    network_down || true
    exit "$code"
}

trap window_end EXIT
trap 'exit 130' INT TERM

# The script starts itself once more inside the shop's network.
if [ "${TOLVANE_DEMO_INSIDE:-}" != 1 ]; then
    rm -rf "$DEMO"
    mkdir -p "$DEMO/locks"
    printf '[tolvane]\n' >"$DEMO/tolvane.conf"
    network_down
    if [ -z "$(demo_network_refusal)" ]; then
        network_up ets s300
        network_enter env TOLVANE_DEMO_INSIDE=1 TOLVANE_BUILD="$BUILD" "${BASH_SOURCE[0]}"
    fi
fi

demo_start_scales
window_write
demo_end_scales
