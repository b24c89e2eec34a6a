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

# browser_color <picture> <x> <y>: of one pixel, as "rgb(r,g,b)".
browser_color() {
    convert "$1" -alpha off -depth 8 -format "%[pixel:u.p{$2,$3}]" info:
}
for page in report check; do
    browser_picture "$pages/$page.html" "$pictures/$page-light.png" 1000 700
    browser_picture "$pages/$page.html" "$pictures/$page-dark.png" 1000 700 dark
    browser_picture "$pages/$page.html" "$pictures/$page-phone.png" 400 900
    browser_print "$pages/$page.html" "$pictures/$page.pdf"
    expect "$page.html is one sheet of paper" 1 "$(grep -ac '/Type /Page$' "$pictures/$page.pdf")"
    expect "$page.html is white in light" "srgb(255,255,255)" "$(browser_color "$pictures/$page-light.png" 5 5)"
    expect "$page.html is dark in dark" "srgb(21,24,28)" "$(browser_color "$pictures/$page-dark.png" 5 5)"
done
expect_end
