#pragma once

#include <compare>
#include <cstdint>

namespace tolvane {

// A day of the Gregorian calendar; month and day count from 1.
struct TDate {
    int year = 0;
    int month = 0;
    int day = 0;
    auto operator<=>(const TDate&) const = default;  // NOLINT(modernize-use-nullptr)
};

// A time of day to the millisecond.
struct TTimeOfDay {
    int hour = 0;
    int minute = 0;
    int second = 0;
    int millisecond = 0;
    auto operator<=>(const TTimeOfDay&) const = default;  // NOLINT(modernize-use-nullptr)
};

struct TLocalDateTime {
    TDate date;
    TTimeOfDay time;
    auto operator<=>(const TLocalDateTime&) const = default;  // NOLINT(modernize-use-nullptr)
};

// 1 for Monday to 7 for Sunday.
int DayOfWeek(TDate date);

// The computer's local date and time; tests give their own.
class TLocalClock {
public:
    virtual ~TLocalClock() = default;
    virtual TLocalDateTime Now() const = 0;
};

// The system's clock; may be used from any thread.
const TLocalClock& SystemLocalClock();

}  // namespace tolvane
