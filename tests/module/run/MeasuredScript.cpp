#include "MeasuredScript.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace tolvane::test {
namespace {

// Far longer than a run here takes, even on a busy machine.
constexpr DWORD kPatienceMs = 60000;

[[noreturn]] void GiveUp(const std::string& reason) {
    std::fprintf(stderr, "%s\n", reason.c_str());
    std::_Exit(3);
}

}  // namespace

void TMeasuredScript::Measure() {
    turns_ = 0;
    longestGap_ = 0;
    lastTurn_ = GetTickCount();
}

void TMeasuredScript::Look() {
    const DWORD now = GetTickCount();
    longestGap_ = std::max(longestGap_, now - lastTurn_);
    lastTurn_ = now;
    ++turns_;
    const std::size_t before = StepsTaken();
    TUserScript::Look();
    if (StepsTaken() != before) {
        lastTurn_ = GetTickCount();
    } else if (MillisecondsIdle() > kPatienceMs) {
        GiveUp(IsDone() ? "the call does not return"
                        : "step " + std::to_string(before + 1) + " waits in vain");
    }
}

}  // namespace tolvane::test
