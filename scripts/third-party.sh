#!/usr/bin/env bash
# The Debian packages whose headers or libraries have gone into the programs of release builds, and those of which
# something is in what is given away beside them, one "package version" a line. With --check they are compared with
# the table in docs/third-party.md.
#
#   scripts/third-party.sh [--check] <folder of a release build>...
#   scripts/third-party.sh --windows       the packages of the table that concern what runs on Windows

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

# The installer's engine, and the fonts of the guide.
NOT_LINKED=(nsis-common fonts-dejavu-core)

# Headers by what the compiler has noted, libraries by the linkers' maps.
third_party_files() {
    local build=$1
    ninja -C "$build" -t deps | sed -n 's/^    //p' | (cd "$build" && xargs -d '\n' realpath -e)
    sed -n -e '/^Archive member included/,/^Discarded input/s/^\(\/[^ (]*\)(.*$/\1/p' -e 's/^LOAD \(\/.*\.o\)$/\1/p' \
        "$build"/*.map | sort -u | xargs -d '\n' realpath -e
}

third_party_packages() {
    local build
    {
        for build in "$@"; do third_party_files "$build"; done | sort -u | grep -v "^$ROOT/" |
            xargs -d '\n' dpkg-query -S | sed 's/: .*//; s/, .*//'
        printf '%s\n' "${NOT_LINKED[@]}"
    } | sort -u | xargs dpkg-query -W -f '${Package} ${Version}\n' | third_party_upstream | sort -u
}

# As the authors number it: without Debian's epoch, its own number, and its mark for a source without some files.
third_party_upstream() {
    sed -E 's/ [0-9]+:/ /; s/-[^- ]*$//; s/[+.]ds[0-9]*$//; /^linux-libc-dev /s/( [0-9]+\.[0-9]+).*/\1/'
}

# The same from the table's columns "Version" and "Debian package".
third_party_table() {
    awk -F'|' '/^\|/ && $6 ~ /`/ {
        gsub(/ /, "", $3); n = split($6, names, ","); for (i = 1; i <= n; ++i) {
            gsub(/[ `]/, "", names[i]); print names[i], $3 } }' "$ROOT/docs/third-party.md" | sort -u
}

if [ "${1:-}" = --windows ]; then
    grep -v '| all for Linux |' "$ROOT/docs/third-party.md" | grep '^|' | grep -o '`[^`]*`' | tr -d '`'
    exit 0
fi
check=no
if [ "${1:-}" = --check ]; then
    check=yes
    shift
fi
[ $# -gt 0 ] || fail "usage: scripts/third-party.sh [--check] <folder of a release build>..."
found=$(third_party_packages "$@")
if [ "$check" = no ]; then
    printf '%s\n' "$found"
    exit 0
fi
diff -u <(third_party_table) - <<<"$found" || fail "docs/third-party.md tells something else (-) than is in the programs (+)"
say "docs/third-party.md tells what is in the programs."
