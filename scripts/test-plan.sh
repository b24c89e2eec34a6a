# shellcheck shell=bash
# Sourced by test.sh: which steps there are, and what they depend on.
#
#   test_plan <yes for what needs no Wine>
#   test_plan_show        the steps, and how long each took last time
#   test_plan_run
#
# Four lanes share the Windows tests and take about as long as each other. What takes the UDP ports of a scale
# on this machine's own addresses never runs beside another such step, nor does what has the demo's UDP scale at
# 127.0.0.2; the steps in a shop's network have ports of their own.

NATIVE=$BUILD/native
WINDOWS=$BUILD/windows
# The scripts that every step uses.
TEST_SCRIPTS=(scripts test.sh)
MODULE_FILES=("$WINDOWS/src/entry/Tolvane.dll" "tests/module/*.sql" tests/module/steps.sh "${TEST_SCRIPTS[@]}")
DEMO_FILES=("$WINDOWS/src/entry/Tolvane.dll" "$WINDOWS/host/TradeHost.exe"
    "$WINDOWS/demo/driver/window-driver.exe" "$NATIVE/simulator/virtual-scale" demo demo.sh "${TEST_SCRIPTS[@]}")

test_plan() {
    TEST_KIND=all
    [ "$1" = no ] || TEST_KIND=quick
    test_plan_checks
    test_plan_builds "$1"
    # The longest first.
    [ "$1" = yes ] || test_plan_windows
    test_plan_native
    test_plan_chain
    [ "$1" = yes ] || test_plan_bench
    test_plan_scripts
    test_plan_threads
    test_plan_fuzz
    test_plan_tidy "$1"
}

test_plan_checks() {
    job packages "Packages" "$SCRIPTS/packages.sh"
    job layers "Layers" "$SCRIPTS/check-layers.sh"
    job messages "Commit messages" "$SCRIPTS/check-messages.sh"
    job pages "The pages' links" "$SCRIPTS/check-links.py"
        after packages
    job guide-texts "The guide has every text of the module" "$SCRIPTS/check-guide.py"
        after packages
    job excerpts "The pieces of code of the host's page" "$SCRIPTS/check-excerpts.py"
    job format "Format" "$SCRIPTS/check-format.sh"
        after packages
}

# The tests wait for all builds: beside a build they would take longer, and so would the build.
test_plan_builds() {
    job build-linux "Build for Linux" test_build native
        after packages; first
    if [ "$1" = no ]; then
        job client "Build the client library for Wine" fbclient_build
            after packages
        job build-windows "Build for Windows" test_build windows
            after packages; first
    fi
    job build-threads "Build the run engine for ThreadSanitizer" test_build threads test_threads
        after packages; first
    job build-fuzz "Build the fuzzers" test_build fuzz fuzzers
        after packages; first
}

# The benchmarks have a Wine prefix, a display and a server of their own.
test_plan_bench() {
    job bench "The benchmarks, shortly" tests/bench/run.sh --quick
        after build-windows build-linux client
        reads "$NATIVE/tests/bench/*/*_*" "$WINDOWS/tests/bench/*/*.exe" "$WINDOWS/tests/bench/*/*.dll" tests/bench \
            "$WINDOWS/src/entry/Tolvane.dll" "$NATIVE/src/command/tolvane" tests/module/schema.sql "demo/*.sql" \
            tests/command/program/shop.sql "${TEST_SCRIPTS[@]}"
}

