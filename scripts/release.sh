#!/usr/bin/env bash
# Builds what is given away, into build/release-VERSION: a zip and an installer for Windows, the Debian packages
# tolvane and virtual-scale, a bill of materials, README.txt, SHA256SUMS. Does all the set-up. The same sources make the
# same files, in whatever folder and at whatever time, on Debian 12 with the same packages.
#
#   scripts/release.sh
#
# TOLVANE_MAINTAINER, "Name <address>", is who the packages, the installer and the bill of materials name.

source "$(dirname "${BASH_SOURCE[0]}")/release-steps.sh"
cd "$ROOT"
[ $# -eq 0 ] || fail "usage: scripts/release.sh"

step "Packages" "$SCRIPTS/packages.sh" build installer release guide
step "Build for Windows" release_build windows Tolvane TradeHost tolvane virtual-scale
step "Build for Linux" release_build linux tolvane tolvane_manual virtual-scale
step "Check the programs" release_check_programs
step "Make the guide" release_make_guide
step "Make the zip for Windows" release_make_zip
step "Make the installer for Windows" release_make_installer
step "Make the Debian packages" release_make_packages
step "Write the bill of materials" release_make_bill
step "Write what is what, and the checksums" release_make_sums
say ""
if [ "$RELEASE_MAINTAINER" = "$RELEASE_NOBODY" ]; then
    say "This release names nobody who can be reached; TOLVANE_MAINTAINER=\"Name <address>\" does (CONTRIBUTING.md)."
fi
say "$RELEASE:"
(cd "$RELEASE" && du -h --apparent-size -- *)
