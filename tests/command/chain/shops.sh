# shellcheck shell=bash disable=SC1091
# Sourced by run.sh: a chain of shops on this machine. Each shop has a computer of its own (see
# shop-computer.sh) in a network namespace, a database file, and virtual scales; the centre's network is
# joined to all of them. What they leave lies under build/chain.
#
#   chain_up               makes them anew; returns when all of them can be reached
#   chain_centre <command>...       runs the command in the centre
#   chain_at <shop> <command>...    runs the command on the shop's computer, as root, through SSH
#   chain_held <shop> <number>      what a scale holds: "number price times-written" per article
#   chain_down             ends all of it, also what a killed run has left

source "$(dirname "${BASH_SOURCE[0]}")/../../../scripts/lib.sh"
export TOLVANE_LANE=chain
source "$SCRIPTS/firebird.sh"
source "$SCRIPTS/network.sh"

CHAIN=$BUILD/chain
CHAIN_TEST=$ROOT/tests/command/chain
CHAIN_SCALE=$BUILD/native/simulator/virtual-scale
CHAIN_DATABASE=$CHAIN/shop.fdb
# name, how it gets the program, what starts it each night, its scales: number:model:link. Nobody is at
# the address of a scale that is off.
CHAIN_SHOPS=(
    "s01 program cron 1:S300:tcp"
    "s02 package systemd 1:S300:tcp 2:ETS:udp 3:EVL:serial"
    "s03 package cron 1:S300:tcp"
    "s04 program systemd 1:ETS:tcp"
    "s05 program cron 1:ETS:udp"
    "s06 program cron 2:EVL:udp"
    "s07 program cron 1:EVL:serial"
    "s08 program cron 1:S300:tcp 3:EVL:serial"
    "s09 program cron 1:S300:tcp 2:ETS:off"
    "s10 program systemd 1:ETS:tcp"
    "s11 program cron 1:S300:tcp"
)
CHAIN_UNREACHABLE=s01
CHAIN_OF_SERVER=s10
CHAIN_SSH=(-F none -i "$CHAIN/key" -o StrictHostKeyChecking=no -o UserKnownHostsFile=/dev/null
    -o LogLevel=ERROR)
declare -A CHAIN_TYPES=([EVL]=16 [ETS]=5000 [S300]=300)

chain_centre() {
    ip netns exec "$NETWORK_SHOP" "$@"
}

chain_at() {
    local address
    address=$(network_address "$1")
    shift
    # shellcheck disable=SC2029
    chain_centre ssh -n "${CHAIN_SSH[@]}" "root@$address" "$(printf '%q ' "$@")"
}

chain_sql() {
    firebird_isql -user "$FIREBIRD_USER" -sqldialect 3 -charset UTF8 "$@"
}

# The file from which each shop gets a copy; the engine needs no server for it.
chain_make_database() {
    firebird_make_folder
    firebird_write_settings 0
    mkdir -p "$FIREBIRD_FOLDER/lock"
    chain_sql <<<"create database '$CHAIN_DATABASE' page_size 8192 default character set win1251;"
    chain_sql -i "$ROOT/demo/schema.sql" "$CHAIN_DATABASE"
    chain_sql -i "$CHAIN_TEST/shop.sql" "$CHAIN_DATABASE"
}

# This shop's database is a server's, which asks for a password.
chain_start_server() {
    network_at "$CHAIN_OF_SERVER" bash -c 'source "$1"; firebird_start' - "$SCRIPTS/firebird.sh"
}

# chain_beside <log> <command>...: runs on until chain_down.
chain_beside() {
    local log=$1
    shift
    ("$@" >"$log" 2>&1 </dev/null &)
}

# chain_link <shop> <number> <link>: address, port and kind of link as Tolvane.ini has them.
chain_link() {
    case $3 in
        tcp) say 127.0.0.1 1001 1 ;;
        off) say 192.168.20.99 1001 1 ;;
        udp) say 192.168.20.11 1001 2 ;;
        serial) say "COM$2" 1001 0 ;;
    esac
}

chain_scale_list() {
    local shop=$1 scale number model link address port kind
    shift
    for scale in "$@"; do
        IFS=: read -r number model link <<<"$scale"
        read -r address port kind <<<"$(chain_link "$shop" "$number" "$link")"
        printf '[SCALE%s]\r\nScaleNumb=%s\r\nScaleName=Щанд %s\r\nTCPAddress=%s\r\nTCPPort=%s\r\n' \
            "$number" "$number" "$number" "$address" "$port"
        printf 'Checked=1\r\nBaudRate=4\r\nScaleType=%s\r\nEncoding=2\r\nScaleAddr=0\r\nCommType=%s\r\n' \
            "${CHAIN_TYPES[$model]}" "$kind"
    done | iconv -f UTF-8 -t CP1251
}