# The guides, and the tests of the checks and of the scripts.
test_plan_scripts() {
    job guide "The guides as HTML and PDF" "$SCRIPTS/guide.sh"
        after packages; reads docs simulator/README.md CMakeLists.txt "${TEST_SCRIPTS[@]}"
    job layers-faults "The layers check finds planted faults" tests/scripts/check-layers-test.sh
        reads scripts/check-layers.sh scripts/lib.sh tests/scripts
    job messages-faults "The messages check finds planted faults" tests/scripts/check-messages-test.sh
        reads scripts/check-messages.sh scripts/lib.sh tests/scripts
    job pages-faults "The checks of the pages find planted faults" tests/scripts/check-pages-test.sh
        after packages; reads scripts/check-links.py scripts/check-guide.py scripts/check-excerpts.py \
            scripts/guide/pages.py src host docs examples packaging/windows/Texts.nsh tests/scripts
    job files-faults "The check of built files finds planted faults" tests/scripts/check-binary-test.sh
        after packages
        reads scripts/check-binary.sh scripts/lib.sh tests/scripts src/system/StackGuard_win32.cpp CMakeLists.txt
    job plan-faults "A run shows what fails and repeats what changed" tests/scripts/plan-test.sh
        reads scripts/plan.sh scripts/plan-show.sh scripts/lib.sh tests/scripts
    job run-faults "A failed step fails the run" tests/scripts/test-run-test.sh
        after packages
    job step-faults "A step fails its script, also beside others" tests/scripts/step-test.sh
        reads scripts/lib.sh tests/scripts
    job displays "Displays keep apart" tests/scripts/display-test.sh
        after packages; reads scripts/wine.sh scripts/lib.sh tests/scripts
}

test_plan_native() {
    job unit "Unit tests" test_native -L '^unit$'
        after build-linux; lane native
        reads "$NATIVE/tests/unit/*/test_*" "$NATIVE/tests/unit/*/*.so" "$NATIVE/tests/command/window/test_same_requests" \
            "$NATIVE/tests/support/client/fake_client.so" "$NATIVE/simulator/virtual-scale" "${TEST_SCRIPTS[@]}"
    job integration "Integration tests" test_integration
        after build-linux; lane native; alone udp
        reads "$NATIVE/tests/integration/*/test_*" "$NATIVE/tests/integration/database/attach_probe" \
            "demo/*.sql" "${TEST_SCRIPTS[@]}"
    job command "The command on this system" test_command native
        after build-linux; lane native; alone udp
        reads "$NATIVE/tests/command/program/test_program" "$NATIVE/tests/command/program/*.so" "$NATIVE/src/command/tolvane" \
            tests/command/program/shop.sql "demo/*.sql" "${TEST_SCRIPTS[@]}"
    job headless "The demo by the command alone" test_headless
        after build-linux; alone shop
        reads "$NATIVE/src/command/tolvane" "$NATIVE/simulator/virtual-scale" demo demo.sh "${TEST_SCRIPTS[@]}"
    job examples "The examples of the command's page" tests/command/examples/run.sh
        after build-linux; alone shop
        reads "$NATIVE/src/command/tolvane" "$NATIVE/simulator/virtual-scale" docs/command.md tests/command/examples \
            tests/command/program/shop.sql demo/schema.sql "${TEST_SCRIPTS[@]}"
    job report "The command's reports in a browser" tests/command/report/browser.sh
        after examples; alone shop
        reads "$NATIVE/src/command/tolvane" "$NATIVE/simulator/virtual-scale" docs/command.md tests/command/report \
            tests/command/examples tests/command/program/shop.sql demo/schema.sql tests/scripts/lib.sh "${TEST_SCRIPTS[@]}"
    job texts "The command's manual page and completion" tests/command/examples/texts.sh "$NATIVE/src/command"
        after build-linux
        reads "$NATIVE/src/command/tolvane*" tests/command/examples tests/scripts/lib.sh tools/systemd tools/ansible docs
    job browser "Pages in a real browser" test_browser
        after build-linux
        reads "$NATIVE/simulator/virtual-scale" tests/browser "${TEST_SCRIPTS[@]}"
    job wireshark "Traces in Wireshark" test_native -L '^wireshark$'
        after build-linux; lane native
        reads "$NATIVE/tests/command/trace/test_wireshark" tools/wireshark "${TEST_SCRIPTS[@]}"
    job kills "Kills and interrupts of the command" test_kills
        after build-linux; lane native
        reads "$NATIVE/tests/command/kill/test_kill" "$NATIVE/src/command/tolvane" "demo/*.sql" "${TEST_SCRIPTS[@]}"
}

test_plan_windows() {
    test_plan_lane_a
    test_plan_lane_b
    test_plan_lane_c
    test_plan_lane_d
    job pascal "Build Free Pascal for Windows" pascal_build
        after packages
    job asio-threads "One kind of Asio's threads" "$SCRIPTS/check-asio-threads.sh" "$WINDOWS"
        after build-windows
    job files "The built files" test_files
        after build-windows
}

