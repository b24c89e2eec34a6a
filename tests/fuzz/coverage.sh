#!/usr/bin/env bash
# Tells how much of the fuzzed code the seeds reach, together with what earlier runs of the fuzzers have kept:
# the lines of each source file. build/fuzz-coverage/html shows them one by one. In a build of its own.
#
#   tests/fuzz/coverage.sh

source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/lib.sh"

HERE=$ROOT/tests/fuzz
TREE=$BUILD/fuzz-coverage
# Of these folders the fuzzers need a part only.
FILES=(src/{articles,command,entry,scale,text,upload} src/comm/{AnswerReader,DevCommBaseUnit,DeviceDiscovery}.cpp
    src/config/{IniDocument,IniIndex,IniLine,ScaleTable,ScaleTableMerge,WindowPlace}.cpp src/system/RegionalSettings.cpp)

fuzz_coverage_build() {
    cmake -S "$ROOT" --preset fuzz -B "$TREE" -DTOLVANE_SANITIZE= \
        "-DCMAKE_CXX_FLAGS=-fsanitize=fuzzer-no-link -fprofile-instr-generate -fcoverage-mapping"
    cmake --build "$TREE" --target fuzzers -- -j "$JOBS"
}

fuzz_coverage_run() {
    local program subject folders
    rm -f "$TREE"/*.profraw
    for program in "$TREE"/tests/fuzz/fuzz_*; do
        subject=$(basename "$program")
        subject=${subject#fuzz_}
        folders=("$HERE/$subject/seeds")
        [ ! -d "$BUILD/fuzz/corpus/$subject" ] || folders+=("$BUILD/fuzz/corpus/$subject")
        LLVM_PROFILE_FILE=$TREE/$subject.profraw "$program" -runs=0 "${folders[@]}"
    done
    llvm-profdata-16 merge -o "$TREE/all.profdata" "$TREE"/*.profraw
}

# fuzz_coverage_of report|show [option]...
fuzz_coverage_of() {
    local programs=("$TREE"/tests/fuzz/fuzz_*)
    llvm-cov-16 "$@" -instr-profile "$TREE/all.profdata" "${programs[0]}" "${programs[@]/#/-object=}" "${FILES[@]/#/$ROOT/}"
}

fuzz_coverage_tell() {
    fuzz_coverage_of report -show-region-summary=false -show-branch-summary=false |
        awk 'NF > 6 && $5 ~ /^[0-9]+$/ { printf "%-40s %5s of %5s lines %8s\n", $1, $5 - $6, $5, $7 }'
}

step "Packages for the fuzzers" "$SCRIPTS/packages.sh" build fuzz
step "Build with counters" fuzz_coverage_build
step "Run the inputs" fuzz_coverage_run
step "Show each line" fuzz_coverage_of show -format=html -output-dir="$TREE/html"
fuzz_coverage_tell
