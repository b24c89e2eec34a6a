#!/usr/bin/env bash
# Measures exchanges of the Windows build in Wine; the peer is a process of Linux. The Wine prefix must be
# there.
#
#   tests/bench/exchange/wine.sh <Windows build folder> <bench_exchange of Linux> [--quick]

source "$(dirname "${BASH_SOURCE[0]}")/../../../scripts/lib.sh"
source "$SCRIPTS/wine.sh"

windows=$1 linux=$2 arguments=("${@:3}")
place=$BUILD/bench-peer
port=COM9
peer=

bench_end() {
    local code=$?
    end_process "$peer" bench_exchange || true
    wine_run reg delete 'HKLM\Software\Wine\Ports' /v "$port" /f >/dev/null 2>&1 || true
    wine_stop || true
    rm -f "$place"
    exit "$code"
}

trap bench_end EXIT
trap 'exit 130' INT TERM
rm -f "$place"
"$linux" --serve "$place" </dev/null &
peer=$!
wait_until 30 test -s "$place" || fail "the peer does not get ready"
read -r tcp udp terminal <"$place"
wine_com_port "$port" "$terminal" >/dev/null
wine_session
wine_command timeout --foreground 300 wine "$windows/tests/bench/exchange/bench_exchange.exe" "${arguments[@]}" \
    --peer "$tcp" "$udp" "$port"