# Ansible and clang-tidy take as much of the processor as a build: one at a time, beside tests that mostly
# wait.
test_plan_chain() {
    job chain "A chain's shops by Ansible" tests/command/chain/run.sh
        after build-linux; alone cores
        reads "$NATIVE/src/command/tolvane" "$NATIVE/simulator/virtual-scale" tests/command/chain tools/ansible \
            tools/systemd tools/windows docs/chain.md demo/schema.sql "${TEST_SCRIPTS[@]}"
}

test_plan_threads() {
    job threads "Run engine under ThreadSanitizer" test_threads
        after build-threads
        reads "$BUILD/threads/tests/integration/threads/test_threads" "${TEST_SCRIPTS[@]}"
}

# The fuzzers have a low priority: they use what the steps beside them leave.
test_plan_fuzz() {
    job fuzz "Fuzzers" tests/fuzz/run.sh
        after build-fuzz; lane tidy
        reads "$BUILD/fuzz/tests/fuzz/fuzz_*" tests/fuzz "${TEST_SCRIPTS[@]}"
}

test_plan_tidy() {
    job tidy-linux "clang-tidy, Linux" nice -n 19 "$SCRIPTS/tidy.sh" native
        after build-linux; lane tidy; alone cores
    [ "$1" = no ] || return 0
    job tidy-windows "clang-tidy, Windows" nice -n 19 "$SCRIPTS/tidy.sh" windows
        after build-windows; lane tidy; alone cores
}

test_plan_lane_a() {
    job host "Host tests" test_in_lane a test_host_run
        after build-windows client; lane a
        reads "$WINDOWS/tests/module_host/test_host_module.exe" "$WINDOWS/tests/module_host/*.dll" \
            tests/module_host/steps.sh "demo/*.sql" "${MODULE_FILES[@]}"
    job module-1251 "Module tests, code page 1251, decimal comma" test_in_lane a test_module_run 1251 comma
        after build-windows client; lane a
        reads "$WINDOWS/tests/module/*.exe" "$WINDOWS/tests/module/unloading/*.dll" "${MODULE_FILES[@]}"
    job example-hosts "The example hosts" test_in_lane a test_example_hosts
        after build-windows client pascal; lane a
        reads examples tests/examples "$WINDOWS/examples/c/host_c.exe" "$WINDOWS/src/entry/Tolvane.dll" \
            "$WINDOWS/demo/driver/window-driver.exe" tests/module/schema.sql tests/module/shop.sql "${TEST_SCRIPTS[@]}"
    job windows-command "The command for Windows" test_in_lane a test_command windows
        after build-windows client; lane a; alone udp
        reads "$WINDOWS/tests/command/program/*.exe" "$WINDOWS/src/command/tolvane.exe" \
            tests/command/program/shop.sql "demo/*.sql" "${TEST_SCRIPTS[@]}"
}

test_plan_lane_b() {
    job module-1252 "Module tests, code page 1252, decimal point" test_in_lane b test_module_run 1252 point
        after build-windows client; lane b
        reads "$WINDOWS/tests/module/*.exe" "$WINDOWS/tests/module/unloading/*.dll" "${MODULE_FILES[@]}"
    job settings-144 "Settings windows, 144 dots per inch" test_in_lane b test_settings_run 144 1252
        after build-windows client; lane b
        reads "$WINDOWS/tests/module/settings/test_settings.exe" tests/module/settings tests/module/steps.sh \
            docs/settings-windows.md "${TEST_SCRIPTS[@]}"
    job settings-96 "Settings windows, 96 dots per inch" test_in_lane b test_settings_run 96 1251
        after build-windows client; lane b
        reads "$WINDOWS/tests/module/settings/test_settings.exe" tests/module/settings tests/module/steps.sh \
            docs/settings-windows.md "${TEST_SCRIPTS[@]}"
}

