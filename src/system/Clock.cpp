#include "system/Clock.h"

#include <thread>

namespace tolvane {
namespace {

class TSystemClock : public TClock {
public:
    TTimePoint Now() const override { return std::chrono::steady_clock::now(); }
    void Sleep(TMilliseconds pause) override { std::this_thread::sleep_for(pause); }
};

}  // namespace

TClock& SystemClock() {
    static TSystemClock clock;
    return clock;
}

}  // namespace tolvane
