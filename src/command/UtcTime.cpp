#include "command/UtcTime.h"

#include <array>
#include <cstddef>

namespace tolvane {
namespace {

constexpr std::string_view kForm = "0000-00-00T00:00:00Z";

struct TPart {
    std::size_t start;
    std::size_t length;
};
constexpr std::array<TPart, 6> kParts = {{{0, 4}, {5, 2}, {8, 2}, {11, 2}, {14, 2}, {17, 2}}};

void Put(int number, TPart part, std::string& text) {
    for (std::size_t i = part.start + part.length; i > part.start; number /= 10)
        text[--i] = static_cast<char>('0' + number % 10);
}

bool HasForm(std::string_view text) {
    if (text.size() != kForm.size()) return false;
    for (std::size_t i = 0; i < kForm.size(); ++i) {
        const bool isDigit = text[i] >= '0' && text[i] <= '9';
        if (kForm[i] == '0' ? !isDigit : text[i] != kForm[i]) return false;
    }
    return true;
}

}  // namespace

std::string UtcText(std::chrono::sys_seconds time) {
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(time - day);
    const std::array<int, 6> numbers = {static_cast<int>(date.year()),
                                        static_cast<int>(static_cast<unsigned>(date.month())),
                                        static_cast<int>(static_cast<unsigned>(date.day())),
                                        static_cast<int>(clock.hours().count()),
                                        static_cast<int>(clock.minutes().count()),
                                        static_cast<int>(clock.seconds().count())};
    std::string text(kForm);
    for (std::size_t i = 0; i < kParts.size(); ++i)
        Put(numbers[i], kParts[i], text);
    return text;
}

std::optional<std::chrono::sys_seconds> ParseUtc(std::string_view text) {
    if (!HasForm(text)) return std::nullopt;
    std::array<int, 6> numbers{};
    for (std::size_t i = 0; i < kParts.size(); ++i) {
        for (const char c : text.substr(kParts[i].start, kParts[i].length))
            numbers[i] = numbers[i] * 10 + (c - '0');
    }
    const std::chrono::year_month_day date(std::chrono::year(numbers[0]),
                                           std::chrono::month(static_cast<unsigned>(numbers[1])),
                                           std::chrono::day(static_cast<unsigned>(numbers[2])));
    if (!date.ok() || numbers[3] > 23 || numbers[4] > 59 || numbers[5] > 59) return std::nullopt;
    return std::chrono::sys_days(date) + std::chrono::hours(numbers[3]) +
           std::chrono::minutes(numbers[4]) + std::chrono::seconds(numbers[5]);
}

}  // namespace tolvane
