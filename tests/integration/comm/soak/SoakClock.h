#pragma once

#include <chrono>
#include <functional>
#include <thread>

#include "system/Clock.h"

namespace tolvane::test {

// Time that stands still, unless a read is to end in a time-out: `passed` then says at each look
// how much of the read's time has passed. A read that really hangs gets its time-out all the same.
class TSoakClock : public TClock {
public:
    TTimePoint Now() const override {
        if (!reading_) return now_;
        if (looks_++ == 0) {
            deadline_ = now_ + timeout_;
            return now_;
        }
        const TMilliseconds left = leftAtLook ? leftAtLook(looks_) : timeout_;
        if (left < timeout_) now_ = deadline_ - left;
        if (std::chrono::steady_clock::now() - started_ > kPatience) now_ = deadline_;
        return now_;
    }
    // The real thread naps, so that the scale comes to work; the time that passes is the read's
    // own.
    void Sleep(TMilliseconds) override { std::this_thread::sleep_for(kNap); }

    void BeginRead(TMilliseconds timeout) {
        timeout_ = timeout;
        started_ = std::chrono::steady_clock::now();
        looks_ = 0;
        reading_ = true;
    }
    void EndRead() { reading_ = false; }

    // By the number of the look, from 2 on: what is left of the read's time. Unset: all of it.
    std::function<TMilliseconds(int look)> leftAtLook;

private:
    static constexpr std::chrono::seconds kPatience{10};
    static constexpr std::chrono::microseconds kNap{50};

    bool reading_ = false;
    TMilliseconds timeout_{0};
    std::chrono::steady_clock::time_point started_{};
    mutable int looks_ = 0;
    mutable TTimePoint deadline_{};
    mutable TTimePoint now_{};
};

}  // namespace tolvane::test
