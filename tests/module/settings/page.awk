# docs/settings-windows.md as a page of sections, each with its tables beside its pictures.
#
#   awk -v dots=<dots per inch> -f page.awk settings-windows.md >settings.html

function text(line) {
    gsub(/&/, "\\&amp;", line)
    gsub(/</, "\\&lt;", line)
    gsub(/>/, "\\&gt;", line)
    gsub(/&lt;br&gt;/, "<br>", line)
    while (match(line, /`[^`]*`/))
        line = substr(line, 1, RSTART - 1) "<code>" substr(line, RSTART + 1, RLENGTH - 2) \
            "</code>" substr(line, RSTART + RLENGTH)
    return line
}

function end_block() {
    if (block != "") print "</" block ">"
    block = ""
}

function begin_block(name) {
    if (block == name) return
    end_block()
    print "<" name ">"
    block = name
}

function row(line, cells, count, i, tag) {
    tag = block == "table" ? "td" : "th"
    begin_block("table")
    sub(/^\| */, "", line)
    sub(/ *\|$/, "", line)
    count = split(line, cells, / *\| */)
    printf "<tr>"
    for (i = 1; i <= count; ++i)
        printf "<%s>%s</%s>", tag, text(cells[i]), tag
    print "</tr>"
}

function picture(line, name) {
    match(line, /`[^`]*`/)
    name = substr(line, RSTART + 1, RLENGTH - 2)
    end_block()
    printf "<figure><img src=\"settings-%s-%s.png\" alt=\"%s\"><figcaption>%s</figcaption></figure>\n",
        name, dots, name, text(substr(line, 3))
}

function end_section() {
    end_block()
    if (section) print "</div></section>"
}

BEGIN {
    print "<!doctype html><html lang=\"bg\"><head><meta charset=\"utf-8\"><title>Settings windows</title>"
    print "<style>section{display:flex;gap:2em;align-items:flex-start}section>div{flex:1}"
    print "table{border-collapse:collapse}td,th{border:1px solid #999;padding:2px 6px;text-align:left;"
    print "vertical-align:top;white-space:pre-wrap}figure{margin:0 0 1em}body{font-family:sans-serif}"
    print "</style></head><body>"
}
/^# / { print "<h1>" text(substr($0, 3)) "</h1>"; next }
/^## / {
    end_section()
    print "<h2>" text(substr($0, 4)) "</h2><section><div>"
    section = 1
    next
}
/^\|[-|]*$/ { next }
/^\|/ { row($0); next }
/^- / {
    if (section == 1) { end_block(); print "</div><div>"; section = 2 }
    picture($0)
    next
}
/^$/ { end_block(); next }
{ begin_block("p"); print text($0) }
END { end_section(); print "</body></html>" }
