#!/usr/bin/env bash
# Draws which folder includes headers of which other folder, as a Mermaid graph for docs/architecture.md.
# A folder is drawn above those that it includes. An arrow that the others imply (a -> b -> c for a -> c)
# is left out. Ends with 1 when folders include each other in a circle.
set -euo pipefail

cd "${1:-$(dirname "${BASH_SOURCE[0]}")/..}"

pairs=$(grep -rHoE --include='*.cpp' --include='*.h' '^#include "[^"]+/' src host simulator |
    sed -E 's|^(src/)?(.*)/[^/:]+:#include "(.*)/$|\2 \3|' | awk '$1 != $2' | sort -u)
tsort <<<"$pairs" >/dev/null

echo "graph TD"
awk '
    { includes[$1, $2]; folder[$1]; folder[$2] }
    function reaches(from, to,  via) {
        for (via in folder)
            if ((from, via) in includes && (via == to || reaches(via, to))) return 1
        return 0
    }
    function implied(from, to,  via) {
        for (via in folder)
            if (via != to && (from, via) in includes && reaches(via, to)) return 1
        return 0
    }
    END {
        for (pair in includes) {
            split(pair, end, SUBSEP)
            if (!implied(end[1], end[2])) print "    " end[1] " --> " end[2]
        }
    }' <<<"$pairs" | sort
