# shellcheck shell=bash disable=SC1091
# Sourced by demo.sh: its steps. What they make lies under build/demo.

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

DEMO=$BUILD/demo
DEMO_HOST=$DEMO/TradeHost
DEMO_SCALE=$BUILD/native/simulator/virtual-scale
DEMO_COM=COM5
# name, model, label mode, capacity, scale number, type code and address in the configuration file,
# link
DEMO_SCALES=(
    "evl EVL 2 9999 1 16 5 serial"
    "ets ETS 0 9999 2 5000 0 udp"
    "s300 S300 1 9999 3 300 0 tcp"
)

# An address for UDP scales beside this computer's own; the shop's network has others.
DEMO_UDP_HOST=

# The scales, as above. Over UDP both sides have port 1001, so a scale needs an address of its own;
# where it has none it is on TCP.
demo_scales() {
    if network_is_up || [ -n "$DEMO_UDP_HOST" ]; then
        printf '%s\n' "${DEMO_SCALES[@]}"
    else
        printf '%s\n' "${DEMO_SCALES[@]/% udp/ tcp}"
    fi
}

# Why the shop has no network of its own; nothing when it has one.
demo_network_refusal() {
    if [ "${TOLVANE_INTERACTIVE:-}" = 1 ] && [[ $DISPLAY != :* ]]; then
        say "the display $DISPLAY cannot be reached from a network namespace"
        return 0
    fi
    network_refusal
}

# The Wine processes of an earlier run would keep their sockets outside of it.
demo_make_network() {
    demo_end_scales
    wine_stop
    network_up ets s300
}

demo_build_scale() {
    cmake --preset native -B "$BUILD/native"
    cmake --build "$BUILD/native" --target virtual-scale -- -j "$JOBS"
}

demo_build_windows() {
    cmake --preset windows -B "$BUILD/windows"
    cmake --build "$BUILD/windows" --target Tolvane TradeHost window-driver -- -j "$JOBS"
}