test_plan_lane_c() {
    job demo "Demo" test_in_lane c test_demo
        after build-windows build-linux client; lane c
        reads "$NATIVE/tests/demo/test_demo" "${DEMO_FILES[@]}"
    job window "The command writes what the window writes" test_in_lane c test_window
        after demo; lane c
        reads "$NATIVE/tests/command/window/test_window" "$NATIVE/src/command/tolvane" \
            "$WINDOWS/src/command/tolvane.exe" tests/command/window "$BUILD/demo/*.json" "${DEMO_FILES[@]}"
    job deletes "Delete in the demo's scales, over each link" test_in_lane c test_demo_deletes
        after demo; lane c
        reads "$NATIVE/tests/demo/test_deletes" tests/demo/deletes.sh "$BUILD/demo/*.json" "${DEMO_FILES[@]}"
    job links "Links over a COM port and a shop's network" test_in_lane c test_links_run
        after build-windows build-linux client; lane c
        reads "$WINDOWS/tests/module/links/test_links.exe" "$NATIVE/simulator/virtual-scale" \
            tests/module/links/run.sh "${TEST_SCRIPTS[@]}"
    job resolutions "All windows, 120 to 192 dots per inch" test_in_lane c test_resolutions 120 144 192
        after build-windows client; lane c
        reads "$WINDOWS/tests/module/test_module.exe" "$WINDOWS/tests/module/settings/test_settings.exe" \
            "$WINDOWS/tests/module/run/test_upload_forms.exe" tests/module/settings/steps.sh \
            "$WINDOWS/tests/module_host/test_host_module.exe" "$WINDOWS/tests/module_host/*.dll" \
            tests/module_host/steps.sh "demo/*.sql" "${MODULE_FILES[@]}"
    job disk "A full disk" test_in_lane c test_disk_run
        after build-windows client; lane c
        reads "$WINDOWS/tests/module/disk/test_disk.exe" tests/module/disk/run.sh "${MODULE_FILES[@]}" \
            "$WINDOWS/tests/command/program/test_program.exe" "$WINDOWS/src/command/tolvane.exe" \
            tests/command/program/shop.sql "demo/*.sql"
}

test_plan_lane_d() {
    job windows-unit "Unit tests for Windows" test_in_lane d test_windows_level unit
        after build-windows client; lane d
        reads "$WINDOWS/tests/unit/*/*.exe" "$WINDOWS/tests/unit/*/*.dll" "$WINDOWS/tests/module/run/test_upload_forms.exe" \
            "${TEST_SCRIPTS[@]}"
    job windows-stops "Runs stopped in every phase" test_in_lane d test_windows_programs test_upload_stops
        after build-windows client; lane d
        reads "$WINDOWS/tests/module/run/test_upload_stops.exe" "${TEST_SCRIPTS[@]}"
    job installer "The zip and the installer in Wine" test_in_lane d tests/release/windows.sh
        after build-windows client guide pascal; lane d
        reads tests/release packaging docs examples tools LICENSE CHANGELOG.md simulator/README.md src/entry/HostInterface.h \
            tests/command/program/shop.sql "demo/*.sql" "$WINDOWS/src/command/tolvane.exe" \
            "$WINDOWS/simulator/virtual-scale.exe" "${DEMO_FILES[@]}"
    job windows-links "Channels and searches for Windows" test_in_lane d test_windows_level integration
        after build-windows client; lane d; alone udp
        reads "$WINDOWS/tests/integration/*/*.exe" "demo/*.sql" "${TEST_SCRIPTS[@]}"
}

test_plan_show() {
    local seconds
    plan_show
    seconds=$(cat "$PLAN_FOLDER/seconds-of-$TEST_KIND" 2>/dev/null || true)
    [ -z "$seconds" ] || say "In all it took $seconds s last time."
}

test_plan_run() {
    local name folders=() status
    plan_run
    status=$PLAN_STATUS
    if [ "$status" -eq 0 ]; then printf '%s\n' "$SECONDS" >"$PLAN_FOLDER/seconds-of-$TEST_KIND"; fi
    for name in "${PLAN[@]}"; do
        case ${JOB_STATE[$name]} in
            passed | failed | current) folders+=("$(job_results "$name")") ;;
        esac
    done
    if [ "$status" -ne 0 ]; then
        for name in "${PLAN[@]}"; do
            if [ "${JOB_STATE[$name]}" = failed ]; then say "FAILED: $name, see $(job_log "$name")"; fi
        done
    fi
    if [ -n "$only" ] && [ -z "$(find "${folders[@]}" -name '*.json')" ]; then exit "$status"; fi
    test_each_ran "${folders[@]}" || status=1
    test_report "${folders[@]}" || status=1
    exit "$status"
}
