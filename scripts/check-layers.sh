#!/usr/bin/env bash
# Checks who includes what, against the table below, and that nothing between the wire and the scale
# reads a clock but the one that it is given. Usage: check-layers.sh [ROOT]
# Prints each violation as file:line: text, and ends with 1 when there is any.
set -euo pipefail

root=${1:-$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)}
cd "$root"

# folder: the folders whose headers it may include (its own is always allowed)
may_include() {
    case $1 in
        src/text) echo "" ;;
        src/system) echo "text" ;;
        src/config | src/database | src/comm) echo "text system" ;;
        src/scale) echo "text system config comm" ;;
        src/articles) echo "text system config database" ;;
        src/upload) echo "text system config comm database scale articles" ;;
        src/command) echo "text system config comm database scale articles upload" ;;
        src/settings) echo "text config" ;;
        src/window) echo "text system config" ;;
        src/settings/forms) echo "text system config comm settings window" ;;
        src/articles/forms) echo "text system config database articles window" ;;
        src/upload/forms) echo "text system config comm scale articles upload window" ;;
        src/entry) echo "text system config comm database scale articles upload settings window articles/forms upload/forms settings/forms" ;;
        host) echo "text system config window host entry/HostInterface.h" ;;
        simulator) echo "text simulator" ;;
        demo/driver) echo "text window" ;;
        *) return 1 ;;
    esac
}

# the layer of a source file: the longest folder of the table above that it lies in
layer_of() {
    local folder
    folder=$(dirname "$1")
    while [[ $folder != . ]]; do
        if may_include "$folder" >/dev/null; then
            echo "$folder"
            return
        fi
        folder=$(dirname "$folder")
    done
}

bad=0
violation() {
    echo "$1:$2: $3"
    bad=1
}

windows_allowed() {
    [[ $1 == src/window/* || $1 == src/entry/* || $1 == src/*/forms/* || $1 == host/* || $1 == demo/driver/* ]] ||
        [[ ($1 == src/system/* || $1 == simulator/*) && $1 == *_win32.cpp ]]
}

# What differs between systems lies in one folder.
check_half() { # file
    [[ $1 == *_win32.* || $1 == *_posix.* ]] || return 0
    [[ $1 == src/system/* || $1 == simulator/* ]] || violation "$1" 1 "what differs between systems is for src/system"
}

check_include() { # file line header layer
    local file=$1 line=$2 header=$3 layer=$4
    case $header in
        windows.h | windowsx.h | commctrl.h | winsock2.h | ws2tcpip.h | commdlg.h | shellapi.h | winspool.h | tchar.h | Windows.h)
            windows_allowed "$file" || violation "$file" "$line" "<$header> is for windows and the Windows halves of src/system and the simulator only"
            ;;
        ibase.h | iberror.h | firebird/*)
            [[ $file == src/database/* ]] || violation "$file" "$line" "<$header> is for src/database only"
            ;;
        asio.hpp | asio/*)
            [[ $file == src/system/* || $file == src/comm/* || $file == simulator/* ]] ||
                violation "$file" "$line" "<$header> is for src/system, src/comm and the simulator only"
            ;;
        boost/*)
            [[ $file == simulator/* ]] || violation "$file" "$line" "<$header> is for the simulator only"
            ;;
    esac
    local target=${header%/*}
    [[ $header == */* && ( -d src/$target || $target == simulator || $target == host ) ]] || return 0
    [[ src/$target == "$layer" || $target == "$layer" ]] && return 0
    local allowed
    for allowed in $(may_include "$layer"); do
        [[ $target == "$allowed" || $header == "$allowed" ]] && return 0
    done
    violation "$file" "$line" "$layer must not include \"$header\""
}

# Deadlines must not move when somebody sets the computer's clock, and tests bring their own.
check_clocks() { # file
    [[ $1 == src/comm/* || $1 == src/scale/* ]] || return 0
    local line
    while IFS=: read -r line _; do
        violation "$1" "$line" "reads a clock; src/system/Clock.h is for that"
    done < <(grep -nE '(system|steady|high_resolution|utc|file)_clock::now|sleep_(for|until)|LocalTime|SystemTime|TickCount|PerformanceCounter|timeGetTime|gettimeofday|clock_gettime|\b(time|clock|[un]*sleep) ?\(' "$1" || true)
}

while IFS= read -r file; do
    check_clocks "$file"
    check_half "$file"
    layer=$(layer_of "$file")
    [[ -n $layer ]] || { violation "$file" 1 "lies in no known folder"; continue; }
    while IFS=: read -r line text; do
        [[ $text =~ ^[[:space:]]*#[[:space:]]*include[[:space:]]*([\<\"])([^\>\"]+)[\>\"] ]] || continue
        if [[ ${BASH_REMATCH[1]} == '"' && ( ${BASH_REMATCH[2]} != */* || ${BASH_REMATCH[2]} == *..* ) ]]; then
            violation "$file" "$line" "\"${BASH_REMATCH[2]}\" is not named from src or the root on"
            continue
        fi
        check_include "$file" "$line" "${BASH_REMATCH[2]}" "$layer"
    done < <(grep -nE '^[[:space:]]*#[[:space:]]*include' "$file" || true)
done < <(find src host simulator demo -type f \( -name '*.cpp' -o -name '*.h' \) | sort)

# The drawing in the docs, where the tree has one.
if [[ -e docs/architecture.md && -e scripts/draw-layers.sh ]] &&
    ! diff <(scripts/draw-layers.sh) <(sed -n '/^```mermaid/,/^```$/p' docs/architecture.md | sed '1d;$d'); then
    violation docs/architecture.md 1 "its drawing is not what scripts/draw-layers.sh draws"
fi

exit $bad
