#!/usr/bin/env bash
# The tests of the links, scene after scene: each starts its virtual scales, has the test program reach
# them under Wine, and ends them. First come scales on COM5 to COM8 and, as root, three at addresses of
# their own in a shop's network; then, as root, networks to be searched. Without root the tests of the
# network are left out, and a line says so. What the scales hold is left in build/links.
#
#   tests/module/links/run.sh <Windows build folder> <virtual-scale> [argument of the test program]...
#
# Every scene starts the program anew: its name is put into the file name of --gtest_output.
# The Wine prefix and the display must be there.

source "$(dirname "${BASH_SOURCE[0]}")/../../../scripts/lib.sh"
source "$SCRIPTS/wine.sh"
source "$SCRIPTS/network.sh"

LINKS=$BUILD/links
windows=$1 virtual_scale=$2 arguments=("${@:3}")

# links_scale <name> <option>...: by itself, or where the network has a computer of that name.
links_scale() {
    local name=$1 where=()
    shift
    if [[ $name == udp* || $name == tcp ]]; then where=(ip netns exec "$NETWORK_PREFIX-$name"); fi
    rm -f "$LINKS/$name".{json,ready}
    "${where[@]}" "${SCALE_PRIORITY[@]}" "$virtual_scale" "$@" --save "$LINKS/$name.json" --save-on-weighing \
        --ready-file "$LINKS/$name.ready" >"$LINKS/$name.out" 2>&1 </dev/null &
    printf '%s\n' "$!" >"$LINKS/$name.pid"
    wait_until 30 test -s "$LINKS/$name.ready" || fail "the scale $name does not get ready"
}

# links_at <name> <model> udp|tcp <port> <option>...: answers the searches for its kind.
links_at() {
    links_scale "$1" --model "$2" --host "$(network_address "$1")" "--$3" "$4" --discovery "$3" "${@:5}"
}

# links_plug: removes COM8's port and puts another with a scale there, each when the tests ask.
links_plug() {
    wait_until 300 test -e "$LINKS/plugged.unplug" || return 0
    end_process "$(cat "$LINKS/plugged.pid")" virtual-scale || true
    rm -f "$LINKS/plugged.port"
    touch "$LINKS/plugged.gone"
    wait_until 300 test -e "$LINKS/plugged.plug" || return 0
    links_scale plugged --model EVL --pty "$LINKS/plugged.port"
    touch "$LINKS/plugged.back"
}

links_scales_end() {
    local name
    # First, so that no scale is started after this.
    if [ -n "${plugger:-}" ]; then kill "$plugger" 2>/dev/null || true; fi
    plugger=
    for name in serial pulled late plugged udp1 udp2 tcp; do
        end_process "$(cat "$LINKS/$name.pid" 2>/dev/null)" virtual-scale || true
        rm -f "$LINKS/$name.pid"
    done
}

# links_scene <name> <filter>: the tests that the scales which run now are for. A filter that fits no
# test is a mistake.
links_scene() {
    local status=0
    wine_command "${SCALE_PRIORITY[@]}" timeout --foreground 900 wine "$windows/tests/module/links/test_links.exe" \
        "${arguments[@]/%.json/-$1.json}" "--gtest_filter=$2" >"$LINKS/scene.out" 2>&1 || status=$?
    cat "$LINKS/scene.out"
    [ "$status" -eq 0 ] || fail "the tests of the scene $1 end with code $status"
    grep -q '^\[  PASSED  \] [1-9]' "$LINKS/scene.out" || fail "there are no tests of the scene $1"
    links_scales_end
}

links_end() {
    local code=$? name
    links_scales_end
    for name in COM5 COM6 COM7 COM8; do
        wine_run reg delete 'HKLM\Software\Wine\Ports' /v "$name" /f >/dev/null 2>&1 || true
    done
    wine_stop || true
    network_down || true
    exit "$code"
}

trap links_end EXIT
trap 'exit 130' INT TERM
mkdir -p "$LINKS"

# The script starts itself once more inside the network. Wine processes that run already would keep
# their sockets outside.
if [ "${TOLVANE_LINKS_INSIDE:-}" != 1 ]; then
    wine_stop
    network_down
    refusal=$(network_refusal)
    if [ -z "$refusal" ]; then
        network_up udp1 udp2 tcp
        network_enter env TOLVANE_LINKS_INSIDE=1 TOLVANE_BUILD="$BUILD" "${BASH_SOURCE[0]}" "$@"
    fi
    say "The tests of the network are left out: $refusal."
fi

filter='*LinksSerial*'
links_scale serial --model EVL --address 5 --pty "$LINKS/serial.port"
links_scale pulled --model EVL --pty "$LINKS/pulled.port" --fault drop,request=2
links_scale late --model EVL --pty "$LINKS/late.port" --fault no-reply,command=SetWeightMode \
    --fault late,command=GetVersion,ms=300
links_scale plugged --model EVL --pty "$LINKS/plugged.port" --fault drop,request=2
rm -f "$LINKS"/plugged.{unplug,gone,plug,back}
links_plug &
plugger=$!
wine_com_port COM5 "$LINKS/serial.port"
wine_com_port COM6 "$LINKS/pulled.port"
wine_com_port COM7 "$LINKS/late.port"
wine_com_port COM8 "$LINKS/plugged.port"
export TOLVANE_LINKS_SERIAL=COM5 TOLVANE_LINKS_FOLDER
TOLVANE_LINKS_FOLDER=$(wine_path "$LINKS")
if network_is_up; then
    filter='*Links*'
    links_at udp1 ETS udp 1001
    links_at udp2 EVL udp 1001
    links_at tcp S300 tcp 1001
    export TOLVANE_LINKS_UDP1 TOLVANE_LINKS_UDP2 TOLVANE_LINKS_TCP
    TOLVANE_LINKS_UDP1=$(network_address udp1)
    TOLVANE_LINKS_UDP2=$(network_address udp2)
    TOLVANE_LINKS_TCP=$(network_address tcp)
fi
wine_session
links_scene links "$filter"
network_is_up || exit 0

links_scene none 'SearchNoneTest*'

links_at udp1 EVL udp 1001
links_scene one 'SearchOneTest*'

links_at udp1 EVL udp 1001 --discovery-replies 7
links_at tcp S300 tcp 100 --discovery-replies 7
links_scene several 'SearchSeveralTest*'

links_at udp1 EVL udp 1001 --discovery-reply -
links_at tcp S300 tcp 100 --discovery-reply -
links_scene empty 'SearchEmptyTest*'

links_at udp1 EVL udp 1001 --discovery-replies 10000 --discovery-reply "$(printf '%02800d' 0)"
links_at tcp S300 tcp 100
links_scene flood 'SearchFloodTest*'

links_at udp1 EVL udp 1001
links_at tcp S300 tcp 100
links_scene found 'FoundScaleTest*'
