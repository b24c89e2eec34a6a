#include "command/OptionValues.h"

#include <cstdint>

#include "text/Numbers.h"

namespace tolvane {
namespace {

// Far more than anybody waits, and few enough to be counted in nanoseconds.
constexpr std::chrono::seconds kLongest = std::chrono::days(10000);

std::int64_t SecondsOf(char unit) {
    switch (unit) {
        case 's':
            return 1;
        case 'm':
            return 60;
        case 'h':
            return 3600;
        case 'd':
            return 86400;
        default:
            return 0;
    }
}

}  // namespace

std::optional<std::chrono::seconds> ParseDuration(const std::string& text) {
    std::string number = text;
    std::int64_t factor = text.empty() ? 0 : SecondsOf(text.back());
    if (factor > 0)
        number.pop_back();
    else
        factor = 1;
    if (number.find_first_not_of("0123456789") != std::string::npos) return std::nullopt;
    const std::optional<std::int32_t> count = ParseInteger(number);
    if (!count) return std::nullopt;
    const std::chrono::seconds duration(*count * factor);
    return duration <= kLongest ? std::optional(duration) : std::nullopt;
}

std::filesystem::path PathOf(const std::string& utf8) {
    return std::u8string(utf8.begin(), utf8.end());
}

}  // namespace tolvane
