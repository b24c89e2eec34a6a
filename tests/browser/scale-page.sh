#!/usr/bin/env bash
# The virtual scale's page in a real browser: hostile texts stay texts, the page follows the scale, and a real
# reader of barcodes reads what the labels in the picture say.
#
#   tests/browser/scale-page.sh <folder of a build> [--readme]    --readme makes the picture of simulator/README.md

# shellcheck disable=SC1091
source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/browser.sh"
cd "$ROOT"

WORK=$BUILD/browser/scale-page
SCALE_PROCESS= USER_PROCESS=
trap 'page_end' EXIT

page_end() {
    if [ -n "$USER_PROCESS" ]; then end_process "$USER_PROCESS" page-user.py; fi
    if [ -n "$SCALE_PROCESS" ]; then end_process "$SCALE_PROCESS" virtual-scale; fi
}

# page_start <state>: sets PAGE and PORT, the scale's.
page_start() {
    rm -f "$WORK/ready"
    "$program" --load "$1" --tcp 0 --http 0 --ready-file "$WORK/ready" >"$WORK/scale.log" 2>&1 &
    SCALE_PROCESS=$!
    wait_until 20 test -s "$WORK/ready" || fail "the virtual scale has not started: $(cat "$WORK/scale.log")"
    PAGE=http://$(sed -n 's/^ready http //p' "$WORK/ready")/
    PORT=$(sed -n 's/^ready tcp .*://p' "$WORK/ready")
}

# expect <what> <part>: the document holds it.
expect() {
    grep -qF -- "$2" "$WORK/dom.html" || fail "$1: the document has no $2; see $WORK/dom.html"
}

expect_not() {
    if grep -qF -- "$2" "$WORK/dom.html"; then fail "$1: the document has $2; see $WORK/dom.html"; fi
}

# expect_barcodes <picture> <digits>...: exactly these are read in it.
expect_barcodes() {
    local found
    found=$(zbarimg --nodbus --quiet --raw --set '*.enable=0' --set ean13.enable=1 "$1" | sort | paste -sd' ') || true
    [ "$found" = "${*:2}" ] || fail "in $1 the barcodes $found are read, and not ${*:2}"
}

# The colour of a corner of the picture: light or dark.
expect_ground() {
    local found
    found=$(convert "$1" -crop 4x4+1+1 -colorspace gray -format '%[fx:mean > 0.5 ? 1 : 0]' info:)
    [ "$found" = "$2" ] || fail "$1 is not $3"
}

# A request to the scale, in hexadecimal, and what it answers.
scale_ask() {
    python3 - "$PORT" "$1" <<'PYTHON'
import socket, sys
with socket.create_connection(("127.0.0.1", int(sys.argv[1])), 10) as scale:
    scale.sendall(bytes.fromhex(sys.argv[2]))
    scale.settimeout(10)
    print(scale.recv(100).hex(" ").upper())
PYTHON
}

# page_user <action>...: the page in a browser whose user does that, see page-user.py.
page_user() {
    rm -f "$WORK/user"
    tests/browser/page-user.py "$PAGE" "$WORK/user" "$@" &
    USER_PROCESS=$!
    wait_until 20 test -s "$WORK/user" || fail "page-user.py has not started"
    browser_dom "$(cat "$WORK/user")" >"$WORK/dom.html"
    end_process "$USER_PROCESS" page-user.py
    USER_PROCESS=
}

page_hostile() {
    page_start tests/browser/hostile.json
    browser_dom "$PAGE" >"$WORK/dom.html"
    expect "the table" '&lt;script&gt;document.title="owned"'
    expect "the title" '<title>Virtual scale ETS</title>'
    expect "the label" '<b>"&gt;&lt;img src=x onerror=alert(1)&gt;</b>'
    expect_not "no element of a text" '<img'
    expect "the sum" '<small>Сума</small>6.17'
    expect "the barcode" 'aria-label="Barcode 2022012005000"'
    expect "the script has asked the scale" '<main id="content" data-answers="'
    expect "the scale answers" '<p id="ended" role="status" hidden="">'
    browser_picture "$PAGE" "$WORK/phone.png" 390 3400
    browser_picture "$PAGE" "$WORK/phone-dark.png" 390 3400 dark
    browser_picture "$PAGE?grams=1234" "$WORK/wide.png" 1200 1400
    expect_ground "$WORK/phone.png" 1 light
    expect_ground "$WORK/phone-dark.png" 0 dark
    expect_barcodes "$WORK/phone.png" 2022012005000 2033333005006
    expect_barcodes "$WORK/phone-dark.png" 2022012005000 2033333005006
    expect_barcodes "$WORK/wide.png" 2022012012343 2033333012349
}

# An open page shows a request that comes.
page_follows() {
    page_user request "$PORT" 040D144A4A03
    expect "the mode" '<dd class="mode">programming</dd>'
    expect "the request" '<td data-title="Command">SetPrgMode</td>'
}

expect_answer() {
    local answer
    answer=$(scale_ask 040D144A4A03)
    [ "$answer" = "$2" ] || fail "$1: the scale has answered $answer"
}

# Its buttons switch faults, and so does the field for a fault with words of its own.
page_switches() {
    expect_answer "without a fault" "02 0D 14 4A 14 4A 03"
    page_user click fault-0
    expect "the button" 'id="fault-0" aria-pressed="true" class="on">error</button>'
    expect_answer "the fault is on" "02 0D 14 4A 15 4B 03"
    page_user click fault-0
    expect_not "the button" 'class="on"'
    expect_answer "the fault is off" "02 0D 14 4A 14 4A 03"
    python3 - "$PAGE" <<'PYTHON'
import sys, urllib.request
page = sys.argv[1]
request = urllib.request.Request(page + "faults", b"fault=error%2Ccode%3D7&on=1", {"Origin": page.rstrip("/")})
assert urllib.request.urlopen(request, timeout=10).status == 200
PYTHON
    expect_answer "the typed fault is on" "02 0D 14 4A 1B 51 03"
    browser_dom "$PAGE" >"$WORK/dom.html"
    expect "the fault" 'class="on">error,code=7</button>'
    expect "the refusal" '<td data-title="Reply">refused: 7</td>'
}

page_readme() {
    page_start tests/browser/shop.json
    scale_ask 040D145C5C03
    scale_ask 040D144A4A03
    browser_picture "$PAGE" "$WORK/readme.png" 900 1620
    convert "$WORK/readme.png" -strip +dither -colors 48 -define png:exclude-chunks=date,time docs/images/virtual-scale.png
    say docs/images/virtual-scale.png
}

program=${1:?usage: tests/browser/scale-page.sh <folder of a build> [--readme]}/simulator/virtual-scale
mkdir -p "$WORK"
if [ "${2:-}" = --readme ]; then
    page_readme
    exit 0
fi
page_hostile
page_follows
page_switches
say "The virtual scale's page is right in the browser."