# A network between the shop's computer and what has no place on it; over UDP both have port 1001.
chain_floor() {
    local floor=$NETWORK_PREFIX-$1-floor
    network_add "$floor"
    ip -n "$NETWORK_PREFIX-$1" link add name floor type veth peer name eth0 netns "$floor"
    ip -n "$NETWORK_PREFIX-$1" addr add 192.168.20.1/24 dev floor
    ip -n "$NETWORK_PREFIX-$1" link set floor up
    ip -n "$floor" addr add 192.168.20.11/24 dev eth0
    ip -n "$floor" link set eth0 up
}

# chain_scale <shop> <number> <model> <link>
chain_scale() {
    local folder=$CHAIN/$1 number=$2 model=$3 where=$NETWORK_PREFIX-$1 options=()
    case $4 in
        tcp) options=(--tcp 1001) ;;
        udp) options=(--host 192.168.20.11 --udp 1001) where+=-floor ;;
        serial) options=(--pty "$folder/srv/COM$number") ;;
        off) return 0 ;;
    esac
    chain_beside "$folder/$number.out" ip netns exec "$where" "${SCALE_PRIORITY[@]}" "$CHAIN_SCALE" \
        --model "$model" "${options[@]}" --save "$folder/$number.json" --save-on-weighing \
        --ready-file "$folder/$number.ready"
    wait_until 30 test -s "$folder/$number.ready" || fail "scale $number of $1 does not get ready"
    if [ "$4" = serial ]; then
        # As for a serial port that Debian has found.
        chgrp dialout "$(readlink -f "$folder/srv/COM$number")"
        chmod 660 "$(readlink -f "$folder/srv/COM$number")"
    fi
}

chain_computer() {
    chain_beside "$CHAIN/$1/computer.out" ip netns exec "$NETWORK_PREFIX-$1" unshare --mount --pid --uts \
        --fork --kill-child "$CHAIN_TEST/shop-computer.sh" "$1" "$CHAIN/$1" "$CHAIN/key.pub"
}

chain_shop() {
    local name=$1 scale number model link
    mkdir -p "$CHAIN/$name/srv" "$CHAIN/files/$name"
    cp "$CHAIN_DATABASE" "$CHAIN/$name/srv/shop.fdb"
    chgrp firebird "$CHAIN/$name/srv/shop.fdb"
    chmod 660 "$CHAIN/$name/srv/shop.fdb"
    chain_scale_list "$name" "${@:4}" >"$CHAIN/files/$name/Tolvane.ini"
    [ "$name" != "$CHAIN_UNREACHABLE" ] || return 0
    case "$*" in *:udp* | *:off*) chain_floor "$name" ;; esac
    for scale in "${@:4}"; do
        IFS=: read -r number model link <<<"$scale"
        chain_scale "$name" "$number" "$model" "$link"
    done
    chain_computer "$name"
}

chain_answers() {
    chain_at "$1" true 2>/dev/null
}

chain_up() {
    local shop names=() parts
    chain_down
    rm -rf "$CHAIN"
    mkdir -p "$CHAIN/files"
    ssh-keygen -q -t ed25519 -N '' -f "$CHAIN/key"
    chain_make_database
    for shop in "${CHAIN_SHOPS[@]}"; do names+=("${shop%% *}"); done
    network_up "${names[@]}"
    for shop in "${CHAIN_SHOPS[@]}"; do
        read -ra parts <<<"$shop"
        chain_shop "${parts[@]}"
    done
    for shop in "${names[@]}"; do
        [ "$shop" != "$CHAIN_UNREACHABLE" ] || continue
        wait_until 30 chain_answers "$shop" || fail "the computer of $shop cannot be reached"
    done
}

chain_held() {
    python3 - "$CHAIN/$1/$2.json" <<'PYTHON'
import json, sys
for article in json.load(open(sys.argv[1], encoding="utf-8"))["articles"]:
    print(article["number"], article["price"], article["priceWrites"])
PYTHON
}

# All processes in namespaces of these names are this test's.
chain_down() {
    local namespace
    for namespace in "/run/netns/$NETWORK_PREFIX"-*; do
        [ -e "$namespace" ] || continue
        ip netns pids "${namespace##*/}" 2>/dev/null | xargs -r kill -9 2>/dev/null || true
    done
    network_down
}
