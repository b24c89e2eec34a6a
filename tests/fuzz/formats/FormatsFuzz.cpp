#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "articles/Promotion.h"
#include "entry/HostInterface.h"
#include "entry/HostText.h"
#include "system/RegionalSettings.h"
#include "tests/fuzz/Fuzz.h"
#include "text/Cp1251.h"
#include "text/IpAddress.h"
#include "text/Numbers.h"

namespace tolvane {
namespace {

using fuzz::Must;
using fuzz::TInput;

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// Whether a number with this separator can be read again.
bool IsSeparator(char c) {
    return !IsDigit(c) && c != '+' && c != '-' && c != 'e' && c != 'E';
}

bool IsNear(double a, double b, double room) {
    return std::abs(a - b) <= room + std::abs(b) * 2e-15;
}

void TryNumber(TInput& input) {
    const auto separator = static_cast<char>(input.Byte());
    const int integerDigits = 1 + static_cast<int>(input.Below(7));
    const int decimals = static_cast<int>(input.Below(6));
    const bool isPlain = input.Byte() < 0x80;
    const double value = isPlain ? input.Number<std::int32_t>() / 1000.0 : input.Number<double>();
    const double shown = std::isfinite(value) ? value : 0.0;
    const std::string fixed = FormatFixed(value, integerDigits, decimals, separator);
    const std::string usual = FormatNumber(value, separator);
    if (!IsSeparator(separator)) return;
    const std::size_t point =
        fixed.size() - (decimals > 0 ? static_cast<std::size_t>(decimals) + 1 : 0);
    const std::size_t sign = fixed.starts_with('-') ? 1 : 0;
    Must(point >= sign + static_cast<std::size_t>(integerDigits), "digits are there");
    Must(decimals == 0 || fixed[point] == separator, "the separator stands before the decimals");
    Must(sign == 0 || shown < 0, "only what is below zero has a sign");
    // 15 digits of the largest numbers may be more than any number.
    const bool isLargest = std::abs(shown) > 1.79e308;
    if (!isLargest) {
        const auto read = ParseNumber(fixed, separator);
        Must(read && IsNear(*read, shown,
                            0.5000001 * std::pow(10.0, -decimals) + 1e-14 * std::abs(shown)),
             "a formatted number is read");
    }
    const auto read = ParseNumber(usual, separator);
    Must(isLargest || (read && IsNear(*read, shown, 1e-14 * std::abs(shown))), "a number is read");
    Must(ParseNumber(" " + usual + "\t", separator) == read, "blanks around a number do not count");
    if (read)
        Must(FormatNumber(*read, separator) == usual, "a number that was read looks the same");
}

// A decimal number with a point, by its form alone.
bool IsPlainNumber(const std::string& text) {
    std::size_t at = 0;
    const auto digits = [&] {
        const std::size_t from = at;
        while (at < text.size() && IsDigit(text[at]))
            ++at;
        return at - from;
    };
    const auto sign = [&] {
        if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
    };
    sign();
    std::size_t mantissa = digits();
    if (at < text.size() && text[at] == '.') {
        ++at;
        mantissa += digits();
    }
    if (mantissa == 0) return false;
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        ++at;
        sign();
        if (digits() == 0) return false;
    }
    return at == text.size();
}

void TryNumberText(TInput& input) {
    const std::string text = input.RestAsText();
    const std::string trimmed(Trim(text));
    const auto number = ParseNumber(text, '.');
    const double plain = std::strtod(trimmed.c_str(), nullptr);
    if (!IsPlainNumber(trimmed))
        Must(!number, "what is no number is refused");
    else if (number)
        Must(*number == plain, "a number has its value");
    else
        Must(!std::isfinite(plain) || std::abs(plain) < 1e-300, "a number is read");
    const auto integer = ParseInteger(text);
    const bool isInteger = IsPlainNumber(trimmed) &&
                           trimmed.find_first_of(".eE") == std::string::npos &&
                           std::abs(plain) < 2147483648.0 + (plain < 0 ? 1 : 0);
    Must(integer.has_value() == isInteger, "an integer is one");
    Must(!integer || static_cast<double>(*integer) == plain, "an integer has its value");
    Must(ParseIntegerOr(text, -5) == integer.value_or(-5), "an integer or its default");
}

TTimeOfDay TimeFrom(TInput& input) {
    const int hour = static_cast<int>(input.Below(24));
    const int minute = static_cast<int>(input.Below(60));
    return {.hour = hour, .minute = minute, .second = static_cast<int>(input.Below(60))};
}

TDate DateFrom(TInput& input) {
    const int year = 1 + static_cast<int>(input.Number<std::uint16_t>() % 9999);
    const int month = 1 + static_cast<int>(input.Below(12));
    return {.year = year, .month = month, .day = 1 + static_cast<int>(input.Below(28))};
}

// Any patterns and names.
void TryRegional(TInput& input) {
    TRegionalSettings regional;
    const TTimeOfDay time = TimeFrom(input);
    const TDate date = DateFrom(input);
    regional.shortDatePattern = input.Text();
    regional.longTimePattern = input.Text();
    regional.morning = input.Text();
    regional.afternoon = input.Text();
    regional.shortMonths.fill(input.Text());
    regional.longDays.fill(input.Text());
    FormatDate(date, regional);
    const std::string formatted = FormatTime(time, regional);
    for (const std::string& text : {formatted, input.Text()}) {
        const auto read = ParseTime(text, regional);
        Must(!read || (read->hour >= 0 && read->hour < 24 && read->minute >= 0 &&
                       read->minute < 60 && read->second >= 0 && read->second < 60),
             "a time is one of the day");
    }
    const std::string from = input.Text();
    const std::string to = input.Text();
    const std::string days = input.Text();
    const TLocalDateTime now{.date = date, .time = time};
    if (IsPromotionValid({.days = days, .fromTime = from, .toTime = to}, now, regional))
        Must(days.size() >= static_cast<std::size_t>(DayOfWeek(date)) &&
                 days[static_cast<std::size_t>(DayOfWeek(date) - 1)] == '1',
             "a promotion is valid on its days");
    Must(IsPromotionValid({.days = "1111111", .fromTime = "", .toTime = ""}, now, regional),
         "a promotion without limits is always valid");
}

bool IsOnly(const std::string& text, bool (*is)(char)) {
    return std::all_of(text.begin(), text.end(), is);
}

// Patterns whose text says which time it is: that time is read again.
void TryTimePattern(TInput& input) {
    const std::uint8_t form = input.Byte();
    const TTimeOfDay time = TimeFrom(input);
    TRegionalSettings regional;
    const auto letters = [&](char letter, int bit) {
        return std::string((form >> bit & 1) + 1U, letter);
    };
    const bool onDial = (form & 0x08) != 0;
    const auto isSeparator = [](char c) {
        return !IsDigit(c) && c != '\'' &&
               std::string_view("Hhmst").find(c) == std::string_view::npos;
    };
    const auto isText = [](char c) { return !IsDigit(c); };
    const std::string separator = input.Text();
    if (separator.empty() || !IsOnly(separator, isSeparator)) return;
    regional.longTimePattern =
        letters(onDial ? 'h' : 'H', 0) + separator + letters('m', 1) + separator + letters('s', 2);
    if (onDial) {
        regional.morning = input.Text();
        regional.afternoon = input.Text();
        const std::string_view am = Trim(regional.morning);
        const std::string_view pm = Trim(regional.afternoon);
        const std::size_t shorter = std::min(am.size(), pm.size());
        if (shorter == 0 || EqualIgnoringCase(am.substr(0, shorter), pm.substr(0, shorter))) return;
        if (!IsOnly(regional.morning, isText) || !IsOnly(regional.afternoon, isText)) return;
        if ((form & 0x10) != 0)
            regional.longTimePattern = "tt " + regional.longTimePattern;
        else
            regional.longTimePattern += " tt";
    }
    Must(ParseTime(FormatTime(time, regional), regional) == time, "a formatted time is read");
    const std::string colons = std::to_string(time.hour) + ":" + std::to_string(time.minute) + ":" +
                               std::to_string(time.second);
    if (!onDial) Must(ParseTime(colons, regional) == time, "a time with colons is read");
}

// A pattern of numbers: each stands in its place.
void TryDatePattern(TInput& input) {
    const std::uint8_t form = input.Byte();
    const TDate date = DateFrom(input);
    const std::string separator = input.Text();
    const auto isSeparator = [](char c) {
        return c != '\'' && std::string_view("dMy").find(c) == std::string_view::npos;
    };
    if (separator.empty() || !IsOnly(separator, isSeparator)) return;
    const auto digits = [](int number, std::size_t least) {
        const std::string text = std::to_string(number);
        return std::string(least > text.size() ? least - text.size() : 0, '0') + text;
    };
    const std::size_t dayDigits = (form & 1) != 0 ? 2 : 1;
    const std::size_t monthDigits = (form & 2) != 0 ? 2 : 1;
    const bool isWholeYear = (form & 4) != 0;
    using TPlace = std::pair<std::string, std::string>;  // in the pattern and in the text
    std::array places = {TPlace{std::string(dayDigits, 'd'), digits(date.day, dayDigits)},
                         TPlace{std::string(monthDigits, 'M'), digits(date.month, monthDigits)},
                         TPlace{isWholeYear ? "yyyy" : "yy",
                                isWholeYear ? digits(date.year, 4) : digits(date.year % 100, 2)}};
    std::rotate(places.begin(), places.begin() + form / 8 % 3, places.end());
    TRegionalSettings regional;
    std::string expected;
    regional.shortDatePattern.clear();
    for (const auto& [pattern, text] : places) {
        regional.shortDatePattern += pattern + separator;
        expected += text + separator;
    }
    Must(FormatDate(date, regional) == expected, "a date stands as its pattern says");
}

// Well-formed UTF-8, by its definition: the shortest form of each code point, no surrogates.
bool IsPlainUtf8(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const auto lead = static_cast<unsigned char>(text[at]);
        const std::size_t length = lead < 0x80   ? 1
                                   : lead < 0xC0 ? 0
                                   : lead < 0xE0 ? 2
                                   : lead < 0xF0 ? 3
                                   : lead < 0xF8 ? 4
                                                 : 0;
        if (length == 0 || at + length > text.size()) return false;
        std::uint32_t code = length == 1 ? lead : lead & (0x7FU >> length);
        for (std::size_t i = 1; i < length; ++i) {
            const auto next = static_cast<unsigned char>(text[at + i]);
            if (next < 0x80 || next > 0xBF) return false;
            code = code * 64 + (next - 0x80U);
        }
        constexpr std::array<std::uint32_t, 5> kLowest = {0, 0, 0x80, 0x800, 0x10000};
        if (code < kLowest.at(length) || code > 0x10FFFF) return false;
        if (code >= 0xD800 && code < 0xE000) return false;
        at += length;
    }
    return true;
}

