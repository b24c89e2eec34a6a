#pragma once

#include <algorithm>
#include <chrono>
#include <thread>

#include "system/Clock.h"

namespace tolvane::test {

struct TPace {
    int faster = 1;         // all time passes this many times as fast
    int shorterPauses = 1;  // pauses are divided by this; time-outs stay
    TMilliseconds longestPause = TMilliseconds::max();
};

// The system's clock for tests that cannot wait as long as a scale needs; its waits are real.
class TQuickClock : public TClock {
public:
    explicit TQuickClock(const TPace& pace) : pace_(pace) {}
    TTimePoint Now() const override {
        return start_ + (SystemClock().Now() - start_) * pace_.faster;
    }
    void Sleep(TMilliseconds pause) override {
        std::this_thread::sleep_for(std::chrono::microseconds(std::min(pause, pace_.longestPause)) /
                                    (pace_.faster * pace_.shorterPauses));
    }

private:
    const TPace pace_;
    const TTimePoint start_ = SystemClock().Now();
};

}  // namespace tolvane::test
