#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "text/Cp1251.h"
#include "text/Numbers.h"
#include "text/RegionalSettings.h"

namespace tolvane {
namespace {

constexpr std::array<std::string_view, 12> kMonths = {
    "януари"_cp1251,    "февруари"_cp1251, "март"_cp1251,    "април"_cp1251,
    "май"_cp1251,       "юни"_cp1251,      "юли"_cp1251,     "август"_cp1251,
    "септември"_cp1251, "октомври"_cp1251, "ноември"_cp1251, "декември"_cp1251};
constexpr std::array<std::string_view, 7> kDays = {
    "понеделник"_cp1251, "вторник"_cp1251, "сряда"_cp1251, "четвъртък"_cp1251,
    "петък"_cp1251,      "събота"_cp1251,  "неделя"_cp1251};
constexpr std::size_t kShortNameLength = 3;

// One piece of a pattern: a run of one letter, or literal text.
struct TPiece {
    char letter = 0;  // 0: literal
    std::size_t count = 0;
    std::string_view text;
};

// Cuts the next piece off the pattern; text in single quotes is literal.
TPiece NextPiece(std::string_view& pattern, std::string_view letters) {
    TPiece piece;
    if (pattern[0] == '\'') {
        const std::size_t end = std::min(pattern.find('\'', 1), pattern.size());
        piece.text = pattern.substr(1, end - 1);
        pattern.remove_prefix(std::min(end + 1, pattern.size()));
    } else if (letters.find(pattern[0]) != std::string_view::npos) {
        piece.letter = pattern[0];
        piece.count = std::min(pattern.find_first_not_of(piece.letter), pattern.size());
        pattern.remove_prefix(piece.count);
    } else {
        piece.text = pattern.substr(0, 1);
        pattern.remove_prefix(1);
    }
    return piece;
}

std::string Padded(int number, std::size_t width) {
    std::string text = std::to_string(number);
    if (text.size() < width) text.insert(0, width - text.size(), '0');
    return text;
}

std::string NameOrNumber(int number, std::size_t count, std::string_view name) {
    if (count <= 2) return Padded(number, count);
    return std::string(count == 3 ? name.substr(0, kShortNameLength) : name);
}

std::string DatePiece(const TPiece& piece, TDate date) {
    switch (piece.letter) {
        case 'd':
            return NameOrNumber(date.day, piece.count,
                                kDays[static_cast<std::size_t>(DayOfWeek(date) - 1)]);
        case 'M':
            return NameOrNumber(date.month, piece.count,
                                kMonths[static_cast<std::size_t>(date.month - 1)]);
        case 'y':
            return piece.count <= 2 ? Padded(date.year % 100, piece.count)
                                    : Padded(date.year, piece.count);
        default:
            return std::string(piece.text);
    }
}

std::string TimePiece(const TPiece& piece, TTimeOfDay time, const TRegionalSettings& regional) {
    const std::size_t width = std::min<std::size_t>(piece.count, 2);
    switch (piece.letter) {
        case 'H':
            return Padded(time.hour, width);
        case 'h':
            return Padded(time.hour % 12 == 0 ? 12 : time.hour % 12, width);
        case 'm':
            return Padded(time.minute, width);
        case 's':
            return Padded(time.second, width);
        case 't': {
            const std::string& mark = time.hour < 12 ? regional.morning : regional.afternoon;
            return piece.count == 1 ? mark.substr(0, 1) : mark;
        }
        default:
            return std::string(piece.text);
    }
}

// Takes a mark of noon off the end of the text, without regard to case; true when it was there.
bool TakeMark(std::string_view& text, const std::string& mark) {
    if (mark.empty() || text.size() < mark.size()) return false;
    if (!EqualIgnoringCase(text.substr(text.size() - mark.size()), mark)) return false;
    text = Trim(text.substr(0, text.size() - mark.size()));
    return true;
}

// Numbers between anything that is no digit; nothing when a number is too long or there are
// characters that a time does not have.
std::optional<std::vector<int>> SplitNumbers(std::string_view text) {
    std::vector<int> numbers;
    bool inNumber = false;
    int digits = 0;
    for (const char c : text) {
        if (c >= '0' && c <= '9') {
            if (!inNumber) {
                numbers.push_back(0);
                digits = 0;
            }
            if (++digits > 4) return std::nullopt;
            numbers.back() = numbers.back() * 10 + (c - '0');
            inNumber = true;
        } else if (c == ':' || c == '.' || c == ',' || c == ' ' || c == '-') {
            if (!inNumber) return std::nullopt;
            inNumber = false;
        } else {
            return std::nullopt;
        }
    }
    return numbers;
}

}  // namespace

std::string FormatDate(TDate date, const TRegionalSettings& regional) {
    std::string out;
    for (std::string_view pattern = regional.shortDatePattern; !pattern.empty();)
        out += DatePiece(NextPiece(pattern, "dMy"), date);
    return out;
}

std::string FormatTime(TTimeOfDay time, const TRegionalSettings& regional) {
    std::string out;
    for (std::string_view pattern = regional.longTimePattern; !pattern.empty();)
        out += TimePiece(NextPiece(pattern, "Hhmst"), time, regional);
    return out;
}

std::optional<TTimeOfDay> ParseTime(std::string_view text, const TRegionalSettings& regional) {
    text = Trim(text);
    const bool morning = TakeMark(text, regional.morning);
    const bool afternoon = !morning && TakeMark(text, regional.afternoon);
    const auto numbers = SplitNumbers(text);
    if (!numbers || numbers->empty() || numbers->size() > 4) return std::nullopt;
    const auto part = [&](std::size_t i) { return i < numbers->size() ? (*numbers)[i] : 0; };
    TTimeOfDay time{part(0), part(1), part(2), part(3)};
    if (morning || afternoon) {
        if (time.hour < 1 || time.hour > 12) return std::nullopt;
        time.hour = time.hour % 12 + (afternoon ? 12 : 0);
    }
    if (time.hour > 23 || time.minute > 59 || time.second > 59 || time.millisecond > 999)
        return std::nullopt;
    return time;
}

}  // namespace tolvane
