#include <windows.h>

#include "text/LocalTime.h"

namespace tolvane {
namespace {

class TSystemLocalClock final : public TLocalClock {
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
    static const TSystemLocalClock clock;
    return clock;
}

}  // namespace tolvane
