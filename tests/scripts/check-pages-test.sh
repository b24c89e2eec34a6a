#!/usr/bin/env bash
# Plants faults for scripts/check-links.py, scripts/check-guide.py and scripts/check-excerpts.py.
# shellcheck disable=SC2016
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

# The pages are small ones of its own.
links_begin() {
    rm -rf "${tree:?}"/*
    mkdir -p "$tree/docs/images" "$tree/build"
    printf 'picture' >"$tree/docs/images/list.png"
    printf '# Top\n\n[there](docs/page.md#two-words-и-още) ![list](docs/images/list.png)\n' >"$tree/README.md"
    printf '# Page\n\n## Two `words` и още\n\n## Same\n\n## Same\n\n[back](../README.md#top), [second](#same-1)\n' >"$tree/docs/page.md"
    printf '[nowhere](nothing.md)\n' >"$tree/build/page.md"
}

expect_links() { # title, code, words of the output
    run "$root/scripts/check-links.py" "$tree"
    expect "$1" "$2 *$3*" "$code $out"
}

links_begin
expect_links "good links pass" 0 "4 links, 0 faults"
printf '\n[other](other.md)\n' >>"$tree/docs/page.md"
expect_links "a file that is not there is found" 1 "docs/page.md:11: there is no other.md"
links_begin
printf '\nSee [a link over\ntwo lines](#nothing).\n' >>"$tree/docs/page.md"
expect_links "so is a heading, and a link over two lines" 1 "docs/page.md:11: there is no heading for #nothing"
links_begin
sed -i 's/Two `words`/Three/' "$tree/docs/page.md"
expect_links "so is another page's heading" 1 "README.md:3: there is no heading for docs/page.md#two-words-и-още"
links_begin
printf '\n[out](../../other.md)\n' >>"$tree/docs/page.md"
expect_links "no link leaves the sources" 1 "docs/page.md:11: ../../other.md leads out"
links_begin
printf 'picture' >"$tree/docs/images/old.png"
expect_links "a picture that no page shows is found" 1 "docs/images/old.png:1: no page shows it"
links_begin

printf '\n    [code](other.md)\n\n`[code](other.md)`\n\n```\n[code](other.md)\n## No heading\n```\n' >>"$tree/docs/page.md"
expect_links "code holds no links" 0 "4 links"

# The guide and the sources are the real ones, with a fault planted.
guide_begin() {
    rm -rf "${tree:?}"/*
    mkdir -p "$tree/docs" "$tree/packaging/windows"
    cp "$root"/docs/user-guide*.md "$tree/docs"
    cp "$root/packaging/windows/Texts.nsh" "$tree/packaging/windows/"
    cp -r "$root/src" "$root/host" "$tree/"
}

expect_guide() { # title, code, words of the output
    run "$root/scripts/check-guide.py" "$tree"
    expect "$1" "$2 *$3*" "$code $out"
}

guide_begin
expect_guide "the guide has every text" 0 "0 missing"
sed -i 's/Connect timed out\.//' "$tree/docs/user-guide.en.md"
expect_guide "a text that one guide lacks is found" 1 "src/comm/TDevCommTCP.cpp:*: docs/user-guide.en.md: Connect timed out."
guide_begin
printf 'throw std::runtime_error("The cable is " + name + " too\\n"\n    " heavy.");\n' >>"$tree/src/comm/TDevCommTCP.cpp"
expect_guide "so is a new English text, of two joined literals" 1 "docs/user-guide.md: too heavy."
guide_begin
printf 'auto text = "Няма везна"_cp1251;\n' >>"$tree/src/upload/LogLines.cpp"
expect_guide "so is a new Bulgarian text" 1 "src/upload/LogLines.cpp:*: docs/user-guide.md: Няма везна"
guide_begin
printf '// "Няма везна" /* "no scale" */\n/* "no\nscale" */\n' >>"$tree/src/upload/LogLines.cpp"
expect_guide "a comment is no text" 0 "0 missing"
guide_begin
sed -i 's/Изчакайте края/Чакайте/' "$tree/docs/user-guide.md"
expect_guide "so is a message of the installer" 1 "packaging/windows/Texts.nsh:*: docs/user-guide.md: tolvane.exe"
guide_begin
printf 'constexpr TMenuLine kScale = {9, "Нова &везна...\\tCtrl+N"_cp1251};\n' >>"$tree/host/HostMenu.cpp"
expect_guide "so is a line of TradeHost's menu, without its marks" 1 "host/HostMenu.cpp:*: docs/user-guide.md: Нова везна..."
guide_begin
sed -i 's/Затваряне на всички/Затваряне/' "$tree/docs/user-guide.en.md"
expect_guide "a text of TradeHost's that one guide lacks is found" 1 \
    "host/HostMenu.cpp:*: docs/user-guide.en.md: Затваряне на всички"
guide_begin
rm -rf "$tree/src/upload" "$tree/src/comm" "$tree/src/articles" "$tree/src/settings"
expect_guide "few texts are a mistake of the check" 1 "texts were found"

# So are the example hosts and the page about hosts.
excerpts_begin() {
    rm -rf "${tree:?}"/*
    mkdir "$tree/docs"
    cp "$root/docs/host-interface.md" "$tree/docs"
    cp -r "$root/examples" "$tree/examples"
}

expect_excerpts() { # title, code, words of the output
    run "$root/scripts/check-excerpts.py" "$tree"
    expect "$1" "$2 *$3*" "$code $out"
}

excerpts_begin
expect_excerpts "the page shows what the hosts have" 0 "0 faults"
sed -i 's/"fbclient.dll"/"gds32.dll"/' "$tree/examples/c/host.c"
expect_excerpts "a line of C that has changed is found" 1 "docs/host-interface.md:*: examples/c/host.c has no such lines"
excerpts_begin
sed -i 's/TPrintProc = procedure(/&var /' "$tree/examples/pascal/Host.pas"
expect_excerpts "so is one of Pascal" 1 "docs/host-interface.md:*: examples/pascal/Host.pas has no such lines"
excerpts_begin
sed -i 's/^```pascal$/```text/' "$tree/docs/host-interface.md"
expect_excerpts "a language without any is a mistake" 1 "there is no block marked pascal"
expect_end
