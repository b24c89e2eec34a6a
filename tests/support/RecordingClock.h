#pragma once

#include <functional>
#include <vector>

#include "system/Clock.h"

namespace tolvane::test {

// A clock that moves only by pauses, which take no real time and are recorded, and by `perLook`
// each time it is read.
class TRecordingClock : public TClock {
public:
    TTimePoint Now() const override {
        if (onLook) onLook();
        now_ += perLook;
        return now_;
    }
    void Sleep(TMilliseconds pause) override {
        pauses.push_back(pause);
        now_ += pause;
    }
    // The time that has passed on it so far.
    TMilliseconds Passed() const {
        return std::chrono::duration_cast<TMilliseconds>(now_ - start_);
    }

    std::vector<TMilliseconds> pauses;
    TMilliseconds perLook{0};
    std::function<void()> onLook;  // lets a test act between two passes of a waiting loop

private:
    TTimePoint start_{};
    mutable TTimePoint now_{};
};

}  // namespace tolvane::test
