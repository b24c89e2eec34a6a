#!/usr/bin/env bash
# Runs the examples of docs/command.md in their order, in a small shop with three virtual scales, and
# compares what they print and end with. A line "    $ tolvane ..." is an example; the lines that follow it
# are what it prints, "..." standing for anything; "# ends with N" behind it tells a code that is not 0;
# "    $ isql ..." is a change of the database.
#
#   tests/command/examples/run.sh [--print]    --print shows the outputs and compares nothing

# shellcheck disable=SC1091,SC2034
source "$(dirname "${BASH_SOURCE[0]}")/../../../scripts/lib.sh"
source "$SCRIPTS/headless-steps.sh"
cd "$ROOT"

DEMO=$BUILD/examples
DEMO_BUILD=$BUILD/native
FIREBIRD_FOLDER=$BUILD/examples-engine
DEMO_SCALE=$DEMO_BUILD/simulator/virtual-scale
TOLVANE=$DEMO_BUILD/src/command/tolvane
DOCUMENT=$ROOT/docs/command.md

examples_shop() {
    firebird_make_folder
    firebird_write_settings 0
    firebird_database "$DEMO/shop.fdb" demo/schema.sql tests/command/program/shop.sql
    demo_start_scales
    headless_configure
}

# The examples, one a line: number of the line, a tab, the command.
examples_list() {
    awk '/^    \$ / { sub(/^    \$ /, ""); print NR "\t" $0 }' "$DOCUMENT"
}

# example_expected <line>: what the document says that the example on this line prints.
example_expected() {
    awk -v first="$1" 'NR > first { if ((!/^    / && !/^$/) || /^    \$ /) exit; sub(/^    /, ""); if (length) print }' "$DOCUMENT"
}

# example_matches <expected> <printed>: "..." alone on a line is any lines, at a line's end the rest of it.
example_matches() {
    python3 - "$1" "$2" <<'PYTHON'
import re, sys
def pattern(line):
    if line == '...':
        return '(?:.*\n)*?'
    return '[^\n]*'.join(re.escape(part) for part in line.split('...')) + '\n'
wanted = ''.join(pattern(line) for line in sys.argv[1].splitlines())
printed = ''.join(line + '\n' for line in sys.argv[2].splitlines() if line)
sys.exit(0 if re.fullmatch(wanted, printed) else 1)
PYTHON
}

# In the folder of the shop, so that files have short names.
example_run() {
    local command=$1
    case $command in
        tolvane\ *) (cd "$DEMO" && eval "\"$TOLVANE\" ${command#tolvane }" 2>&1) ;;
        isql\ *) (eval "firebird_isql -user SYSDBA \"$DEMO/shop.fdb\" ${command#isql }" 2>&1) ;;
        *) fail "the example begins with neither tolvane nor isql: $command" ;;
    esac
}

examples_run() {
    local line command printed code right count=0
    export TOLVANE_CONFIG=$DEMO/tolvane.conf
    while IFS=$'\t' read -r line command; do
        right=0
        if [[ $command =~ \#\ ends\ with\ ([0-9]+)$ ]]; then right=${BASH_REMATCH[1]}; fi
        code=0
        printed=$(example_run "${command%%#*}") || code=$?
        if [ "$1" = --print ]; then printf '$ %s\n%s\n[%s]\n\n' "$command" "$printed" "$code"; continue; fi
        [ "$code" -eq "$right" ] || fail "line $line, $command: ended with $code and not with $right: $printed"
        example_matches "$(example_expected "$line")" "$printed" ||
            fail "line $line, $command: prints something else:" "$printed"
        count=$((count + 1))
    done < <(examples_list)
    say "$count examples"
    [ "$1" = --print ] || [ "$count" -gt 15 ] || fail "these are too few"
}

examples_end() {
    local code=$?
    demo_end_scales || true
    exit "$code"
}

if [ "${TOLVANE_DEMO_INSIDE:-}" != 1 ]; then
    headless_unshare env TOLVANE_DEMO_INSIDE=1 TOLVANE_BUILD="$BUILD" "$0" "$@"
    exit
fi
trap examples_end EXIT
rm -rf "$DEMO"
mkdir -p "$DEMO"
step "Make the shop" examples_shop
examples_run "${1:-}"
