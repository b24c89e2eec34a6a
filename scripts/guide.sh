#!/usr/bin/env bash
# Makes the guides and the cards as HTML and PDF, and the other pages of docs as HTML, into build/guide or
# another folder. Needs nothing that is built. The same sources make the same files.
#
#   scripts/guide.sh [FOLDER]

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
cd "$ROOT"
[ $# -le 1 ] || fail "usage: scripts/guide.sh [FOLDER]"
output=${1:-$BUILD/guide}

"$SCRIPTS/packages.sh" guide
"$SCRIPTS/check-links.py"
version=$(sed -n 's/^project(Tolvane VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
[ -n "$version" ] || fail "guide.sh: CMakeLists.txt has no version"
rm -rf "$output.new"
mkdir -p "$output.new"
# The time in the fonts that a PDF holds.
export SOURCE_DATE_EPOCH=0
# Debian's own, which has the package.
/usr/bin/python3 "$SCRIPTS/guide/build.py" "$ROOT" "$output.new" "$version"
rm -rf "$output"
mv "$output.new" "$output"
say "$output"
