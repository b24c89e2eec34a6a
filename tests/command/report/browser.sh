#!/usr/bin/env bash
# The pages that --report has written in the examples of docs/command.md, in a real browser: what it shows of
# them, light and dark, and how it prints them. The pictures go into a folder, build/screenshots without another name.
#
#   tests/command/report/browser.sh [FOLDER]

# shellcheck disable=SC1091,SC2154
source "$(dirname "${BASH_SOURCE[0]}")/../../../scripts/browser.sh"
source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/lib.sh"

pages=$BUILD/examples
pictures=${1:-$BUILD/screenshots}
mkdir -p "$pictures"
[ -s "$pages/report.html" ] && [ -s "$pages/check.html" ] || "$ROOT/tests/command/examples/run.sh"

# The document as the browser has understood it.
dom=$(browser_dom "$pages/report.html")
expect "the page has its title" "*<title>Articles written into scales</title>*" "$dom"
expect "the page says how it ended" "*<div class=\"verdict good\">*Done*" "$dom"
expect "the page says it in short" "*<p>1 of 1 scale done, 3 unchanged.</p>*" "$dom"
expect "a name is shown as it is" "*<td class=\"name\">ETS - щанд 2</td><td>UDP 127.0.0.2</td>*" "$dom"
expect "the picture is understood" "*<svg viewBox=\"0 0 100 10\"*<rect width=\"100.0\" height=\"10\"></rect></svg>*" "$dom"
expect "nothing was sent" "*<h2>Articles that were sent</h2>*<p>None.</p>*" "$dom"
dom=$(browser_dom "$pages/check.html")
expect "a problem has its row" "*<td class=\"warn\">warning</td>*<td class=\"name\">Домати</td>*" "$dom"

# A run in which little goes well: a scale that refuses an article, one that takes its time, one that is not there.
trouble=$BUILD/report
SCALES=()
trouble_end() {
    local process
    for process in "${SCALES[@]}"; do end_process "$process" virtual-scale; done
    rm -rf "$tree"
}
# trouble_scale <number> <name> [option]...
trouble_scale() {
    rm -f "$trouble/ready"
    "$BUILD/native/simulator/virtual-scale" --model S300 --tcp 0 --ready-file "$trouble/ready" "${@:3}" >"$trouble/scale-$1.log" &
    SCALES+=($!)
    wait_until 20 test -s "$trouble/ready" || fail "scale $1 has not started: $(cat "$trouble/scale-$1.log")"
    trouble_list "$1" "$2" "$(sed -n 's/^ready tcp .*://p' "$trouble/ready")"
}
# trouble_list <number> <name> <port>: the scale's section.
trouble_list() {
    printf '%s\r\n' "[SCALE$1]" "ScaleNumb=$1" "ScaleName=$2" TCPAddress=127.0.0.1 "TCPPort=$3" Checked=1 BaudRate=4 \
        ScaleType=300 Encoding=2 ScaleAddr=0 CommType=1 | iconv -t CP1251 >>"$trouble/Tolvane.ini"
}
trouble_run() {
    local code=0
    trap trouble_end EXIT
    rm -rf "$trouble"
    mkdir -p "$trouble"
    trouble_scale 1 "Месо" --fault error,command=SetParam,request=1,code=8
    trouble_scale 2 "Сирена" --fault slow,ms=60
    trouble_list 3 "Склад" 1
    FIREBIRD_LOCK=$trouble "$BUILD/native/src/command/tolvane" write --no-progress --ini "$trouble/Tolvane.ini" \
        --database "$pages/shop.fdb" --state "$trouble/state" --report "$pages/trouble.html" >"$trouble/run.log" 2>&1 || code=$?
    expect "the run ends as one in which some scales failed" 3 "$code"
}
trouble_run
dom=$(browser_dom "$pages/trouble.html")
expect "the page says what went wrong" "*<div class=\"verdict bad\">*<p>1 of 3 scales done, 4 written, 1 refused, 1 pending.</p>*" "$dom"
expect "an article was sent where it belongs" "*<td class=\"name\">Ябълки</td><td>2</td>*" "$dom"
expect "the refused one is not told as sent there" "*<td class=\"name\">Круши</td><td>2</td>*" "$dom"
expect "it says why" "*<td class=\"name\">Круши</td><td class=\"bad\">refused</td><td>*Scale return Error code: 8</td>*" "$dom"
expect "a scale was not reached" "*<td class=\"name\">Склад</td><td>TCP 127.0.0.1:1</td><td class=\"bad\">not reached</td>*" "$dom"
# The slow one takes longest.
mapfile -t widths < <(grep -oP '(?<=<rect width=")[0-9.]+' <<<"$dom")
expect "each scale has its bar" 3 "${#widths[@]}"
expect "the bars are as long as the times" "yes" \
    "$(awk -v a="${widths[0]}" -v b="${widths[1]}" -v c="${widths[2]}" 'BEGIN { print (c < a && a < b && b == 100) ? "yes" : "no" }')"

# browser_color <picture> <x> <y>: of one pixel, as "rgb(r,g,b)".
browser_color() {
    convert "$1" -alpha off -depth 8 -format "%[pixel:u.p{$2,$3}]" info:
}
for page in report check trouble; do
    browser_picture "$pages/$page.html" "$pictures/$page-light.png" 1000 1300
    browser_picture "$pages/$page.html" "$pictures/$page-dark.png" 1000 1300 dark
    browser_picture "$pages/$page.html" "$pictures/$page-phone.png" 400 900
    browser_print "$pages/$page.html" "$pictures/$page.pdf"
    if [ "$page" = trouble ]; then sheets=2; else sheets=1; fi
    expect "$page.html takes its sheets of paper" "$sheets" "$(grep -ac '/Type /Page$' "$pictures/$page.pdf")"
    expect "$page.html is white in light" "srgb(255,255,255)" "$(browser_color "$pictures/$page-light.png" 5 5)"
    expect "$page.html is dark in dark" "srgb(21,24,28)" "$(browser_color "$pictures/$page-dark.png" 5 5)"
done
expect_end
