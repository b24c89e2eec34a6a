#pragma once

#include <chrono>
#include <functional>
#include <thread>

#include "system/Clock.h"

namespace tolvane::test {

// A clock that stands still unless a read is meant to time out: `leftAtLook` then says at each look
// how much of the read's time is left. A read that really hangs still times out.
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
    // The thread really naps, so that the scale gets to work. This clock does not move by it.
    void Sleep(TMilliseconds) override { std::this_thread::sleep_for(kNap); }

    void BeginRead(TMilliseconds timeout) {
        timeout_ = timeout;
        started_ = std::chrono::steady_clock::now();
        looks_ = 0;
        reading_ = true;
    }
    void EndRead() { reading_ = false; }

    // What is left of the read's time at a look, counted from 2 on. Unset: all of it.
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
