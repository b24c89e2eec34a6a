#!/usr/bin/env bash
# Checks that all objects of a Windows build agree on Asio's kind of threads: whether it is the C library's
# or the system's follows from the headers that a source includes before Asio's, unless the build sets it.
#
#   scripts/check-asio-threads.sh <build folder>

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

folder=${1:?the build folder}
objects=$(find "$folder/src" "$folder/simulator" "$folder/tests" -name '*.obj' -exec grep -lF N4asio6detail {} +)
[ -n "$objects" ] || fail "no objects with code of Asio lie under $folder"

# with <name>: how many objects have code of Asio with that kind of thread.
with() {
    xargs i686-w64-mingw32-nm -A <<<"$objects" 2>/dev/null |
        sed -n "/N4asio6detail.*$1/p" |
        cut -d: -f1 | sort -u | wc -l
}

wanted=$(with 12posix_thread)
other=$(with 10win_thread)
say "Asio with the C library's threads: $wanted objects, with the system's: $other"
[ "$wanted" -gt 0 ] || fail "no object with Asio's threads was found"
[ "$other" -eq 0 ] || fail "all objects must be built for the same kind of threads"
