#!/usr/bin/env bash
# Starts displays as the lanes of a test run and the demo do, one of them in a network namespace, and
# looks whether each serves its own clients to the end.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
export TOLVANE_BUILD=$tree/build
# The user's own display and prefix take no part.
unset DISPLAY TOLVANE_INTERACTIVE TOLVANE_WINE

# in_lane <lane> <command>...: a command of scripts/wine.sh.
in_lane() {
    TOLVANE_LANE=$1 bash -c 'source "$0"; "$@"' "$root/scripts/wine.sh" "${@:2}"
}

in_namespace() {
    unshare -n env TOLVANE_LANE="$1" bash -c 'source "$0"; "$@"' "$root/scripts/wine.sh" "${@:2}"
}

stop() {
    local lane
    for lane in a b shop; do in_lane "$lane" display_stop; done
    rm -rf "$tree"
}
trap stop EXIT

picture_of() { # lane
    if in_lane "$1" screenshot "$tree/$1.png" && [ -s "$tree/$1.png" ]; then
        printf 'a picture'
    else
        printf 'none'
    fi
    rm -f "$tree/$1.png"
}

numbers() {
    cat "$tree"/build/display-*/number | sort -u | wc -l
}

in_lane a display_start &
in_lane b display_start
wait "$!"
expect "two displays that start at once have two numbers" 2 "$(numbers)"
if unshare -n true 2>/dev/null; then
    in_namespace shop display_start
    expect "one in a network namespace has another number" 3 "$(numbers)"
    in_namespace shop display_stop
else
    printf 'not looked at, as it needs root: a display in a network namespace\n'
fi
# Each picture is a client that comes and goes. A display without its socket file refuses a later one.
for round in 1 2 3; do
    expect "a display serves its clients when another has gone, client $round" "a picture" "$(picture_of a)"
done
in_lane a display_stop
expect "a display that was stopped serves nobody" none "$(picture_of a 2>/dev/null)"
expect "another goes on" "a picture" "$(picture_of b)"
expect_end
