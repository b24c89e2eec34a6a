#include "articles/PrintTime.h"

#include <array>
#include <cstdio>

namespace tolvane {

std::string PrintTime(const TLocalDateTime& now) {
    std::array<char, 80> text{};
    std::snprintf(text.data(), text.size(), "%02d.%02d.%04d - %02d.%02d.%02d", now.date.day,
                  now.date.month, now.date.year, now.time.hour, now.time.minute, now.time.second);
    return text.data();
}

}  // namespace tolvane