# Also removes what an earlier run has left of scales that take no part in this one.
demo_make_database() {
    demo_end_scales
    mkdir -p "$DEMO"
    rm -f "$DEMO"/*.json "$DEMO"/*.txt
    firebird_database "$DEMO/shop.fdb" demo/schema.sql demo/shop.sql
}

demo_udp_address() {
    if [ -n "$DEMO_UDP_HOST" ]; then say "$DEMO_UDP_HOST"; else network_address "$1"; fi
}

# demo_link <name> <link>: the scale's options for its link. On computers of their own they answer searches.
demo_link() {
    case $2 in
        serial) printf -- '--pty %s' "$DEMO/$1.port" ;;
        udp)
            printf -- '--host %s --udp 1001' "$(demo_udp_address "$1")"
            if network_is_up; then printf -- ' --discovery udp'; fi
            ;;
        tcp)
            if network_is_up; then
                printf -- '--host %s --tcp 1001 --discovery tcp' "$(network_address "$1")"
            else
                printf -- '--host 127.0.0.1 --tcp 0'
            fi
            ;;
    esac
}

# demo_beside <name> <link> <command>...: on a computer of the scale's own, where it has one.
demo_beside() {
    local name=$1 link=$2
    shift 2
    if [ "$link" != serial ] && network_is_up; then
        exec ip netns exec "$NETWORK_PREFIX-$name" "$@"
    else
        exec "$@"
    fi
}

demo_start_scales() {
    local name model mode capacity address link options
    while read -r name model mode capacity _ _ address link; do
        rm -f "$DEMO/$name".{ready,json,txt,port}
        read -ra options <<<"$(demo_link "$name" "$link")"
        if [ -e "$DEMO/$name.before" ]; then options+=(--load "$DEMO/$name.before"); fi
        demo_beside "$name" "$link" "${SCALE_PRIORITY[@]}" setsid "$DEMO_SCALE" --model "$model" --label-mode "$mode" \
            --capacity "$capacity" --address "$address" "${options[@]}" \
            --save "$DEMO/$name.json" --save-on-weighing --ready-file "$DEMO/$name.ready" \
            >"$DEMO/$name.out" 2>&1 </dev/null &
        printf '%s\n' "$!" >"$DEMO/$name.pid"
        wait_until 30 test -s "$DEMO/$name.ready" || fail "the scale $name does not get ready"
        say "$name: $(cat "$DEMO/$name.ready")"
    done < <(demo_scales)
}

# Ending a scale makes it save what it holds.
demo_end_scales() {
    local line name
    for line in "${DEMO_SCALES[@]}"; do
        name=${line%% *}
        end_process "$(cat "$DEMO/$name.pid" 2>/dev/null)" virtual-scale
        rm -f "$DEMO/$name.pid"
    done
}

demo_plug_in() {
    wine_com_port "$DEMO_COM" "$DEMO/evl.port"
    touch "$DEMO/plugged"
}

demo_unplug() {
    [ -e "$DEMO/plugged" ] || return 0
    wine_run reg delete 'HKLM\Software\Wine\Ports' /v "$DEMO_COM" /f
    rm -f "$DEMO/plugged"
}

# demo_connection <name> <link>: address, port and kind of link as the configuration file has them.
# The ready file's line of a TCP scale is "ready tcp ADDRESS:PORT".
demo_connection() {
    case $2 in
        # Without a port the module takes the section for an empty one.
        serial) say "$DEMO_COM" 1001 0 ;;
        udp) say "$(demo_udp_address "$1")" 1001 2 ;;
        tcp) say "$(sed -n 's/^.*tcp \([0-9.]*\):\([0-9]*\).*$/\1 \2/p' "$DEMO/$1.ready")" 1 ;;
    esac
}

demo_configuration() {
    local name model number type address link host port kind
    while read -r name model _ _ number type address link; do
        read -r host port kind <<<"$(demo_connection "$name" "$link")"
        printf '[SCALE%s]\r\nScaleNumb=%s\r\nScaleName=%s\r\nTCPAddress=%s\r\nTCPPort=%s\r\n' \
            "$number" "$number" "$model - щанд $number" "$host" "$port"
        printf 'Checked=1\r\nBaudRate=4\r\nScaleType=%s\r\nEncoding=2\r\nScaleAddr=%s\r\nCommType=%s\r\n' \
            "$type" "$address" "$kind"
    done < <(demo_scales)
}

demo_install_host() {
    rm -rf "$DEMO_HOST"
    mkdir -p "$DEMO_HOST/Operations"
    cp "$BUILD/windows/host/TradeHost.exe" "$DEMO_HOST/"
    cp "$BUILD/windows/src/entry/Tolvane.dll" "$DEMO_HOST/Operations/"
    fbclient_place "$DEMO_HOST"
    printf '[Database]\r\nDatabase=%s\r\nUser=%s\r\nPassword=%s\r\n' \
        "$(firebird_connection "$DEMO/shop.fdb")" "$FIREBIRD_USER" "$FIREBIRD_PASSWORD" \
        >"$DEMO_HOST/TradeHost.ini"
    demo_configuration | iconv -f UTF-8 -t CP1251 >"$DEMO_HOST/Operations/Tolvane.ini"
}

demo_drive() {
    wine_run "$BUILD/windows/demo/driver/window-driver.exe" "$@"
}

demo_shot_now() {
    [ "${TOLVANE_INTERACTIVE:-}" = 1 ] || screenshot "$DEMO/$1.png"
}

# A picture of the display when all is painted and it has come to rest: two in a row are the same.
demo_shot() {
    local file=$DEMO/$1.png try
    [ "${TOLVANE_INTERACTIVE:-}" != 1 ] || return 0
    demo_drive painted TTradeHostForm
    screenshot "$file"
    for try in 1 2 3 4 5 6 7 8 9 10; do
        screenshot "$file.next.png"
        if [ "$(convert "$file" rgba:- | cksum)" = "$(convert "$file.next.png" rgba:- | cksum)" ]; then
            break
        fi
        mv "$file.next.png" "$file"
    done
    rm -f "$file.next.png"
}

# The system shares a busy processor among sessions. In the step's own one the host would wait for all other tests,
# longer than it waits for a scale.
demo_open_list() {
    wine_session
    (wine_command setsid "${SCALE_PRIORITY[@]}" wine "$DEMO_HOST/TradeHost.exe" --start 1 \
        >"$DEMO/host.out" 2>&1 </dev/null &)
    demo_drive rows aDBGrid 300
    demo_drive place TTradeHostForm 20 20 1240 840
    demo_drive place TElicomPluScaleListForm 0 0 1210 760
    demo_shot list
}

demo_write_all() {
    demo_drive command TElicomPluScaleListForm 1002
    demo_drive window TSetPluForm
    demo_shot run-before
    demo_drive click SaveBtn
    # The picture shows how far the run has come, and the time left.
    demo_drive contains lblRunCount "още"
    demo_shot_now run-during
    # The picture was taken in the middle of the run.
    demo_drive contains lblStatus "Запис артикул"
    demo_drive --seconds 900 enabled SaveBtn
    demo_shot run-after
    demo_drive text StatusMemo >"$DEMO/run.log"
}

demo_close_host() {
    demo_drive close TSetPluForm
    demo_drive gone TSetPluForm
    demo_drive close TTradeHostForm
    demo_drive gone TTradeHostForm
}

demo_wait_for_host() {
    demo_drive --seconds 86400 gone TTradeHostForm
}

# "scale article hundredths" per line: what the database says that the scales must hold.
demo_expected() {
    local numbers
    numbers=$(demo_scales | cut -d' ' -f5 | paste -sd' ')
    firebird_isql -user "$FIREBIRD_USER" -password "$FIREBIRD_PASSWORD" -ch UTF8 \
        -i demo/expected.sql "$(firebird_connection "$DEMO/shop.fdb")" |
        awk -v numbers=" $numbers " 'NF == 3 && index(numbers, " " $1 " ") { print $1, $2, $3 }' | sort
}

# The same from the scales' saved state.
demo_held() {
    local name number
    while read -r name _ _ _ number _; do
        "$DEMO_SCALE" --show "$DEMO/$name.json" >"$DEMO/$name.txt"
        awk -v scale="$number" '$2 ~ /^[0-9]+\.[0-9][0-9]$/ {
            sub(/\./, "", $2); print scale, $1, $2 + 0 }' "$DEMO/$name.txt"
    done < <(demo_scales) | sort
}

# Each scale must have got its articles. A scale that should hold none is a mistake here.
demo_check_scales() {
    demo_expected >"$DEMO/expected.txt"
    demo_held >"$DEMO/held.txt"
    local name number
    while read -r name _ _ _ number _; do
        grep -q "^$number " "$DEMO/expected.txt" || fail "the database expects no articles in $name"
    done < <(demo_scales)
    diff -u "$DEMO/expected.txt" "$DEMO/held.txt" ||
        fail "the scales do not hold what the database says (- expected, + held)"
    say "$(wc -l <"$DEMO/held.txt") articles, as expected"
}

demo_report() {
    local name model link
    say ""
    say "The run's log ($DEMO/run.log):"
    sed 's/^/    /' "$DEMO/run.log" | tail -n 20
    while read -r name model _ _ _ _ _ link; do
        say ""
        say "What $name ($model, $link) holds, first lines ($DEMO/$name.txt, $DEMO/$name.json):"
        sed -n '1,12s/^/    /p' "$DEMO/$name.txt"
    done < <(demo_scales)
    say ""
    ls "$DEMO"/*.png 2>/dev/null | sed 's/^/Screenshot: /' || true
}

# Ends what this demo has started, however it ends.
demo_end() {
    local code=$?
    trap '' INT TERM
    # A half-done installation is worse than waiting.
    if [ -n "$BESIDE" ]; then
        say "Waiting for the packages to be installed."
        wait "$BESIDE" || true
    fi
    demo_end_scales || true
    demo_unplug >/dev/null 2>&1 || true
    wine_stop || true
    display_stop || true
    firebird_stop || true
    network_down || true
    exit "$code"
}
