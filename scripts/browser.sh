# shellcheck shell=bash disable=SC1091
# Sourced: pages in a real browser, Chromium without a window, each time with a profile of its own.
#
#   browser_dom <file or URL>                                    prints the document after its scripts have run
#   browser_picture <file or URL> <PNG> <width> <height> [dark]  makes a picture of the page at that size
#   browser_print <file or URL> <PDF>                            prints the page
#
# TOLVANE_BROWSER names another program than chromium.

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

BROWSER=${TOLVANE_BROWSER:-chromium}

# browser_url <file or URL>
browser_url() {
    local path
    case $1 in
        http://* | https://* | file://* | data:*) printf '%s\n' "$1" ;;
        *)
            path=$(realpath -e -- "$1")
            path=${path//%/%25} path=${path// /%20} path=${path//#/%23}
            printf 'file://%s\n' "${path//\?/%3F}"
            ;;
    esac
}

# In a subshell: one run of the browser, which is ended when it hangs. Its complaints, of which it has many,
# are shown only when it fails. Timers of the page run three seconds ahead at once.
browser_run() (
    profile=$(mktemp -d)
    trap 'rm -rf "$profile"' EXIT
    options=(--headless --disable-gpu --disable-dev-shm-usage --disable-extensions --disable-background-networking
        --disable-component-update --disable-sync --no-first-run --no-default-browser-check --hide-scrollbars
        --force-device-scale-factor=1 --virtual-time-budget=3000 --user-data-dir="$profile/data")
    # Its sandbox refuses root.
    if have_root; then options+=(--no-sandbox); fi
    HOME=$profile timeout -k 5 90 "$BROWSER" "${options[@]}" "$@" 2>"$profile/complaints" </dev/null && exit 0
    status=$?
    tail -n 20 "$profile/complaints" >&2
    exit "$status"
)

browser_dom() {
    local url
    url=$(browser_url "$1")
    browser_run --dump-dom "$url"
}

browser_picture() {
    local url scheme=1
    url=$(browser_url "$1")
    rm -f "$2"
    # 0 is the dark one.
    if [ "${5:-}" = dark ]; then scheme=0; fi
    browser_run --window-size="$3,$4" --blink-settings=preferredColorScheme="$scheme" --screenshot="$2" "$url"
    [ -s "$2" ] || fail "the browser has made no picture of $1"
}

browser_print() {
    local url
    url=$(browser_url "$1")
    rm -f "$2"
    browser_run --no-pdf-header-footer --print-to-pdf="$2" "$url"
    [ -s "$2" ] || fail "the browser has not printed $1"
}
