#pragma once

#include <functional>
#include <sstream>
#include <vector>

#include "command/World.h"
#include "tests/support/RecordingClock.h"
#include "tests/unit/command/Shop.h"

namespace tolvane::test {

// What a command has around it, with a clock that a test moves and streams that it reads.
struct TTestWorld {
    std::ostringstream out{};
    std::ostringstream err{};
    TRecordingClock clock{};
    int interrupts = 0;
    std::vector<TExitCode> left{};  // by which codes the process was to be left
    std::function<std::chrono::sys_seconds()> now = [] { return kNoon; };
    TWorld world{.out = out,
                 .err = err,
                 .terminal = false,
                 .clock = clock,
                 .localClock = SystemLocalClock(),
                 .now = [this] { return now(); },
                 .interrupts = [this] { return interrupts; },
                 .regional = {},
                 .start = clock.Now(),
                 .leave = [this](TExitCode code) { left.push_back(code); }};
};

}  // namespace tolvane::test
