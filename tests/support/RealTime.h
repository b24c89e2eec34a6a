#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

#include "system/Clock.h"

namespace tolvane::test {

// By how much a wait may exceed its limit.
constexpr TMilliseconds kTolerance{100};

struct TCost {
    TMilliseconds passed{};
    TMilliseconds worked{};  // of this thread
};

// The processor time that this thread has used.
TMilliseconds ThreadTime();

TCost Measure(const std::function<void()>& action);

// Fails the test when `action` takes less than `expected` or more than that and the tolerance, or
// when it works for 5 % of the expected time. A busy machine can make one measurement late, so only
// five late ones in a row fail; a single early one fails.
void ExpectLasts(TMilliseconds expected, const std::function<void()>& action);

// Fails the test when `action` takes longer than the tolerance five times in a row.
void ExpectEndsAtOnce(const std::function<void()>& action);

// The system's clock. Calls `onLook` whenever it is read, on the thread that reads it.
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
