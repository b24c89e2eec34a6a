#!/usr/bin/env bash
# Checks that building twice makes the same bytes: links the module once more from the same objects, and compiles
# one of its files once more. A release is built twice as a whole.
#
#   scripts/check-same-bytes.sh <folder of the build for Windows>

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

cd "${1:?the folder of the build}"
again=$(mktemp -d)
trap 'rm -rf "$again"' EXIT
# A compiler cache would answer with the first object.
export CCACHE_DISABLE=1

# built_again <file>: by the command that has built it; what the command makes lies in another folder then.
built_again() {
    local name command
    name=$(basename "$1")
    command=$(ninja -t commands -s "$1")
    [[ $command == *" -o $1"* ]] || fail "the command that builds $1 is not understood"
    command=$(sed -E -e "s| -o $1| -o $again/$name|" -e "s|(-Map=)[^ ]*|\\1$again/map|" \
        -e "s|(--out-implib,)[^ ]*|\\1$again/library|" -e "s| -MF [^ ]*| -MF $again/headers|" <<<"$command")
    # The clock goes on meanwhile, for whatever would hold the time.
    sleep 1.1
    bash -c "$command"
    cmp "$1" "$again/$name" || fail "$name differs when it is built once more"
    say "$name: the same bytes"
}

built_again src/entry/Tolvane.dll
built_again src/entry/CMakeFiles/Tolvane.dir/Operation.cpp.obj
