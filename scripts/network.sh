# shellcheck shell=bash disable=SC1091
# Sourced: a shop's network on one machine, made of network namespaces. The shop's computer is
# 192.168.10.1, the scales follow from 192.168.10.11 on, each in a namespace of its own; all are on
# one switch. Nothing of it touches the machine's own network. Needs root.
#
#   network_refusal           prints why namespaces cannot be made here; nothing when they can
#   network_up <scale>...     makes the network anew, for these scales
#   network_is_up             whether it is there
#   network_address <scale>   prints the scale's address
#   network_enter <command>   replaces this process by the command, on the shop's computer
#   network_at <scale> <command>...
#                             runs the command beside the scale
#   network_down              takes away the networks that network_up has made for this build folder and lane,
#                             including those of a killed run, and nothing else; what still runs there
#                             goes on without a network
#
# The names carry the build folder's, so that two runs can stand side by side, and the lane's, so that two
# parts of a run can.

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

NETWORK_FOLDER=$BUILD/network$LANE
NETWORK_PREFIX=tolvane$LANE-$(cksum <<<"$BUILD" | cut -d' ' -f1)
NETWORK_SHOP=$NETWORK_PREFIX-shop

network_refusal() {
    local probe=$NETWORK_PREFIX-probe reason
    if ! have_root; then
        say "network namespaces need root"
        return 0
    fi
    if ! command -v ip >/dev/null; then
        say "there is no program \"ip\" here"
        return 0
    fi
    if ! reason=$(ip netns add "$probe" 2>&1 && ip -n "$probe" link add name switch type bridge 2>&1); then
        say "network namespaces cannot be made here: $(tail -n 1 <<<"$reason")"
    fi
    ip netns del "$probe" 2>/dev/null || true
}

network_add() {
    ip netns add "$1"
    ip -n "$1" link set lo up
}

network_up() {
    local scale host=10
    network_down
    mkdir -p "$NETWORK_FOLDER"
    network_add "$NETWORK_SHOP"
    ip -n "$NETWORK_SHOP" link add name switch type bridge
    ip -n "$NETWORK_SHOP" addr add 192.168.10.1/24 dev switch
    ip -n "$NETWORK_SHOP" link set switch up
    # Where broadcasts to everybody go.
    ip -n "$NETWORK_SHOP" route add default dev switch
    for scale in "$@"; do
        host=$((host + 1))
        network_add "$NETWORK_PREFIX-$scale"
        ip -n "$NETWORK_SHOP" link add name "port$host" type veth \
            peer name eth0 netns "$NETWORK_PREFIX-$scale"
        ip -n "$NETWORK_SHOP" link set "port$host" master switch up
        ip -n "$NETWORK_PREFIX-$scale" addr add "192.168.10.$host/24" dev eth0
        ip -n "$NETWORK_PREFIX-$scale" link set eth0 up
        printf '%s 192.168.10.%s\n' "$scale" "$host" >>"$NETWORK_FOLDER/addresses"
    done
    touch "$NETWORK_FOLDER/up"
}

network_is_up() {
    [ -e "$NETWORK_FOLDER/up" ]
}

network_address() {
    sed -n "s/^$1 //p" "$NETWORK_FOLDER/addresses"
}

network_enter() {
    exec ip netns exec "$NETWORK_SHOP" "$@"
}

network_at() {
    local scale=$1
    shift
    ip netns exec "$NETWORK_PREFIX-$scale" "$@"
}

network_down() {
    local namespace
    # By their names and not by a list: the build folder may have gone meanwhile.
    for namespace in "/run/netns/$NETWORK_PREFIX"-*; do
        if [ -e "$namespace" ]; then ip netns del "${namespace##*/}"; fi
    done
    rm -rf "$NETWORK_FOLDER"
}
