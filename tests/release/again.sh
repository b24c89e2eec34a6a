#!/usr/bin/env bash
# Makes the release that is made once more, from a copy of the sources in another folder, and compares: every file
# has the same bytes, though the place and the time differ.
#
#   tests/release/again.sh

source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/release-steps.sh"

copy=$(mktemp -d)
trap 'rm -rf "$copy"' EXIT
mkdir "$copy/sources"
tar -C "$ROOT" --exclude=./build --exclude=./.git -c . | tar -C "$copy/sources" -x
TOLVANE_BUILD='' "$copy/sources/scripts/release.sh"
again=$copy/sources/build/release-$RELEASE_VERSION
diff -u "$RELEASE/SHA256SUMS" "$again/SHA256SUMS" || fail "the second time other files are made"
(cd "$again" && sha256sum --quiet -c SHA256SUMS)
(cd "$RELEASE" && sha256sum --quiet -c SHA256SUMS)
say "All is as expected."
