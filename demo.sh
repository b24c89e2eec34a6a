#!/usr/bin/env bash
# Shows the main job on this machine: does all the set-up, makes a demo shop's database, starts three
# virtual scales (one on a serial line, one on UDP, one on TCP), opens the module in TradeHost.exe,
# writes the articles into the scales, and shows the run's log and what the scales hold. Can be
# repeated. Results lie under build/demo.
#
#   ./demo.sh                 on a display of its own, ends by itself
#   ./demo.sh --interactive   on the user's display; the windows stay open until TradeHost is closed
#   ./demo.sh --headless      the same job by the command tolvane: without Wine, a server and windows
#
# As root it gives the scales addresses of their own in network namespaces, and runs the shop there;
# otherwise UDP is left out and that scale is on TCP as well.

source "$(dirname "${BASH_SOURCE[0]}")/scripts/lib.sh"
source "$SCRIPTS/wine.sh"
source "$SCRIPTS/fbclient.sh"
source "$SCRIPTS/firebird.sh"
source "$SCRIPTS/network.sh"
source "$SCRIPTS/demo-steps.sh"
cd "$ROOT"

interactive=no
case ${1:-} in
    "") ;;
    --interactive) interactive=yes ;;
    --headless)
        source "$SCRIPTS/headless-steps.sh"
        headless_demo
        exit
        ;;
    *) fail "usage: ./demo.sh [--interactive | --headless]" ;;
esac
if [ "$interactive" = yes ]; then
    [ -n "${DISPLAY:-}" ] || fail "--interactive needs a display: the variable DISPLAY is not set"
    export TOLVANE_INTERACTIVE=1
fi

trap demo_end EXIT
trap 'exit 130' INT TERM

# The script starts itself once more inside the shop's network.
if [ "${TOLVANE_DEMO_INSIDE:-}" != 1 ]; then
    if have_root; then
        # The compilers come first: the rest is installed while they work.
        step "Packages to build with" env TOLVANE_I386_SOON=1 "$SCRIPTS/packages.sh" build
        step_begin "Packages to run with" "$SCRIPTS/packages.sh" wine firebird winelib shop
    else
        step "Packages" "$SCRIPTS/packages.sh" build wine firebird winelib
    fi
    step "Build the virtual scale" demo_build_scale
    step "Build the module and the host" demo_build_windows
    if have_root; then step_await; fi
    step "Build the client library for Wine" fbclient_build
    network_down
    refusal=$(demo_network_refusal)
    if [ -z "$refusal" ]; then
        step "Make the shop's network" demo_make_network
        network_enter env TOLVANE_DEMO_INSIDE=1 TOLVANE_BUILD="$BUILD" "$ROOT/demo.sh" "$@"
    fi
    say "UDP is left out, the ETS is on TCP: $refusal."
fi

step "Make the Wine prefix" wine_prefix_make
step "Set Bulgarian formats" wine_regional 1251 comma
[ "$interactive" = yes ] || step "Start a display" display_start
step "Start a Firebird server" firebird_start
step "Make the demo shop's database" demo_make_database
step "Start the virtual scales" demo_start_scales
step "Plug a scale into $DEMO_COM" demo_plug_in
step "Put the host and the module together" demo_install_host
step "Open the article list" demo_open_list
step "Write all articles into the scales" demo_write_all
if [ "$interactive" = yes ]; then
    say "The windows stay open; close TradeHost to end."
    step "Wait for TradeHost to close" demo_wait_for_host
else
    step "Close the host" demo_close_host
fi
step "End the virtual scales" demo_end_scales
step "Check what the scales hold" demo_check_scales
demo_report
