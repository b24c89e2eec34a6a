# shellcheck shell=bash disable=SC1091,SC2034
# Sourced by demo.sh --headless: the main job without Wine, without a server and without a window. What
# it makes lies under build/headless. TOLVANE_DEMO_PROGRAMS names a folder with the programs as they are
# already built: then nothing is installed or built.

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
source "$SCRIPTS/firebird.sh"
source "$SCRIPTS/demo-steps.sh"

DEMO=$BUILD/headless
DEMO_BUILD=${TOLVANE_DEMO_PROGRAMS:-$BUILD/headless-build}
# Not that of a server that may run.
FIREBIRD_FOLDER=$BUILD/headless-engine
DEMO_SCALE=$DEMO_BUILD/simulator/virtual-scale
DEMO_UDP_HOST=127.0.0.2
SCALE_PRIORITY=()
TOLVANE=$DEMO_BUILD/src/command/tolvane
# The articles of the price change: number in the scales, price in hundredths, and the scales that get it.
HEADLESS_ARTICLE=1
HEADLESS_PRICE=777
HEADLESS_SCALES="1"

# The engine in the process takes a file where a server takes a connection.
firebird_connection() {
    realpath -m "$1"
}

# All is on one computer.
network_is_up() {
    false
}

# UDP scales have port 1001, which only a network of one's own gives to everybody. Prints why there is
# none; nothing when there is one.
headless_network_refusal() {
    local reason
    reason=$(headless_unshare true 2>&1) || say "no network namespace: $(tail -n 1 <<<"$reason")"
}

# headless_unshare <command>...: runs it in a network of its own, which needs no root rights.
headless_unshare() {
    local user=()
    have_root || user=(--user --map-root-user)
    unshare "${user[@]}" --net sh -c 'ip link set lo up && exec "$@"' sh "$@"
}

headless_build() {
    cmake --preset release -B "$DEMO_BUILD" -DBUILD_TESTING=OFF
    cmake --build "$DEMO_BUILD" --target tolvane virtual-scale -- -j "$JOBS"
}

headless_make_database() {
    demo_end_scales
    rm -rf "$DEMO"
    mkdir -p "$DEMO"
    firebird_make_folder
    firebird_write_settings 0
    firebird_database "$DEMO/shop.fdb" demo/schema.sql demo/shop.sql
}

headless_configure() {
    demo_configuration | iconv -f UTF-8 -t CP1251 >"$DEMO/Tolvane.ini"
    cat >"$DEMO/tolvane.conf" <<SETTINGS
[tolvane]
ini = $DEMO/Tolvane.ini
database = $DEMO/shop.fdb
state = $DEMO/state
serial = $DEMO_COM=$DEMO/evl.port
udp-local-port = 0
SETTINGS
}

# tolvane_demo <exit code that is right> <word>...
tolvane_demo() {
    local right=$1 code=0
    shift
    say ""
    say "\$ tolvane $*"
    "$TOLVANE" "$@" --config "$DEMO/tolvane.conf" >"$DEMO/$1.out" || code=$?
    head -n 25 "$DEMO/$1.out"
    [ "$code" -eq "$right" ] || fail "tolvane $1 ended with $code and not with $right"
}

# Some articles of the demo shop are wrong on purpose.
headless_check() {
    tolvane_demo 6 check
}

headless_write() {
    tolvane_demo 0 write
}

headless_change_price() {
    firebird_isql -user "$FIREBIRD_USER" "$DEMO/shop.fdb" <<SQL
update PLUES set PLU_SELL_PRICE = $HEADLESS_PRICE / 100.00, PLU_SELLCURR_ID = 1
    where PLU_SCALE_NUMB = $HEADLESS_ARTICLE;
commit;
SQL
}

# Exactly that article goes to exactly the scales that it is meant for.
headless_write_changed() {
    tolvane_demo 0 write --changed --log "$DEMO/changed.log"
    sed -n 's/.*"event":"written","scale":\([0-9]*\),"number":\([0-9]*\).*/\1 \2/p' "$DEMO/changed.log" |
        sort >"$DEMO/sent.txt"
    printf "%s $HEADLESS_ARTICLE\n" $HEADLESS_SCALES | diff -u - "$DEMO/sent.txt" ||
        fail "write --changed has not sent exactly the changed article (- expected, + sent)"
}

headless_status() {
    tolvane_demo 0 status
}

headless_report() {
    local name model link
    while read -r name model _ _ _ _ _ link; do
        say ""
        say "What $name ($model, $link) holds, first lines ($DEMO/$name.txt, $DEMO/$name.json):"
        sed -n '1,6s/^/    /p' "$DEMO/$name.txt"
    done < <(demo_scales)
}

headless_end() {
    local code=$?
    trap '' INT TERM
    demo_end_scales || true
    exit "$code"
}

headless_demo() {
    local refusal
    trap headless_end EXIT
    trap 'exit 130' INT TERM
    if [ "${TOLVANE_DEMO_INSIDE:-}" != 1 ]; then
        if [ -z "${TOLVANE_DEMO_PROGRAMS:-}" ]; then
            step "Packages" "$SCRIPTS/packages.sh" headless
            step "Build the command and the virtual scale" headless_build
        fi
        refusal=$(headless_network_refusal)
        if [ -z "$refusal" ]; then
            trap - EXIT INT TERM
            headless_unshare env TOLVANE_DEMO_INSIDE=1 TOLVANE_BUILD="$BUILD" "$ROOT/demo.sh" --headless
            return
        fi
        say "UDP is left out, the ETS is on TCP: $refusal."
        DEMO_UDP_HOST=
    fi
    step "Make the demo shop's database" headless_make_database
    step "Start the virtual scales" demo_start_scales
    step "Write the configuration" headless_configure
    headless_check
    headless_write
    step "Change a price" headless_change_price
    headless_write_changed
    headless_status
    say ""
    step "End the virtual scales" demo_end_scales
    step "Check what the scales hold" demo_check_scales
    headless_report
    say ""
    say "Try it yourself: $TOLVANE status --config $DEMO/tolvane.conf"
}
