#!/usr/bin/env bash
# Runs clang-tidy over the product's source files (not the tests') of a configured and built preset,
# and remembers what passed: a file is looked at again only when it, a header that it includes, or the
# rules have changed.
#
#   scripts/tidy.sh native|windows

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

preset=${1:?native or windows}
tree=$BUILD/$preset
passed=$BUILD/tidy/$preset
mkdir -p "$passed"

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

# "object<TAB>source" of our own files, from the list of compile commands.
own_files() {
    awk -v root="$ROOT/" '
        /^ *"command":/ { match($0, / -o [^ ]+/); object = substr($0, RSTART + 4, RLENGTH - 4) }
        /^ *"file":/ {
            gsub(/^ *"file": "|",?$/, "")
            if (index($0, root) == 1 && $0 ~ /\.cpp$/ && $0 !~ /\/tests\//) print object "\t" $0
        }' "$tree/compile_commands.json"
}

# "object<TAB>one project header or source" for everything that an object was built from.
dependencies() {
    ninja -C "$tree" -t deps | awk -v root="$ROOT/" '
        /^[^ ].*: #deps/ { object = $1; sub(/:$/, "", object); next }
        /^ / { file = $1; if (file !~ /^\//) next; if (index(file, root) == 1) print object "\t" file }'
}

fingerprints() { # writes "hash<TAB>source" per file
    local sums=$tree/tidy-sums
    find src host simulator demo -type f \( -name '*.cpp' -o -name '*.h' \) -print0 |
        xargs -0 sha256sum | awk -v root="$ROOT/" '{ print root $2 "\t" $1 }' >"$sums"
    { own_files | awk -F'\t' '{ print "own\t" $0 }'; dependencies | awk -F'\t' '{ print "dep\t" $0 }'; } |
        awk -F'\t' -v sums="$sums" -v rules="$(sha256sum <.clang-tidy)" '
            BEGIN { while ((getline line < sums) > 0) { split(line, part, "\t"); sum[part[1]] = part[2] } }
            $1 == "own" { source[$2] = $3 }
            $1 == "dep" { text[$2] = text[$2] " " $3 "=" sum[$3] }
            END { for (object in source)
                      print source[object] "\t" rules " " source[object] "=" sum[source[object]] text[object] }' |
        while IFS=$'\t' read -r source text; do
            printf '%s\t%s\n' "$(sha256sum <<<"$text" | cut -c1-40)" "$source"
        done
}

cd "$ROOT"
arguments=(--extra-arg=-DTOLVANE_CLANG_TIDY --extra-arg=-Wno-unknown-warning-option)
[[ $preset == windows ]] && mapfile -t -O 2 arguments < <(cross_arguments)

todo=$tree/tidy-todo
: >"$todo"
total=0
while IFS=$'\t' read -r hash source; do
    total=$((total + 1))
    [[ -e $passed/$hash ]] || printf '%s %s\n' "$hash" "$source" >>"$todo"
done < <(fingerprints)
say "$total files, $(wc -l <"$todo") to look at"
[ "$total" -gt 0 ] || fail "tidy.sh: no source file of $preset was found; is it configured and built?"

check_one() {
    local hash=$1 source=$2 out
    shift 2
    if out=$(clang-tidy -p "$tree" --quiet "$@" "$source" 2>&1); then
        touch "$passed/$hash"
    else
        printf '%s\n' "$out" | head -n 40 |
            grep -vE '^[0-9]+ warnings? (generated|treated)|^Suppressed|^Use -header-filter'
        return 1
    fi
}
export -f check_one
export tree passed
xargs -r -a "$todo" -P "$JOBS" -L 1 bash -c 'arguments=("${@:1:$#-2}"); check_one "${@: -2}" "${arguments[@]}"' _ \
    "${arguments[@]}"
