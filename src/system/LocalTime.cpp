#include "system/LocalTime.h"

#include <chrono>

namespace tolvane {

int DayOfWeek(TDate date) {
    const std::chrono::year_month_day day(std::chrono::year(date.year),
                                          std::chrono::month(static_cast<unsigned>(date.month)),
                                          std::chrono::day(static_cast<unsigned>(date.day)));
    return static_cast<int>(std::chrono::weekday(std::chrono::sys_days(day)).iso_encoding());
}

}  // namespace tolvane
