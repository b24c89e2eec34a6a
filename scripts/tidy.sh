#!/usr/bin/env bash
# Runs clang-tidy over the product's source files (not the tests') of a configured and built preset,
# and remembers what passed: a file is looked at again only when it, a header that it includes, or the
# rules have changed. The files of a folder are read together, as most of the time goes into the headers
# that they share; where something is found, each is looked at by itself.
#
#   scripts/tidy.sh native|windows
#
# For Windows only those files are looked at that the native build does not have, or that see the
# system's headers. With CI=true every file is, by itself, whatever has passed before.

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

preset=${1:?native or windows}
tree=$BUILD/$preset
work=$tree/tidy
passed=$BUILD/tidy/$preset
rm -rf "$work"
mkdir -p "$passed" "$work"

# clang reads the cross compiler's own headers, in that compiler's order.
cross_arguments() {
    local compiler=i686-w64-mingw32-g++-posix folder
    printf '%s\n' --extra-arg=--target=i686-w64-windows-gnu --extra-arg=-nostdinc \
        --extra-arg=-nostdinc++
    "$compiler" -xc++ -E -v /dev/null 2>&1 >/dev/null |
        sed -n '/search starts here/,/End of search/{s/^ //p}' |
        while read -r folder; do
            folder=$(realpath "$folder")
            case $folder in
                */include-fixed) continue ;;
                */lib/gcc/*/include) folder=$(clang_resource_headers) ;; # the compiler's own part
            esac
            printf '%s\n' "--extra-arg=-isystem$folder"
        done
}

clang_resource_headers() {
    ls -d /usr/lib/llvm-*/lib/clang/*/include | tail -n 1
}

# "object<TAB>command<TAB>source" of our own files, from the list of compile commands. The command is as
# the list writes it, without what only the compiler's precompiled headers need.
own_files() {
    awk -v root="$ROOT/" -v tree="$tree/" '
        function own(source) {
            if (index(source, root) == 1 && index(source, tree) != 1 && source ~ /\.cpp$/ && source !~ /\/tests\//)
                print object "\t" command "\t" source
        }
        /^ *"command":/ {
            match($0, / -o [^ ]+/); object = substr($0, RSTART + 4, RLENGTH - 4)
            command = $0
            gsub(/^ *"command": "|",?$| -Winvalid-pch| -include [^ ]*cmake_pch\.hxx/, "", command)
            sub(/ -o .*/, "", command)
        }
        /^ *"file":/ {
            gsub(/^ *"file": "|",?$/, "")
            # Several of our files in one of CMake.
            if ($0 ~ /\/Unity\/unity_/) {
                unity = $0
                while ((getline line < unity) > 0)
                    if (line ~ /^#include "/) { gsub(/^#include "|"$/, "", line); own(line) }
                close(unity)
            } else own($0)
        }' "$tree/compile_commands.json"
}

