#!/usr/bin/env bash
# Runs clang-tidy over the product's source files (not the tests').
#
#   scripts/tidy.sh native|windows
#
# Reads the files that can differ since the last commit that passed here: those that have changed, what
# includes them, and those that are compiled with other options. Before anything has passed here, it
# compares with the upstream branch, which has passed in CI; without one, or after a change of the rules
# (there also of the build's description), it reads every file. For Windows it reads only what Linux does
# not build and what sees a system's headers. With CI=true it reads, for either system, all such files.
#
# Each of these files is first read alone, which shows whether it includes what it needs; the rules are
# then applied to batches of a target's files, because most of their time goes into the headers that
# these share.

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

preset=${1:?native or windows}
tree=$BUILD/tidy/$preset
passed=$BUILD/tidy/$preset.passed # the rules and the commit
PRODUCT=(src host simulator demo)
cd "$ROOT"
mkdir -p "$BUILD/tidy"

# configure native|windows: the list of compile commands, without tests and precompiled headers
configure() {
    cmake --preset "$1" -B "$BUILD/tidy/$1" -DBUILD_TESTING=OFF -DTOLVANE_BATCHES=OFF -DTOLVANE_SANITIZE= >/dev/null
}

# The same in batches.
configure_batches() {
    cmake --preset "$preset" -B "$tree-batches" -DBUILD_TESTING=OFF -DTOLVANE_SANITIZE= >/dev/null
}

# The sources that the list of native|windows compiles, from the root of the repository on.
compiled() {
    sed -n "s|^ *\"file\": \"$ROOT/||p" "$BUILD/tidy/$1/compile_commands.json" | sed 's|"$||; s|",$||' |
        grep -vE '^build/|\.rc$' | sort -u
}

