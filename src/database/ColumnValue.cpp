#include "database/ColumnValue.h"

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <optional>

#include "database/DatabaseError.h"
#include "text/Cp1251.h"
#include "text/Numbers.h"

namespace tolvane {
namespace {

// Day 0 of the server's calendar, seen from day 0 of the system's (1 January 1970).
constexpr int kDayZero = -40587;
constexpr std::uint32_t kTicksPerMillisecond = 10;
constexpr std::uint32_t kTicksPerSecond = 10000;

TDate DateOf(std::int32_t days) {
    const std::chrono::year_month_day date{
        std::chrono::sys_days{std::chrono::days{std::int64_t{days} + kDayZero}}};
    return {static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day()))};
}

TTimeOfDay TimeOf(std::uint32_t ticks) {
    const auto seconds = static_cast<int>(ticks / kTicksPerSecond);
    const auto milliseconds = static_cast<int>(ticks % kTicksPerSecond / kTicksPerMillisecond);
    return {seconds / 3600, seconds / 60 % 60, seconds % 60, milliseconds};
}

// Exact, without the zeros that end the fraction: 125000 at scale -4 is "12,5".
std::string ScaledText(std::int64_t integer, int scale, char decimalSeparator) {
    std::string digits = std::to_string(integer);
    std::string text;
    if (integer < 0) {
        text = "-";
        digits.erase(0, 1);
    }
    if (scale >= 0)
        return text.append(digits).append(
            integer == 0 ? std::size_t{0} : static_cast<std::size_t>(scale), '0');
    const auto decimals = static_cast<std::size_t>(-scale);
    const std::size_t missing = digits.size() <= decimals ? decimals + 1 - digits.size() : 0;
    std::string padded(missing, '0');
    padded.append(digits);
    const std::size_t whole = padded.size() - decimals;
    const std::size_t end = padded.find_last_not_of('0') + 1;
    text.append(padded, 0, whole);
    if (end > whole) text.append(1, decimalSeparator).append(padded, whole, end - whole);
    return text;
}

// Up to 22 they are exact, so one division by them rounds correctly.
constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                   1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

double ScaledNumber(std::int64_t integer, int scale) {
    const auto digits = static_cast<std::size_t>(std::abs(scale));
    const double power =
        digits < std::size(kPowersOfTen) ? kPowersOfTen[digits] : std::pow(10.0, std::abs(scale));
    const auto whole = static_cast<double>(integer);
    return scale < 0 ? whole / power : whole * power;
}

[[noreturn]] void ThrowConversion(const TColumnValue& value, std::string_view column,
                                  const TRegionalSettings& regional, std::string_view what) {
    throw TDatabaseError(std::string("Колона "_cp1251)
                             .append(1, '"')
                             .append(column)
                             .append("\": \"")
                             .append(ValueAsText(value, regional))
                             .append("\" ")
                             .append(what));
}

std::optional<double> TextAsNumber(std::string_view text, const TRegionalSettings& regional) {
    if (const auto number = ParseNumber(text, regional.decimalSeparator)) return number;
    return ParseNumber(text, '.');
}

std::optional<double> NumberOf(const TColumnValue& value, const TRegionalSettings& regional) {
    switch (value.kind) {
        case TValueKind::Null:
            return 0.0;
        case TValueKind::Integer:
        case TValueKind::Boolean:
            return ScaledNumber(value.integer, value.scale);
        case TValueKind::Float:
            return value.number;
        case TValueKind::Text:
            return TextAsNumber(value.text, regional);
        default:
            return std::nullopt;
    }
}

}  // namespace

std::string ValueAsText(const TColumnValue& value, const TRegionalSettings& regional) {
    switch (value.kind) {
        case TValueKind::Null:
            return {};
        case TValueKind::Integer:
        case TValueKind::Boolean:
            return ScaledText(value.integer, value.scale, regional.decimalSeparator);
        case TValueKind::Float:
            return FormatNumber(value.number, regional.decimalSeparator);
        case TValueKind::Date:
            return FormatDate(DateOf(value.days), regional);
        case TValueKind::Time:
            return FormatTime(TimeOf(value.ticks), regional);
        case TValueKind::Timestamp: {
            std::string text = FormatDate(DateOf(value.days), regional);
            if (value.ticks != 0)
                text.append(1, ' ').append(FormatTime(TimeOf(value.ticks), regional));
            return text;
        }
        case TValueKind::Text:
            break;
    }
    return std::string(value.text);
}

std::int32_t ValueAsInteger(const TColumnValue& value, std::string_view column,
                            const TRegionalSettings& regional) {
    constexpr std::string_view kNoInteger = "не е цяло число"_cp1251;
    const std::optional<double> number = NumberOf(value, regional);
    if (!number || *number != std::trunc(*number))
        ThrowConversion(value, column, regional, kNoInteger);
    if (*number < std::numeric_limits<std::int32_t>::min() ||
        *number > std::numeric_limits<std::int32_t>::max())
        ThrowConversion(value, column, regional, "е извън границите на целите числа"_cp1251);
    return static_cast<std::int32_t>(*number);
}

double ValueAsFloat(const TColumnValue& value, std::string_view column,
                    const TRegionalSettings& regional) {
    const std::optional<double> number = NumberOf(value, regional);
    if (!number) ThrowConversion(value, column, regional, "не е число"_cp1251);
    return *number;
}

}  // namespace tolvane
