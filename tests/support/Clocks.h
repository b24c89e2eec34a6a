#pragma once

#include <algorithm>
#include <chrono>
#include <thread>

#include "system/Clock.h"

namespace tolvane::test {

// The system's clock, so many times as fast: pauses and time-outs are real waits, but short.
class TFastClock : public TClock {
public:
    explicit TFastClock(int faster) : faster_(faster) {}
    TTimePoint Now() const override { return start_ + (SystemClock().Now() - start_) * faster_; }
    void Sleep(TMilliseconds pause) override {
        std::this_thread::sleep_for(std::chrono::microseconds(pause) / faster_);
    }

private:
    int faster_;
    const TTimePoint start_ = SystemClock().Now();
};

// The system's clock with no pause above a limit; time-outs stay.
class TQuickClock : public TClock {
public:
    explicit TQuickClock(TMilliseconds longestPause) : longestPause_(longestPause) {}
    TTimePoint Now() const override { return SystemClock().Now(); }
    void Sleep(TMilliseconds pause) override {
        SystemClock().Sleep(std::min(pause, longestPause_));
    }

private:
    TMilliseconds longestPause_;
};

}  // namespace tolvane::test
