# shellcheck shell=bash
# Sourced by test.sh: the plan of a part.
#
#   test_plan_only <name of a step, a program or a folder>[:FILTER]

# The programs of this system that contain the code of a folder of src.
test_programs_with() {
    local program library=$1/libtolvane_$(tr / _ <<<"${1#src/}").a
    "$SCRIPTS/packages.sh" >&2
    cmake --preset native -B "$NATIVE" >/dev/null || fail "the build for this system cannot be configured"
    ctest --test-dir "$NATIVE" -N | sed -n 's/^ *Test *#[0-9]*: //p' | while read -r program; do
        if ninja -C "$NATIVE" -t inputs "$program" | grep -xF "$library" >/dev/null; then say "$program"; fi
    done
}

# One step that builds these programs, and steps that run them at the same time.
test_plan_programs() {
    local program rest=()
    PLAN=()
    job packages "Packages" "$SCRIPTS/packages.sh"
    job build "Build $*" test_build native "$@"
        after packages
    job shop "Make the shop's databases" test_shop_make
        after packages
    for program in "$@"; do
        case $program in
            test_program)
                job part-command "$program" test_in_made_shop test_command native
                after build shop
                ;;
            test_kill)
                job part-kills "$program" test_in_made_shop test_kills
                after build shop
                ;;
            *) rest+=("$program") ;;
        esac
    done
    [ ${#rest[@]} -gt 0 ] || return 0
    job part-rest "${rest[*]}" test_only_native "^($(printf '%s\n' "${rest[@]}" | paste -sd'|'))\$"
    after build shop
}

# For a quick look there are fewer kills.
test_in_made_shop() {
    TEST_SHOP_IS_MADE=yes
    export TOLVANE_COMMAND_KILLS=${TOLVANE_COMMAND_KILLS:-15}
    "$@"
}

# Many of them wait for time-outs.
test_only_native() {
    export TOLVANE_KILLS=${TOLVANE_KILLS:-50}
    JOBS=$((JOBS * 2))
    test_native -R "$1"
}

test_plan_windows_program() {
    PLAN=()
    job packages "Packages" "$SCRIPTS/packages.sh"
    job build "Build $1 for Windows" test_build windows "$1"
        after packages
    job client "Build the client library for Wine" fbclient_build
        after packages
    job part-wine "$1 in Wine" test_in_lane a test_windows_programs "$1"
        after build client
}

# The step that runs a program of module tests.
test_step_of_program() {
    case $1 in
        test_module) say module-1251 ;;
        test_settings) say settings-96 ;;
        test_links) say links ;;
        test_disk) say disk ;;
        test_host_module) say host ;;
        test_upload_stops) say windows-stops ;;
        *) say "$1" ;;
    esac
}

test_plan_only() {
    local name programs line
    TEST_KIND=$(tr -c 'A-Za-z0-9_.\n' '-' <<<"$1")
    if [[ $1 == *:* ]]; then export GTEST_FILTER=${1#*:}; fi
    name=$(test_step_of_program "${1%%:*}")
    if [ -n "${JOB_STATE[$name]:-}" ]; then
        PLAN_FORCED=$name
        plan_keep "$name"
    elif [ -d "$name" ]; then
        programs=$(test_programs_with "${name%/}")
        [ -n "$programs" ] || fail "no program of this system holds what lies in $name"
        # shellcheck disable=SC2086
        test_plan_programs $programs
    elif line=$(grep -rhE "tolvane_test\($name( |\$)" tests --include=CMakeLists.txt); then
        # The programs of this level are for Windows only.
        if [[ $line == *"LEVEL module"* ]]; then test_plan_windows_program "$name"; else test_plan_programs "$name"; fi
    else
        fail "there is no step, no test program and no folder \"$name\"; ./test.sh --list names the steps"
    fi
}
