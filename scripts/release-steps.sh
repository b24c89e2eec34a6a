# shellcheck shell=bash disable=SC1091
# Sourced by release.sh and its tests: the steps of a release. What they make lies in build/release-VERSION,
# what they need meanwhile in build/release-work.

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

# The one place of the version is CMakeLists.txt; the day of the release stands in CHANGELOG.md.
RELEASE_VERSION=$(sed -nE 's/^project\(Tolvane VERSION ([0-9.]+) .*$/\1/p' "$ROOT/CMakeLists.txt")
RELEASE_DAY=$(sed -nE "s/^## ${RELEASE_VERSION//./\\.} - ([0-9]{4}-[0-9]{2}-[0-9]{2})\$/\1/p" "$ROOT/CHANGELOG.md")
[ -n "$RELEASE_DAY" ] || fail "CHANGELOG.md has no part \"## $RELEASE_VERSION - YYYY-MM-DD\""
RELEASE=$BUILD/release-$RELEASE_VERSION
RELEASE_WORK=$BUILD/release-work
RELEASE_WINDOWS=$BUILD/release-windows
RELEASE_LINUX=$BUILD/release-linux
RELEASE_ZIP=tolvane-$RELEASE_VERSION-win32
RELEASE_SETUP=tolvane-$RELEASE_VERSION-setup.exe

# Who answers for what is given away. A name under "example" belongs to nobody, so this address reaches nobody; how
# whoever gives a release away names himself stands in CONTRIBUTING.md.
RELEASE_NOBODY="The Tolvane authors <nobody@tolvane.example>"
RELEASE_MAINTAINER=${TOLVANE_MAINTAINER:-$RELEASE_NOBODY}
RELEASE_NAME_AND_ADDRESS='^[^"$\`<>,]+ <[^@<> ]+@[^@<> ]+>$'
[[ $RELEASE_MAINTAINER =~ $RELEASE_NAME_AND_ADDRESS ]] ||
    fail "TOLVANE_MAINTAINER has to be \"Name <address>\", not \"$RELEASE_MAINTAINER\""

# Nothing of what is made depends on the place, the time, the language or the rights of whoever makes it.
export LC_ALL=C.UTF-8 TZ=UTC SOURCE_DATE_EPOCH
SOURCE_DATE_EPOCH=$(date -u -d "$RELEASE_DAY" +%s)
umask 022

# release_build windows|linux <target>...
release_build() {
    local system=$1
    shift
    cmake --preset "release-$system" -B "$BUILD/release-$system"
    cmake --build "$BUILD/release-$system" --target "$@" -- -j "$JOBS"
}

release_windows_programs() {
    printf '%s\n' "$RELEASE_WINDOWS/src/entry/Tolvane.dll" "$RELEASE_WINDOWS/host/TradeHost.exe" \
        "$RELEASE_WINDOWS/src/command/tolvane.exe" "$RELEASE_WINDOWS/simulator/virtual-scale.exe"
}

release_linux_programs() {
    printf '%s\n' "$RELEASE_LINUX/src/command/tolvane" "$RELEASE_LINUX/simulator/virtual-scale"
}

# release_check_files <folder of the build>: those that come in.
release_check_files() {
    local program
    while read -r program; do
        "$SCRIPTS/check-binary.sh" "$1" "${program#"$1/"}"
    done
}

# Each is as the check of built files wants it, and has the version.
release_check_programs() {
    local program
    release_windows_programs | release_check_files "$RELEASE_WINDOWS"
    release_linux_programs | release_check_files "$RELEASE_LINUX"
    while read -r program; do
        [ "$("$program" --version)" = "$(basename "$program") $RELEASE_VERSION" ] || fail "$program has another version"
    done < <(release_linux_programs)
    "$SCRIPTS/third-party.sh" --check "$RELEASE_WINDOWS" "$RELEASE_LINUX"
}

# A text for Windows' own editor: CRLF, and marked as UTF-8.
release_text() {
    printf '\xef\xbb\xbf' >"$2"
    sed -e "s/@VERSION@/$RELEASE_VERSION/g" -e 's|(\.\./LICENSE)|(../LICENSE.txt)|' -e 's/\r$//' -e 's/$/\r/' "$1" >>"$2"
}

# release_same_times <folder>: all of it has the release's day.
release_same_times() {
    find "$1" -exec touch -h -d "@$SOURCE_DATE_EPOCH" {} +
}

