#include <chrono>
#include <ctime>

#include "text/LocalTime.h"

namespace tolvane {
namespace {

class TSystemLocalClock final : public TLocalClock {
public:
    TLocalDateTime Now() const override {
        const auto now = std::chrono::system_clock::now();
        const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
        const auto past = now - std::chrono::system_clock::from_time_t(seconds);
        std::tm local{};
        localtime_r(&seconds, &local);
        return {{local.tm_year + 1900, local.tm_mon + 1, local.tm_mday},
                {local.tm_hour, local.tm_min, local.tm_sec,
                 static_cast<int>(
                     std::chrono::duration_cast<std::chrono::milliseconds>(past).count())}};
    }
};

}  // namespace

const TLocalClock& SystemLocalClock() {
    static const TSystemLocalClock clock;
    return clock;
}

}  // namespace tolvane
