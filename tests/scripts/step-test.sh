#!/usr/bin/env bash
# Runs small scripts of steps, one of them beside the others, and looks at what they print and end with.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

# expect_script <title> <script> <its code> <what it prints, numbers of seconds as N>
expect_script() {
    local code=0 out
    out=$(TOLVANE_BUILD=$tree/build bash -c "source '$root/scripts/lib.sh'; $2" 2>"$tree/err") || code=$?
    out=$(sed 's/([0-9]* s)/(N s)/' <<<"$out")
    expect "$1" "$3 $4" "$code $out"
}

expect_script "steps one after another" 'step A true; step B true' 0 $'A ... ok (N s)\nB ... ok (N s)'
expect_script "a step that fails ends the script" 'step A sh -c "exit 7"; step B true' 7 'A ... '
expect_script "a step goes on beside the next" \
    'step_begin A sh -c "until [ -e $BUILD/b ]; do sleep 0.05; done"; step B touch "$BUILD/b"; step_await' 0 \
    $'A ... started; runs during the next steps\nB ... ok (N s)\nA ... ok (N s)'
expect_script "a step that fails beside the next ends the script when it is awaited" \
    'step_begin A sh -c "echo why; exit 7"; step B true; step_await; step C true' 7 \
    $'A ... started; runs during the next steps\nB ... ok (N s)\nA ... '
expect "its log is shown" $'*FAILED: A\n*why*' "$(cat "$tree/err")"
expect_end
