#include "system/LocalTime.h"

#include <windows.h>

namespace tolvane {

namespace {

class TSystemLocalClock : public TLocalClock {
public:
    TLocalDateTime Now() const override {
        SYSTEMTIME now{};
        GetLocalTime(&now);
        return {{now.wYear, now.wMonth, now.wDay},
                {now.wHour, now.wMinute, now.wSecond, now.wMilliseconds}};
    }
};

}  // namespace

const TLocalClock& SystemLocalClock() {
    static const TSystemLocalClock kClock;
    return kClock;
}

}  // namespace tolvane
