#!/usr/bin/env bash
# Checks that every C++ file is formatted as .clang-format says; --fix formats them.

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
cd "$ROOT"

mode=(--dry-run -Werror)
[[ ${1:-} == --fix ]] && mode=(-i)
find src host simulator tests demo -type f \( -name '*.cpp' -o -name '*.h' \) -print0 |
    xargs -0 -r -P "$JOBS" -n 16 clang-format "${mode[@]}"
