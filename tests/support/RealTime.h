#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

#include "system/Clock.h"

namespace tolvane::test {

// What a wait may take beyond what it is bounded by.
constexpr TMilliseconds kTolerance{100};

struct TCost {
    TMilliseconds passed{};
    TMilliseconds worked{};  // of this thread
};

// The processor time that this thread has used.
TMilliseconds ThreadTime();

TCost Measure(const std::function<void()>& action);

// Fails when `action` ends before `expected` or more than the tolerance after it, or uses 5 % of a
// core meanwhile. A busy machine can make one measurement late, but not five in a row; none may be
// early.
void ExpectLasts(TMilliseconds expected, const std::function<void()>& action);

// Fails when `action` takes longer than the tolerance, five times in a row.
void ExpectEndsAtOnce(const std::function<void()>& action);

// The system's clock; lets a test act whenever somebody looks at it, on the thread that looks.
class TWatchedClock : public TClock {
public:
    TTimePoint Now() const override {
        if (onLook) onLook();
        return SystemClock().Now();
    }
    void Sleep(TMilliseconds pause) override { SystemClock().Sleep(pause); }

    std::function<void()> onLook;
};

// A peer that goes on sending: calls `send` on a thread of its own every ten milliseconds until it
// is destroyed.
class TSteadySender {
public:
    explicit TSteadySender(std::function<void()> send)
        : thread_([send = std::move(send)](const std::stop_token& stop) {
              std::mutex mutex;
              std::condition_variable_any ended;
              std::unique_lock lock(mutex);
              do
                  send();
              while (!ended.wait_for(lock, stop, TMilliseconds(10),
                                     [&] { return stop.stop_requested(); }));
          }) {}

private:
    std::jthread thread_;
};

}  // namespace tolvane::test
