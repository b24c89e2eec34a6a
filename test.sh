#!/usr/bin/env bash
# Does all the set-up, builds for Linux and for Windows, and passes every test. Can be repeated: what is
# up to date is left out.
#
#   ./test.sh                 everything
#   ./test.sh --quick         what needs no Wine
#   ./test.sh --list          the steps, and how long each took last time; does nothing. With `--quick` or
#                             `--only`, the steps of that run
#   ./test.sh --only <name>   only that, whether it is up to date or not. The name is
#                             a step's of the list, with what it needs;
#                             a test program's: test_upload;
#                             a folder's: src/upload, all the programs of this system that hold it.
#                             With :FILTER after it only the tests that fit: test_upload:ScaleRun*
#   ./test.sh --keep-going    goes on after a failure
#   ./test.sh --all           what is up to date too, as CI=true does; clang-tidy reads all files with CI=true alone

source "$(dirname "${BASH_SOURCE[0]}")/scripts/lib.sh"
source "$SCRIPTS/plan.sh"
source "$SCRIPTS/test-steps.sh"
source "$SCRIPTS/test-plan.sh"
source "$SCRIPTS/test-only.sh"
cd "$ROOT"

quick=no list=no only=
while [ $# -gt 0 ]; do
    case $1 in
        --quick) quick=yes ;;
        --list) list=yes ;;
        --keep-going) PLAN_KEEP_GOING=yes ;;
        --all) PLAN_ALL=yes ;;
        --only)
            [ -z "$only" ] || fail "--only stands once: it takes one name"
            only=${2:?--only needs a name}
            shift
            ;;
        *) fail "usage: ./test.sh [--quick | --only NAME[:FILTER]] [--keep-going] [--all] [--list]" ;;
    esac
    shift
done
if [ "${CI:-}" = true ]; then PLAN_ALL=yes; fi

# A folder's programs are found in its build.
if [ "$list" = no ] || [ -n "$only" ]; then plan_lock; fi
test_plan "$quick"
if [ -n "$only" ]; then test_plan_only "$only"; fi
test_plan_show
[ "$list" = no ] || exit 0

trap 'code=$?; plan_end; test_end "$code"' EXIT
trap 'exit 130' INT TERM
test_plan_run
