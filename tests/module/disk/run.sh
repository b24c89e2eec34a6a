#!/usr/bin/env bash
# The tests on a full disk: the Operations folder of a program, and then the ledgers of the command, lie
# on a disk of eight MiB that only this script and what it starts can see. Needs root; without it a line
# says that they are left out.
#
#   tests/module/disk/run.sh <Windows build folder> [argument of the test program]...
#
# Each program's name is put into the file name of --gtest_output. The Wine prefix, the display, the
# Firebird server and the databases of the module tests and of the command's must be there.

source "$(dirname "${BASH_SOURCE[0]}")/../../../scripts/lib.sh"
source "$SCRIPTS/wine.sh"
source "$SCRIPTS/firebird.sh"
source "$ROOT/tests/module/steps.sh"

windows=$1 arguments=("${@:2}")
operations=$windows/tests/module/disk/Operations

disk_refusal() {
    if ! have_root; then
        say "a disk of its own needs root"
    elif ! unshare -m mount -t tmpfs -o size=8m tolvane "$operations" 2>/dev/null; then
        say "a disk of its own cannot be made here"
    fi
}

# disk_tests <name> <program> [filter]: a filter that fits no test is a mistake.
disk_tests() {
    local status=0
    wine_command timeout --foreground 900 wine "$windows/tests/$2" "${arguments[@]/%.json/-$1.json}" \
        "--gtest_filter=${3:-${GTEST_FILTER:-*}}" >"$BUILD/disk-$1.out" 2>&1 || status=$?
    cat "$BUILD/disk-$1.out"
    [ "$status" -eq 0 ] || fail "$2 ends with code $status"
    grep -q '^\[  PASSED  \] [1-9]' "$BUILD/disk-$1.out" || fail "there are no such tests in $2"
}

# No Wine process may use the disk or outlive it.
disk_end() {
    local code=$?
    wine_stop || true
    exit "$code"
}

mkdir -p "$operations"

# The script starts itself once more where it alone sees what it mounts. Files are opened by Wine's
# server, so that one has to start inside too.
if [ "${TOLVANE_DISK_INSIDE:-}" != 1 ]; then
    refusal=$(disk_refusal)
    if [ -n "$refusal" ]; then
        say "The tests on a full disk are left out: $refusal."
        exit 0
    fi
    wine_stop
    exec unshare -m env TOLVANE_DISK_INSIDE=1 TOLVANE_BUILD="$BUILD" "${BASH_SOURCE[0]}" "$@"
fi

trap disk_end EXIT
trap 'exit 130' INT TERM
mount -t tmpfs -o size=8m tolvane "$operations"
cp "$windows/src/entry/Tolvane.dll" "$operations/"
wine_session
export TOLVANE_FB_SERVER TOLVANE_FB_PASSWORD=$FIREBIRD_PASSWORD TOLVANE_FB_FOLDER=$MODULE_DATABASES
TOLVANE_FB_SERVER=127.0.0.1/$(firebird_port)
disk_tests module module/disk/test_disk.exe
export TOLVANE_SMALL_DISK
TOLVANE_SMALL_DISK=$(wine_path "$operations")
disk_tests command command/program/test_program.exe "*/SmallDiskTest*"
