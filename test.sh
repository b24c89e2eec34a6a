#!/usr/bin/env bash
# Does all the set-up, builds for Linux and for Windows, and passes every test. Can be repeated.
#
#   ./test.sh            everything
#   ./test.sh --quick    what needs no Wine: checks, unit and integration tests

source "$(dirname "${BASH_SOURCE[0]}")/scripts/lib.sh"
cd "$ROOT"

quick=no
case ${1:-} in
    "") ;;
    --quick) quick=yes ;;
    *) fail "usage: ./test.sh [--quick]" ;;
esac

step "Packages" "$SCRIPTS/packages.sh"
step "Layers" "$SCRIPTS/check-layers.sh"
step "Layers check finds planted faults" tests/scripts/check-layers-test.sh
step "Format" "$SCRIPTS/check-format.sh"

step "Configure for Linux" cmake --preset native
step "Build for Linux" cmake --build --preset native -- -j "$JOBS"
step "clang-tidy, Linux" "$SCRIPTS/tidy.sh" native
step "Unit tests" ctest --test-dir build/native -L unit --output-on-failure -j "$JOBS"

source "$SCRIPTS/firebird.sh"