release_make_guide() {
    "$SCRIPTS/guide.sh" "$RELEASE_WORK/guide"
    release_check_fonts
}

# The fonts that the PDF files hold are of the package that docs/third-party.md names.
release_check_fonts() {
    local fonts
    fonts=$(grep -haoE '/BaseFont */[^ /<>]*' "$RELEASE_WORK"/guide/*.pdf | sed 's|.*[/+]||' | sort -u)
    [ -n "$fonts" ] || fail "no PDF of the guide names a font"
    ! grep -v '^DejaVu-Sans' <<<"$fonts" || fail "docs/third-party.md does not name these fonts of the guide"
}

# The sources of the example hosts, and the page about them with its links to the guide beside them.
release_stage_examples() {
    cp -r --parents examples/c/host.c examples/pascal/Host.pas "$1"
    sed -e 's|docs/host-interface\.md|guide/host-interface.html|g' examples/README.md >"$RELEASE_WORK/examples.md"
    release_text "$RELEASE_WORK/examples.md" "$1/examples/README.md"
    cp src/entry/HostInterface.h "$1/examples/"
}

# What the zip and the installer contain. The guide is made before.
release_stage_windows() {
    local stage=$RELEASE_WORK/$RELEASE_ZIP page package
    rm -rf "$stage"
    mkdir -p "$stage"/{Operations,examples,licences,tools}
    cp "$RELEASE_WINDOWS/src/entry/Tolvane.dll" "$stage/Operations/"
    cp "$RELEASE_WINDOWS/host/TradeHost.exe" "$RELEASE_WINDOWS/src/command/tolvane.exe" \
        "$RELEASE_WINDOWS/simulator/virtual-scale.exe" "$stage/"
    cp -r --parents demo/schema.sql demo/shop.sql "$stage"
    release_text packaging/windows/README.txt "$stage/README.txt"
    release_text LICENSE "$stage/LICENSE.txt"
    release_text CHANGELOG.md "$stage/CHANGELOG.md"
    cp -r "$RELEASE_WORK/guide" "$stage/guide"
    cp -r tools/windows tools/ansible tools/wireshark "$stage/tools/"
    release_stage_examples "$stage"
    for page in Tolvane.ini TradeHost.ini tolvane.conf; do
        sed 's/$/\r/' "packaging/examples/$page" | iconv -f UTF-8 -t CP1251 >"$stage/examples/$page"
    done
    while read -r package; do
        cp "/usr/share/doc/$package/copyright" "$stage/licences/$package.txt"
    done < <("$SCRIPTS/third-party.sh" --windows)
    find "$stage" -name __pycache__ -exec rm -rf {} +
    find "$stage" -type f -exec chmod 644 {} + -o -type d -exec chmod 755 {} +
    release_same_times "$stage"
}

release_make_zip() {
    release_stage_windows
    mkdir -p "$RELEASE"
    rm -f "$RELEASE/$RELEASE_ZIP.zip"
    (cd "$RELEASE_WORK" && find "$RELEASE_ZIP" | sort | zip -q -X -9 -@ "$RELEASE/$RELEASE_ZIP.zip")
}

# release_nsis <version> <folder with what it installs> <output>
release_nsis() {
    makensis -V2 -WX -INPUTCHARSET UTF8 "-DVERSION=$1" "-DPUBLISHER=${RELEASE_MAINTAINER% <*}" "-DSOURCE=$ROOT" \
        "-DFILES=$2" "-DOUTPUT=$3" "$ROOT/packaging/windows/Tolvane.nsi"
}

release_make_installer() {
    [ -d "$RELEASE_WORK/$RELEASE_ZIP" ] || release_stage_windows
    mkdir -p "$RELEASE"
    release_nsis "$RELEASE_VERSION" "$RELEASE_WORK/$RELEASE_ZIP" "$RELEASE/$RELEASE_SETUP"
}

# A list of scales that is edited here: without the mark it would be read in Windows' code page.
release_marked() {
    printf '\xef\xbb\xbf' >"$2"
    cat "$1" >>"$2"
}

# The manual page of the virtual scale, with the options as its help has them.
release_scale_manual() {
    sed -e "s/@VERSION@/$RELEASE_VERSION/" -e '/^@OPTIONS@$/,$d' packaging/debian/virtual-scale.1.in
    # A description begins in column 31, or in a line of its own.
    "$RELEASE_LINUX/simulator/virtual-scale" --help | awk '
        function roff(text) { gsub(/^ +| +$/, "", text); gsub(/\\/, "\\\\", text); gsub(/-/, "\\-", text); return text }
        function option(head, text) { print ".TP\n.B " roff(head) "\n" roff(text) }
        /^  -/ { if (head) option(substr(head, 1, 30), substr(head, 31)); head = $0; next }
        head { if (substr($0, 1, 30) ~ /^ +$/) { option(head, $0); head = "" } }
        END { if (head) option(substr(head, 1, 30), substr(head, 31)) }'
    sed '1,/^@OPTIONS@$/d' packaging/debian/virtual-scale.1.in
}

# release_pages <page>...: into this folder, for a package, where the tools are examples. A link to what the package
# has not is its text alone.
release_pages() {
    local page names
    names=$(basename -a "$@" | paste -sd '|')
    for page in "$@"; do
        sed -zE -e 's#\]\(\.\./tools/#](examples/#g' \
            -e "s#\\[([^]]*)\\]\\(($names|examples/)([^)]*)\\)#[\\1]{\\2\\3}#g" \
            -e 's#\[([^]]*)\]\(([A-Za-z./-]+)(\#[^)]*)?\)#\1#g' \
            -e 's#\[([^]]*)\]\{([^}]*)\}#[\1](\2)#g' "$page" >"$(basename "$page")"
    done
}

# The packages are made from the programs that are built already.
release_make_packages() {
    local work=$RELEASE_WORK/debian-packages program
    rm -rf "$work"
    mkdir -p "$work/tolvane" "$RELEASE"
    cp -r packaging/debian "$work/tolvane/debian"
    cd "$work/tolvane"
    sed -i "s/@MAINTAINER@/${RELEASE_MAINTAINER//[\/&]/\\&}/" debian/control
    release_linux_programs | xargs cp -t .
    cp "$RELEASE_LINUX/src/command/tolvane.1" .
    mkdir completions
    cp "$RELEASE_LINUX/src/command/tolvane.bash" completions/tolvane
    cp "$ROOT"/tools/systemd/* "$ROOT/CHANGELOG.md" .
    release_pages "$ROOT"/docs/{command,chain,security,scale-protocol}.md
    cp -r "$ROOT"/tools/{ansible,wireshark} .
    cp "$ROOT/packaging/examples/tolvane.conf" .
    release_marked "$ROOT/packaging/examples/Tolvane.ini" Tolvane.ini
    mkdir demo
    cp "$ROOT"/demo/{schema,shop}.sql demo/
    release_marked "$ROOT/packaging/examples/trial.ini" demo/Tolvane.ini
    cp "$ROOT/simulator/README.md" virtual-scale.md
    (cd "$ROOT" && release_scale_manual) >virtual-scale.1
    cat >debian/changelog <<CHANGELOG
tolvane ($RELEASE_VERSION-1) bookworm; urgency=medium

  * What is new stands in /usr/share/doc/tolvane/changelog.gz.

 -- $RELEASE_MAINTAINER  $(date -u -R -d "@$SOURCE_DATE_EPOCH")
CHANGELOG
    DEB_BUILD_OPTIONS="nocheck noautodbgsym" debian/rules binary
    rm -f "$RELEASE"/*.deb
    mv ../*.deb "$RELEASE/"
    # They are not meant for Debian's archive.
    (cd "$RELEASE" && lintian --allow-root --suppress-tags initial-upload-closes-no-bugs --fail-on error,warning -- *.deb)
}

release_make_bill() {
    python3 "$SCRIPTS/release-bill.py" "$RELEASE_VERSION" "$SOURCE_DATE_EPOCH" "$RELEASE_MAINTAINER" \
        "$ROOT/docs/third-party.md" "$RELEASE" "$RELEASE_WORK/$RELEASE_ZIP" "$RELEASE_LINUX" >"$RELEASE_WORK/bill.json"
    mv "$RELEASE_WORK/bill.json" "$RELEASE/tolvane-$RELEASE_VERSION.cdx.json"
}

release_make_sums() {
    release_text packaging/README.txt "$RELEASE/README.txt"
    cd "$RELEASE"
    rm -f SHA256SUMS
    find . -maxdepth 1 -type f -printf '%P\n' | sort | xargs sha256sum >../release-work/SHA256SUMS
    mv ../release-work/SHA256SUMS SHA256SUMS
}
