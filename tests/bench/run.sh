#!/usr/bin/env bash
# Prints the figures of docs/performance.md: the programs under tests/bench, each with both sides of its
# ratios in one run, on this system and in Wine.
#
#   tests/bench/run.sh             builds them optimised first; takes about 14 minutes
#   tests/bench/run.sh --quick     each for seconds, as test.sh has built them: it shows that they still work
#   tests/bench/run.sh NAME...     only these, of BENCHES below
#
# bench_command, which takes 12 minutes for itself, runs only by name or with --quick.

# The benchmarks have a lane of their own.
export TOLVANE_LANE=${TOLVANE_LANE:-bench}
source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/lib.sh"
source "$SCRIPTS/test-steps.sh"
cd "$ROOT"

BENCHES=(list frame config ledger articles pascal workstations lines promotions memory exchange exchange-wine
    window run)

# bench <name of a program> <argument>...
bench() {
    local program
    program=$(find "$PROGRAMS/tests/bench" -name "$1" -type f | grep .)
    # Firebird's client library keeps some of its memory.
    "${INSIDE[@]}" env "TOLVANE_FB_SERVER=127.0.0.1/$(firebird_port)" "TOLVANE_FB_PASSWORD=$FIREBIRD_PASSWORD" \
        "TOLVANE_FB_DIR=$(dirname "$(test_shop_file)")" "TOLVANE_FB_SHOP=$(test_shop_file)" \
        ASAN_OPTIONS=detect_leaks=0 timeout --foreground 900 "$program" "${QUICK[@]}" "${@:2}"
}

# The same load in this system's process and in the 32-bit one.
bench_memory() {
    bench bench_memory
    wine_session
    INSIDE=(wine_command)
    bench bench_memory wine "$WINDOWS/tests/bench/articles/load_once.exe"
    INSIDE=()
}

bench_exchange_wine() {
    tests/bench/exchange/wine.sh "$WINDOWS" "$(find "$PROGRAMS/tests/bench" -name bench_exchange -type f)" "${QUICK[@]}"
}

# bench_one <name>
bench_one() {
    say "== $1"
    case $1 in
        articles) bench bench_articles "${SIZES[@]}" ;;
        memory) bench_memory ;;
        run) bench bench_run "${ONE_RUN[@]}" ;;
        exchange-wine) bench_exchange_wine ;;
        window) tests/bench/window/run.sh "${QUICK[@]}" ;;
        *) bench "bench_$1" ;;
    esac
}

INSIDE=() QUICK=() SIZES=(1000 10000 100000 1000000) ONE_RUN=(--ets) names=()
for argument in "$@"; do
    case $argument in
        --quick) QUICK=(--quick) SIZES=() ONE_RUN=() ;;
        -*) fail "usage: tests/bench/run.sh [--quick] [NAME]..." ;;
        *) names+=("$argument") ;;
    esac
done
WINDOWS=$BUILD/windows
PROGRAMS=$BUILD/native
if [ ${#QUICK[@]} -eq 0 ]; then
    PROGRAMS=$BUILD/release
    step "Packages" "$SCRIPTS/packages.sh" build wine firebird winelib bench
    step "Build for Linux" test_build release benchmarks
    step "Build for Windows" test_build windows benchmarks
else
    BENCHES+=(command)
fi
[ ${#names[@]} -gt 0 ] || names=("${BENCHES[@]}")

trap test_end_runtime EXIT
fbclient_build
test_runtime
wine_regional 1251 comma
test_shop_make
for name in "${names[@]}"; do
    bench_one "$name"
done
