#!/usr/bin/env bash
# Plants one fault of each kind in a tree of its own and expects the layers check to name it.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

expect_include() { # title, file, include, expected words ("" for no complaint)
    expect_line "$1" "$2" "#include $3" "$4"
}

expect_line() { # title, file, its only line, expected words ("" for no complaint)
    local expected="0 "
    rm -rf "${tree:?}"/*
    mkdir -p "$tree"/src/{text,system,config,settings/forms,comm,scale,articles,upload/forms,database,window,entry} \
        "$tree"/{host,simulator,demo/driver}
    printf '%s\n' "$3" >"$tree/$2"
    run "$root/scripts/check-layers.sh" "$tree"
    [ -z "$4" ] || expected="1 $2:1: *$4*"
    expect "$1" "$expected" "$code $out"
}

expect_include "Windows in portable code" src/scale/a.cpp '<windows.h>' "Windows halves of src/system and the simulator only"
expect_include "Windows in a half of the folder for systems" src/system/a_win32.cpp '<windows.h>' ""
expect_include "Windows in that folder's portable code" src/system/a.cpp '<windows.h>' "Windows halves of src/system and the simulator only"
expect_line "a half for Windows in another folder" src/comm/a_win32.cpp '' "is for src/system"
expect_line "a half for Linux in another folder" src/config/a_posix.cpp '' "is for src/system"
expect_include "Windows in a form" src/upload/forms/a.cpp '<windows.h>' ""
expect_include "client library outside database" src/articles/a.cpp '<ibase.h>' "src/database only"
expect_include "client library in database" src/database/a.cpp '<ibase.h>' ""
expect_include "Asio outside the channels" src/scale/a.h '<asio.hpp>' "src/system, src/comm and the simulator only"
expect_include "Boost outside the simulator" src/comm/a.cpp '<boost/beast/http/parser.hpp>' "is for the simulator only"
expect_include "Boost in the simulator" simulator/a.cpp '<boost/beast/http/parser.hpp>' ""
expect_include "a lower folder uses a higher one" src/comm/a.h '"scale/DevElicomScaleUnit.h"' "must not include"
expect_include "siblings" src/config/a.h '"comm/MyCPort.h"' "must not include"
expect_include "texts do not know the system" src/text/a.h '"system/Clock.h"' "must not include"
expect_include "portable code uses what the settings windows decide" src/upload/a.cpp '"settings/IpMask.h"' "must not include"
expect_include "portable code uses a form" src/upload/a.cpp '"upload/forms/SetPluUnit.h"' "must not include"
expect_include "a form uses what lies under it" src/upload/forms/a.cpp '"upload/ScaleRun.h"' ""
expect_include "simulator uses the driver" simulator/a.cpp '"scale/ScaleFrame.h"' "must not include"
expect_include "host uses module internals" host/a.cpp '"entry/ModuleState.h"' "must not include"
expect_include "the demo's driver uses the module" demo/driver/a.cpp '"upload/ScaleRun.h"' "must not include"
expect_include "a header of its own folder without the folder" src/scale/a.cpp '"ScaleFrame.h"' "is not named from src"
expect_include "a header by a way up" src/comm/a.cpp '"../config/TypesUnit.h"' "is not named from src"
expect_include "host uses the host interface" host/a.cpp '"entry/HostInterface.h"' ""

for reading in 'std::chrono::system_clock::now();' 'std::chrono::steady_clock::now();' 'time(nullptr);' \
    'gettimeofday(&now, nullptr);' 'GetLocalTime(&now);' 'GetSystemTimeAsFileTime(&now);' \
    'GetTickCount();' 'std::this_thread::sleep_for(pause);' 'usleep(10);' '#include "system/LocalTime.h"'; do
    expect_line "a channel does not say: $reading" src/comm/a.cpp "$reading" "reads a clock"
done
expect_line "the driver does not read a clock" src/scale/a.cpp 'std::time(nullptr);' "reads a clock"
expect_line "the clock does" src/system/Clock.cpp 'std::chrono::steady_clock::now();' ""
expect_line "a channel asks its own clock" src/comm/a.cpp 'clock_.Sleep(clock_.Now() - began);' ""
expect_line "a channel knows what a point in time is" src/comm/a.h \
    'using TTimePoint = std::chrono::steady_clock::time_point;' ""

expect_end