# with_includers FILE...: the files, and those that include one of them, directly or not. An include
# names a file from the root or from src on.
with_includers() {
    local -A seen=()
    local -a next=("$@") patterns
    local file
    while [ ${#next[@]} -gt 0 ]; do
        patterns=()
        for file in "${next[@]}"; do
            seen[$file]=1
            patterns+=(-e "#include \"${file#src/}\"" -e "#include \"$file\"")
        done
        mapfile -t next < <(grep -rlF --include='*.cpp' --include='*.h' "${patterns[@]}" "${PRODUCT[@]}" |
            while read -r file; do [ -n "${seen[$file]:-}" ] || echo "$file"; done)
    done
    printf '%s\n' "${!seen[@]}" | sort
}

rules() {
    { clang-tidy --version; cat .clang-tidy scripts/tidy.sh; } | sha256sum | cut -d' ' -f1
}

# The commit to compare with; empty: none.
base() {
    local known commit
    if [ "${CI:-}" = true ]; then return 0; fi
    if read -r known commit 2>/dev/null <"$passed"; then
        [ "$known" = "$(rules)" ] || return 0
    else
        commit=$(git rev-parse --verify --quiet '@{upstream}' 2>/dev/null ||
            git rev-parse --verify --quiet refs/remotes/origin/HEAD) || return 0
        git diff --quiet "$commit" -- .clang-tidy scripts/tidy.sh || return 0
    fi
    git rev-parse --verify --quiet "$commit^{commit}" || true
}

# What differs from a commit in the work tree, new files included.
changed_since() {
    git diff --name-only "$1" -- "${PRODUCT[@]}"
    git ls-files --others --exclude-standard -- "${PRODUCT[@]}"
}

# The sources with their compile commands, one a line.
compile_commands() {
    awk '/"command":/ { command = $0 } /"file":/ { print $0 command }' "$tree/compile_commands.json" | sort
}

# recompiled COMMIT: sources that are compiled with other options than when something passed here; before
# that all, when the build's description has changed since the commit.
recompiled() {
    if [ -e "$passed.commands" ]; then
        comm -13 "$passed.commands" <(compile_commands) | cut -d'"' -f4 | sed "s|^$ROOT/||"
    elif ! git diff --quiet "$1" -- '*CMakeLists.txt' '*.cmake' CMakePresets.json; then
        cat "$tree/all"
    fi
}

# only_here <sources>: without what Linux shows as well
only_here() {
    local -a seeds
    configure native
    mapfile -t seeds < <(grep -rlE --include='*.cpp' --include='*.h' '#include <[a-z0-9_/]+\.(h|hpp)>' "${PRODUCT[@]}")
    comm -12 <({ comm -13 <(compiled native) <(compiled windows); with_includers "${seeds[@]}"; } | sort -u) "$1"
}

# clang reads the cross compiler's own headers, in that compiler's order.
cross_arguments() {
    local compiler=i686-w64-mingw32-g++-posix folder
    printf '%s\n' -extra-arg=--target=i686-w64-windows-gnu -extra-arg=-nostdinc -extra-arg=-nostdinc++
    "$compiler" -xc++ -E -v /dev/null 2>&1 >/dev/null |
        sed -n '/search starts here/,/End of search/{s/^ //p}' |
        while read -r folder; do
            folder=$(realpath "$folder")
            case $folder in
                */include-fixed) continue ;;
                */lib/gcc/*/include) folder=$(clang_resource_headers) ;; # the compiler's own part
            esac
            printf '%s\n' "-extra-arg=-isystem$folder"
        done
}

# batches_of SOURCES: the paths of the batches that hold them, and of those that no batch holds. Batches of
# targets that have gone may still lie in an old tree.
batches_of() {
    grep -rlFf <(sed "s|.*|#include \"$ROOT/&\"|" "$1") --include='unity_*.cxx' "$tree-batches" |
        grep -xFf <(sed -n 's|^ *"file": "\([^"]*\)".*|\1|p' "$tree-batches/compile_commands.json") || true
    { sed "s|.*|\"file\": \"$ROOT/&\"|" "$1" | grep -oFf - "$tree-batches/compile_commands.json" || true; } |
        cut -d'"' -f4
}

# apply_rules TREE PATHS [ARGUMENT]...: runs clang-tidy over the files by the tree's compile commands.
apply_rules() {
    local commands=$1 files=$2 status=0
    shift 2
    # It takes patterns.
    sed 's|[.+]|\\&|g; s|.*|^&$|' "$files" |
        PYTHONUNBUFFERED=1 xargs -d '\n' run-clang-tidy -p "$commands" -j "$JOBS" -quiet "$@" "${arguments[@]}" 2>&1 |
        tee "$commands/output" | count_files "$(wc -l <"$files")" ||
        status=$?
    if [ "$status" -ne 0 ]; then
        grep -vE '^[0-9]+ warnings? (generated|treated)|^Suppressed|^Use -header-filter|^clang-tidy' "$commands/output"
    fi
    return "$status"
}

# count_files ALL: a line for each file that clang-tidy has read; fails unless these are all.
count_files() {
    awk -v all="$1" '
        /^[^ ]*clang-tidy[^ ]* -/ { printf "[%d/%d]\n", ++ended, all; fflush() }
        END { exit ended != all }'
}

clang_resource_headers() {
    ls -d /usr/lib/llvm-*/lib/clang/*/include | tail -n 1
}

# What is not committed, or changes meanwhile, is read again.
commit=
if [ -z "$(git status --porcelain -- "${PRODUCT[@]}" .clang-tidy scripts/tidy.sh)" ]; then
    commit=$(git rev-parse HEAD)
fi
configure "$preset"
compiled "$preset" >"$tree/all"
[ -s "$tree/all" ] || fail "tidy.sh: the build for $preset names no source file"
from=$(base)
if [ -z "$from" ]; then
    cp "$tree/all" "$tree/affected"
else
    mapfile -t changed < <({ changed_since "$from"; recompiled "$from"; } | sort -u)
    with_includers "${changed[@]}" | comm -12 - "$tree/all" >"$tree/affected"
fi
if [ "$preset" = windows ]; then
    only_here "$tree/affected" >"$tree/todo"
else
    cp "$tree/affected" "$tree/todo"
fi
say "$(wc -l <"$tree/all") files, $(wc -l <"$tree/affected") of them can differ${from:+ since ${from:0:7}}," \
    "$(wc -l <"$tree/todo") to read"

if [ -s "$tree/todo" ]; then
    arguments=(-extra-arg=-DTOLVANE_CLANG_TIDY -extra-arg=-Wno-unknown-warning-option)
    if [ "$preset" = windows ]; then mapfile -t -O 2 arguments < <(cross_arguments); fi
    configure_batches
    sed "s|^|$ROOT/|" "$tree/todo" >"$tree/alone"
    batches_of "$tree/todo" >"$tree/batches"
    say "in $(wc -l <"$tree/batches") batches"
    status=0
    apply_rules "$tree" "$tree/alone" '-checks=-*,clang-diagnostic-*,bugprone-suspicious-include' || status=1
    apply_rules "$tree-batches" "$tree/batches" -checks=-bugprone-suspicious-include || status=1
    [ "$status" -eq 0 ] || fail "clang-tidy found something"
fi
if [ -n "$commit" ]; then
    compile_commands >"$passed.commands"
    echo "$(rules) $commit" >"$passed"
fi
