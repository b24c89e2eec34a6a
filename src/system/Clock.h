#pragma once

#include <chrono>

namespace tolvane {

using TMilliseconds = std::chrono::milliseconds;
using TTimePoint = std::chrono::steady_clock::time_point;

// Deadlines and pauses. Monotonic: setting the computer's clock changes nothing. Tests give a clock
// whose pauses take no time.
class TClock {
public:
    virtual ~TClock() = default;
    virtual TTimePoint Now() const = 0;
    virtual void Sleep(TMilliseconds pause) = 0;
};

// The system's monotonic clock; may be used from any thread.
TClock& SystemClock();

}  // namespace tolvane