# "object<TAB>header or source" for everything that an object was built from.
dependencies() {
    ninja -C "$tree" -t deps | awk -v tree="$tree" '
        /^[^ ].*: #deps/ { object = $1; sub(/:$/, "", object); next }
        /^ / {
            path = $1
            # A compiler cache may write them from the build folder on.
            if (path !~ /^\//) { path = tree "/" path; while (sub(/\/[^\/]+\/\.\.\//, "/", path)) ; }
            print object "\t" path
        }'
}

# fingerprints <own files> <dependencies>: "hash<TAB>command<TAB>source" per file.
fingerprints() {
    local command source text
    find src host simulator demo -type f \( -name '*.cpp' -o -name '*.h' \) -print0 |
        xargs -0 sha256sum | awk -v root="$ROOT/" '{ print root $2 "\t" $1 }' >"$work/sums"
    awk -F'\t' -v rules="$(sha256sum <.clang-tidy)" '
        FILENAME ~ /sums$/ { sum[$1] = $2; next }
        FILENAME ~ /dependencies$/ { if ($2 in sum) text[$1] = text[$1] " " $2 "=" sum[$2]; next }
        { print $2 "\t" $3 "\t" rules " " $3 "=" sum[$3] text[$1] }' "$work/sums" "$2" "$1" |
        while IFS=$'\t' read -r command source text; do
            printf '%s\t%s\t%s\n' "$(sha256sum <<<"$text" | cut -c1-40)" "$command" "$source"
        done
}

# only_here <own files> <dependencies>: those of the first that the native build does not show as well.
only_here() {
    local native=$BUILD/native/compile_commands.json
    if [ "$preset" = native ] || [ "${CI:-}" = true ] || ! [ -e "$native" ]; then
        cat "$1"
        return 0
    fi
    (preset=native tree=$BUILD/native && own_files) | cut -f3 >"$work/native"
    awk -F'\t' '
        FILENAME ~ /native$/ { elsewhere[$1] = 1; next }
        FILENAME ~ /dependencies$/ { if ($1 !~ /\/Unity\// && $2 ~ /\/windef\.h$/) system_headers[$1] = 1; next }
        !($3 in elsewhere) || ($1 in system_headers)' "$work/native" "$2" "$1"
}

cd "$ROOT"
arguments=(--extra-arg=-DTOLVANE_CLANG_TIDY --extra-arg=-Wno-unknown-warning-option)
[[ $preset == windows ]] && mapfile -t -O 2 arguments < <(cross_arguments)
printf '%s\n' "${arguments[@]}" >"$work/arguments"

own_files >"$work/all"
dependencies >"$work/dependencies"
[ -s "$work/all" ] || fail "tidy.sh: no source file of $preset was found; is it configured and built?"
only_here "$work/all" "$work/dependencies" >"$work/own"
fingerprints "$work/own" "$work/dependencies" | sort -t$'\t' -k3,3 -u >"$work/prints"
while IFS=$'\t' read -r hash command source; do
    if [ "${CI:-}" = true ] || ! [ -e "$passed/$hash" ]; then
        printf '%s\t%s\t%s\n' "$hash" "$command" "$source"
    fi
done <"$work/prints" >"$work/todo"
say "$(cut -f3 "$work/all" | sort -u | wc -l) files, $(wc -l <"$work/own") of them to be seen here," \
    "$(wc -l <"$work/todo") to look at"

# look <list> <name> [option]...: clang-tidy over a list's files, read as one.
look() {
    local folder=$work/$2 command file options
    mkdir -p "$folder"
    command=$(head -n 1 "$1" | cut -f2)
    awk -F'\t' '{ print "#include \"" $3 "\"  // NOLINT(bugprone-suspicious-include)" }' "$1" >"$folder/all.cpp"
    file=$folder/all.cpp
    if [ "$(wc -l <"$1")" -eq 1 ]; then file=$(cut -f3 "$1"); fi
    printf '[{"directory": "%s", "command": "%s -c %s", "file": "%s"}]\n' "$tree" "$command" "$file" "$file" \
        >"$folder/compile_commands.json"
    mapfile -t options <"$work/arguments"
    clang-tidy -p "$folder" --config-file="$ROOT/.clang-tidy" --quiet "${options[@]}" "${@:3}" "$file" 2>&1
}

# look_at <list> <name>: fails, and shows why, when a file has something to be seen by itself. A list that
# shows something as one, maybe only two files with the same name in them, is read in halves.
look_at() {
    local list=$1 name=$2 out count failed=0
    count=$(wc -l <"$list")
    if out=$(look "$list" "$name"); then
        (cd "$passed" && cut -f1 "$list" | xargs touch)
        return 0
    fi
    if [ "$count" -eq 1 ]; then
        printf '%s\n' "$out" | head -n 40 |
            grep -vE '^[0-9]+ warnings? (generated|treated)|^Suppressed|^Use -header-filter'
        return 1
    fi
    head -n $((count / 2)) "$list" >"$list-1"
    tail -n +$((count / 2 + 1)) "$list" >"$list-2"
    look_at "$list-1" "$name-1" || failed=1
    look_at "$list-2" "$name-2" || failed=1
    return "$failed"
}
export -f look look_at
export ROOT tree work passed

# At most so many of one folder and one command are read as one.
together=8
if [ "${CI:-}" = true ]; then together=1; fi
awk -F'\t' -v together="$together" -v work="$work" '
    {
        group = $3; sub(/\/[^\/]*$/, "", group); group = group $2
        if (count[group]++ % together == 0) list[group] = work "/list" ++lists
        print >list[group]
    }' "$work/todo"
find "$work" -name 'list*' -printf '%f\n' | sort |
    xargs -r -P "$JOBS" -I{} bash -c 'look_at "$work/$1" "of-$1"' _ {}
