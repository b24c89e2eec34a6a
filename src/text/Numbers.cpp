#include "text/Numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "text/Cp1251.h"

namespace tolvane {
namespace {

// What a double holds for certain; further digits come from its binary form.
constexpr int kSignificantDigits = 15;

// digits[0].digits[1]digits[2]... times 10 to the exponent; 15 digits.
struct TDecimal {
    bool negative = false;
    std::string digits;
    int exponent = 0;
};

TDecimal ToDecimal(double value) {
    std::array<char, 40> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(value),
                                   std::chars_format::scientific, kSignificantDigits - 1);
    const std::string_view text(buffer.data(), static_cast<std::size_t>(end.ptr - buffer.data()));
    const std::size_t e = text.find('e');
    TDecimal decimal;
    decimal.negative = std::signbit(value);
    decimal.digits = text.substr(0, 1);
    decimal.digits += text.substr(2, e - 2);
    const std::size_t firstDigit = text[e + 1] == '+' ? e + 2 : e + 1;
    std::from_chars(text.data() + firstDigit, text.data() + text.size(), decimal.exponent);
    return decimal;
}

// Adds one to the last digit; the text grows by a leading 1 when all were nines.
void IncreaseDigits(std::string& digits) {
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit) {
        if (*digit != '9') {
            ++*digit;
            return;
        }
        *digit = '0';
    }
    digits.insert(digits.begin(), '1');
}

// The number without its separator, that is times 10 to the `decimals`, rounded half away from
// zero.
std::string ScaledDigits(const TDecimal& decimal, int decimals) {
    const int kept = decimal.exponent + 1 + decimals;
    if (kept < 0) return "0";
    const auto count = static_cast<std::size_t>(kept);
    std::string digits = decimal.digits.substr(0, count);
    if (count > decimal.digits.size()) {
        digits.append(count - decimal.digits.size(), '0');
    } else if (count < decimal.digits.size() && decimal.digits[count] >= '5') {
        IncreaseDigits(digits);
    }
    return digits.empty() ? "0" : digits;
}

std::string NotANumber(double value) {
    return std::isnan(value) ? "NAN" : value < 0 ? "-INF" : "INF";
}

}  // namespace

std::string FormatFixed(double value, int integerDigits, int decimals, char decimalSeparator) {
    if (!std::isfinite(value)) return NotANumber(value);
    const TDecimal decimal = ToDecimal(value);
    std::string digits = ScaledDigits(decimal, decimals);
    const auto width = static_cast<std::size_t>(integerDigits + decimals);
    if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
    const bool isZero = digits.find_first_not_of('0') == std::string::npos;
    if (decimals > 0)
        digits.insert(digits.size() - static_cast<std::size_t>(decimals), 1, decimalSeparator);
    if (decimal.negative && !isZero) digits.insert(digits.begin(), '-');
    return digits;
}

std::string FormatNumber(double value, char decimalSeparator) {
    if (!std::isfinite(value)) return NotANumber(value);
    std::array<char, 40> buffer{};
    const double plain = value == 0 ? 0 : value;  // without the sign of a negative zero
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), plain,
                                   std::chars_format::general, kSignificantDigits);
    std::string text(buffer.data(), end.ptr);
    std::replace(text.begin(), text.end(), '.', decimalSeparator);
    return text;
}

std::optional<std::int32_t> ParseInteger(std::string_view text) {
    text = Trim(text);
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) return std::nullopt;
    }
    std::int32_t value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
    return value;
}

std::int32_t ParseIntegerOr(std::string_view text, std::int32_t otherwise) {
    return ParseInteger(text).value_or(otherwise);
}

std::optional<double> ParseNumber(std::string_view text, char decimalSeparator) {
    text = Trim(text);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    std::string plain(text);
    for (char& c : plain) {
        if (c == decimalSeparator) {
            c = '.';
        } else if ((c < '0' || c > '9') && c != 'e' && c != 'E' && c != '-' && c != '+') {
            return std::nullopt;
        }
    }
    if (plain.empty() || plain.front() == '-' || plain.front() == '+') return std::nullopt;
    double value = 0;
    const auto result = std::from_chars(plain.data(), plain.data() + plain.size(), value);
    if (result.ec != std::errc() || result.ptr != plain.data() + plain.size()) return std::nullopt;
    return negative ? -value : value;
}

}  // namespace tolvane