void TryText(TInput& input) {
    const std::string needle = input.Text();
    const std::string text = input.RestAsText();
    const std::string utf8 = ToUtf8(text);
    Must(IsUtf8(utf8) && FromUtf8(utf8) == text, "a text survives UTF-8");
    Must(FromUtf16(ToUtf16(text)) == text, "a text survives UTF-16");
    Must(IsUtf8(text) == IsPlainUtf8(text), "UTF-8 is what it plainly is");
    Must(FromUtf8(text).size() <= text.size(), "a character has a byte at least");
    std::u16string wide;
    for (std::size_t i = 0; i + 1 < text.size(); i += 2)
        wide += static_cast<char16_t>(static_cast<unsigned char>(text[i]) |
                                      static_cast<unsigned char>(text[i + 1]) << 8U);
    Must(FromUtf16(wide).size() <= wide.size(), "a character has a unit at least");
    const std::string upper = UpperCase(text);
    Must(UpperCase(upper) == upper && EqualIgnoringCase(upper, text), "upper case is one");
    Must(HashIgnoringCase(upper, 7) == HashIgnoringCase(text, 7), "equal texts have equal hashes");
    Must(CompareIgnoringCase(needle, text) == -CompareIgnoringCase(text, needle),
         "an order is one");
    const bool isIn = upper.find(UpperCase(needle)) != std::string::npos;
    Must(TTextFinder(needle).IsIn(text) == isIn, "a text is found where it is");
    Must(ContainsUpperCased(text, UpperCase(needle)) == isIn, "and in a short way");
}

