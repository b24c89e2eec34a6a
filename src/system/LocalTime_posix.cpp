#include "system/LocalTime.h"

#include <ctime>

namespace tolvane {

namespace {

class TSystemLocalClock : public TLocalClock {
public:
    TLocalDateTime Now() const override {
        timespec now{};
        clock_gettime(CLOCK_REALTIME, &now);
        tm local{};
        localtime_r(&now.tv_sec, &local);
        return {
            {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday},
            {local.tm_hour, local.tm_min, local.tm_sec, static_cast<int>(now.tv_nsec / 1'000'000)}};
    }
};

}  // namespace

const TLocalClock& SystemLocalClock() {
    static const TSystemLocalClock kClock;
    return kClock;
}

}  // namespace tolvane
