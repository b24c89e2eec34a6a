#!/usr/bin/env bash
# Plants one fault of each kind in a file of reasons and expects check-reasons.sh to name it.
set -euo pipefail

check=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/check-reasons.sh
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
failed=0

mkdir "$tree/src"
printf '%s\n' '    if (a | b) return;  ' 'Put("\r\n");' >"$tree/src/a.cpp"

expect() { # title, line of the file of reasons, expected words ("" for no complaint)
    printf '# reasons\n\n%s\n' "$2" >"$tree/reasons.txt"
    local out code=0
    out=$("$check" "$tree" "$tree/reasons.txt" 2>&1) || code=$?
    if [[ -z $3 && $code -eq 0 && -z $out ]] || [[ -n $3 && $code -eq 1 && $out == *"$3"* ]]; then
        printf 'ok: %s\n' "$1"
    else
        printf 'FAILED: %s (code %s): %s\n' "$1" "$code" "$out"
        failed=1
    fi
}

good='src/a.cpp | if (a | b) return; | system | the disk fails'
expect "a line that stands" "$good" ""
expect "a line with backslashes" 'src/a.cpp | Put("\r\n"); | other | clean-up' ""
expect "a line that is gone" 'src/a.cpp | if (a) return; | system | the disk fails' \
    "reasons.txt:3: src/a.cpp has no such line any more: if (a) return;"
expect "a part of a line" 'src/a.cpp | if (a | b) | system | the disk fails' "no such line any more"
expect "a file that is gone" 'src/b.cpp | if (a | b) return; | system | the disk fails' \
    "reasons.txt:3: there is no file src/b.cpp"
expect "a line explained twice" "$good"$'\n'"$good" "reasons.txt:4: src/a.cpp is explained twice"
expect "an unknown kind" 'src/a.cpp | if (a | b) return; | maybe | the disk fails' "reasons.txt:3: not"
expect "an entry without a reason" 'src/a.cpp | if (a | b) return; | system' "reasons.txt:3: not"
expect "no entry" '# none' "no line of code is explained"

exit $failed
