# Sourced by demo.sh: its steps. What they make lies under build/demo.

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

DEMO=$BUILD/demo
DEMO_HOST=$DEMO/TradeHost
DEMO_SCALE=$BUILD/release/simulator/virtual-scale
# name, model, label mode, capacity, scale number, type code in the configuration file
DEMO_SCALES=("evl EVL 2 9999 1 16" "ets ETS 0 9999 2 5000")

demo_build_scale() {
    cmake --preset release -B "$BUILD/release" -DBUILD_TESTING=OFF
    cmake --build "$BUILD/release" --target virtual-scale -- -j "$JOBS"
}

demo_build_windows() {
    cmake --preset windows -B "$BUILD/windows"
    cmake --build "$BUILD/windows" --target Tolvane TradeHost window-driver -- -j "$JOBS"
}

demo_make_database() {
    demo_end_scales
    mkdir -p "$DEMO"
    firebird_database "$DEMO/shop.fdb" demo/schema.sql demo/shop.sql
}

# The ready file's line is "tcp 127.0.0.1:PORT" behind the word "ready".
demo_scale_port() {
    sed -n '/^.*tcp [0-9.]*:\([0-9]*\).*$/{s//\1/p;q}' "$DEMO/$1.ready"
}

demo_start_scales() {
    local line name model mode capacity
    for line in "${DEMO_SCALES[@]}"; do
        read -r name model mode capacity _ <<<"$line"
        rm -f "$DEMO/$name".{ready,json,txt}
        setsid "$DEMO_SCALE" --model "$model" --label-mode "$mode" --capacity "$capacity" \
            --host 127.0.0.1 --port 0 --save "$DEMO/$name.json" --save-on-weighing \
            --ready-file "$DEMO/$name.ready" >"$DEMO/$name.out" 2>&1 </dev/null &
        printf '%s\n' "$!" >"$DEMO/$name.pid"
        wait_until 30 test -s "$DEMO/$name.ready" || fail "the scale $name does not get ready"
        say "$name: port $(demo_scale_port "$name")"
    done
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

demo_install_host() {
    local line name model number type
    rm -rf "$DEMO_HOST"
    mkdir -p "$DEMO_HOST/Operations"
    cp "$BUILD/windows/host/TradeHost.exe" "$DEMO_HOST/"
    cp "$BUILD/windows/src/entry/Tolvane.dll" "$DEMO_HOST/Operations/"
    fbclient_place "$DEMO_HOST"
    printf '[Database]\r\nDatabase=%s\r\nUser=%s\r\nPassword=%s\r\n' \
        "$(firebird_connection "$DEMO/shop.fdb")" "$FIREBIRD_USER" "$FIREBIRD_PASSWORD" \
        >"$DEMO_HOST/TradeHost.ini"
    for line in "${DEMO_SCALES[@]}"; do
        read -r name model _ _ number type <<<"$line"
        printf '[SCALE%s]\r\nScaleNumb=%s\r\nScaleName=%s\r\nTCPAddress=127.0.0.1\r\nTCPPort=%s\r\n' \
            "$number" "$number" "$model - щанд $number" "$(demo_scale_port "$name")"
        printf 'Checked=1\r\nBaudRate=0\r\nScaleType=%s\r\nEncoding=2\r\nScaleAddr=0\r\nCommType=1\r\n' \
            "$type"
    done | iconv -f UTF-8 -t CP1251 >"$DEMO_HOST/Operations/Tolvane.ini"
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

demo_open_list() {
    (wine_run "$DEMO_HOST/TradeHost.exe" --start 1 >"$DEMO/host.out" 2>&1 </dev/null &)
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
    demo_drive contains lblStatus "Запис артикул"
    demo_shot_now run-during
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
    firebird_isql -user "$FIREBIRD_USER" -password "$FIREBIRD_PASSWORD" -ch UTF8 \
        -i demo/expected.sql "$(firebird_connection "$DEMO/shop.fdb")" |
        sed 's/^ *//; s/ *$//; /^$/d' | sort
}

# The same from the scales' saved state.
demo_held() {
    local line name number
    for line in "${DEMO_SCALES[@]}"; do
        read -r name _ _ _ number _ <<<"$line"
        "$DEMO_SCALE" --show "$DEMO/$name.json" >"$DEMO/$name.txt"
        awk -v scale="$number" '$2 ~ /^[0-9]+\.[0-9][0-9]$/ {
            sub(/\./, "", $2); print scale, $1, $2 + 0 }' "$DEMO/$name.txt"
    done | sort
}

demo_check_scales() {
    demo_expected >"$DEMO/expected.txt"
    demo_held >"$DEMO/held.txt"
    [ -s "$DEMO/expected.txt" ] || fail "the database expects no articles"
    diff -u "$DEMO/expected.txt" "$DEMO/held.txt" ||
        fail "the scales do not hold what the database says (- expected, + held)"
    say "$(wc -l <"$DEMO/held.txt") articles, as expected"
}

demo_report() {
    local line name
    say ""
    say "The run's log ($DEMO/run.log):"
    sed 's/^/    /' "$DEMO/run.log" | tail -n 20
    for line in "${DEMO_SCALES[@]}"; do
        name=${line%% *}
        say ""
        say "What $name holds, first lines ($DEMO/$name.txt, $DEMO/$name.json):"
        sed -n '1,12s/^/    /p' "$DEMO/$name.txt"
    done
    say ""
    ls "$DEMO"/*.png 2>/dev/null | sed 's/^/Screenshot: /' || true
}

# Ends what this demo has started, however it ends.
demo_end() {
    local code=$?
    demo_end_scales || true
    wine_stop || true
    display_stop || true
    firebird_stop || true
    exit "$code"
}