void TryAddress(TInput& input) {
    const auto address = input.Number<std::uint32_t>();
    Must(ParseIpV4(IpV4Text(address)) == address, "an address is read");
    const std::string text = input.RestAsText();
    const auto read = ParseIpV4(text);
    if (!read) return;
    Must(ParseIpV4(IpV4Text(*read)) == read, "what was read is an address");
    Must(std::count(text.begin(), text.end(), '.') == 3 &&
             text.find_first_not_of("0123456789. ") == std::string::npos,
         "an address has four numbers");
}

// A host's text with nothing readable around it but what the interface promises.
void TryHostText(TInput& input) {
    const auto length = static_cast<std::int32_t>(input.Number<std::uint32_t>());
    const auto text = input.Rest();
    const bool isTrue = length >= 0 && static_cast<std::size_t>(length) <= text.size();
    const std::int32_t told =
        isTrue || length < 0 ? length : static_cast<std::int32_t>(text.size());
    const std::size_t size = told > 0 ? static_cast<std::size_t>(told) : 0;
    const std::unique_ptr<char[]> block(new char[sizeof told + size]);
    std::memcpy(block.get(), &told, sizeof told);
    if (size > 0) std::memcpy(block.get() + sizeof told, text.data(), size);
    const std::string read = ReadHostText(block.get() + sizeof told);
    Must(read == std::string(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(size)),
         "a host's text is read");
}

}  // namespace
}  // namespace tolvane

// A letter for the subject, then its input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tolvane::fuzz::TInput input(data, size);
    switch (input.Byte()) {
        case 'n':
            tolvane::TryNumber(input);
            break;
        case 'd':
            tolvane::TryNumberText(input);
            break;
        case 'r':
            tolvane::TryRegional(input);
            break;
        case 'p':
            tolvane::TryTimePattern(input);
            break;
        case 'y':
            tolvane::TryDatePattern(input);
            break;
        case 't':
            tolvane::TryText(input);
            break;
        case 'a':
            tolvane::TryAddress(input);
            break;
        case 'h':
            tolvane::TryHostText(input);
            break;
        default:
            return -1;
    }
    return 0;
}
