#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <ostream>

#include "command/EventLog.h"
#include "command/ExitCode.h"
#include "command/PageFile.h"
#include "system/Clock.h"
#include "system/Console.h"
#include "system/LocalTime.h"
#include "system/RegionalSettings.h"

namespace tolvane {

// What a command has around it; tests give their own. All parts outlive the command.
struct TWorld {
    std::ostream& out;  // data, UTF-8
    std::ostream& err;  // everything else, UTF-8
    bool terminal;      // err is one
    TClock& clock;
    const TLocalClock& localClock;
    std::function<std::chrono::sys_seconds()> now;
    std::function<int()> interrupts;
    TRegionalSettings regional;
    TTimePoint start{};                      // of the program, by `clock`
    std::function<void(TExitCode)> leave{};  // ends the process at once
    // How long the database may take for one answer.
    std::chrono::milliseconds longestAnswer = std::chrono::seconds(60);
    // How long the embedded engine may take to end what it does: far more than an attachment or a
    // list of articles takes.
    std::chrono::milliseconds longestEnding = std::chrono::seconds(2);
    // Of the terminal, as it is now.
    std::function<std::size_t()> columns = [] { return kUsualColumns; };
    TEventLog log{};   // what --log names; RunCommand opens it
    TPageFile page{};  // what --report names; the same
};

}  // namespace tolvane
