#include "text/Numbers.h"

#include <array>
#include <charconv>
#include <cmath>

#include "text/Cp1251.h"

namespace tolvane {

namespace {

constexpr int kSignificantDigits = 15;

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// A number as 0.DIGITS times ten to the power of pointAt; no digits stand for zero.
struct TDecimal {
    bool negative = false;
    std::string digits;
    int pointAt = 0;
};

TDecimal ToDecimal(double value) {
    if (!std::isfinite(value) || value == 0.0) return {};
    std::array<char, 40> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), std::abs(value),
                                   std::chars_format::scientific, kSignificantDigits - 1)
                         .ptr;
    const std::string_view all(text.data(), static_cast<std::size_t>(end - text.data()));
    const std::size_t mark = all.find('e');
    const std::string_view mantissa = all.substr(0, mark);  // d.dddddddddddddd
    TDecimal decimal;
    decimal.negative = value < 0;
    decimal.digits = std::string(mantissa.substr(0, 1)) + std::string(mantissa.substr(2));
    decimal.pointAt = ParseIntegerOr(all.substr(mark + 1), 0) + 1;
    return decimal;
}

// Keeps the digits up to `decimals` places after the point, half away from zero.
void RoundTo(TDecimal& number, int decimals) {
    const int keep = number.pointAt + decimals;
    if (keep >= static_cast<int>(number.digits.size())) return;
    const auto kept = static_cast<std::size_t>(keep < 0 ? 0 : keep);
    bool carry = keep >= 0 && number.digits[kept] >= '5';
    number.digits.resize(kept);
    for (std::size_t i = kept; carry && i > 0; --i) {
        char& digit = number.digits[i - 1];
        carry = digit == '9';
        digit = carry ? '0' : static_cast<char>(digit + 1);
    }
    if (!carry) return;
    number.digits.insert(number.digits.begin(), '1');
    ++number.pointAt;
}

char DigitAt(const TDecimal& number, int place) {
    if (place < 0 || place >= static_cast<int>(number.digits.size())) return '0';
    return number.digits[static_cast<std::size_t>(place)];
}

bool IsZero(const TDecimal& number) {
    return number.digits.find_first_not_of('0') == std::string::npos;
}

void DropTrailingZeros(TDecimal& number) {
    number.digits.resize(number.digits.find_last_not_of('0') + 1);
}

std::string FixedText(const TDecimal& number, int integerDigits, int decimals, char separator) {
    std::string out;
    if (number.negative && !IsZero(number)) out += '-';
    const int before = number.pointAt > integerDigits ? number.pointAt : integerDigits;
    for (int place = number.pointAt - before; place < number.pointAt; ++place)
        out += DigitAt(number, place);
    if (decimals > 0) out += separator;
    for (int place = number.pointAt; place < number.pointAt + decimals; ++place)
        out += DigitAt(number, place);
    return out;
}

// The decimal number in `text` with a point for a separator, or an empty text when it is not a
// number.
std::string WithPoint(std::string_view text, char separator) {
    std::string out;
    std::size_t at = 0;
    bool anyDigit = false;
    const auto takeDigits = [&] {
        const std::size_t start = at;
        while (at < text.size() && IsDigit(text[at]))
            out += text[at++];
        return at > start;
    };
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) {
        if (text[at++] == '-') out += '-';
    }
    anyDigit = takeDigits();
    if (at < text.size() && text[at] == separator) {
        ++at;
        if (!anyDigit) out += '0';
        out += '.';
        anyDigit = takeDigits() || anyDigit;
        out += '0';
    }
    if (!anyDigit) return {};
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        ++at;
        out += 'e';
        if (at < text.size() && (text[at] == '+' || text[at] == '-')) out += text[at++];
        if (!takeDigits()) return {};
    }
    return at == text.size() ? out : std::string();
}

}  // namespace

std::string FormatFixed(double value, int integerDigits, int decimals, char decimalSeparator) {
    TDecimal number = ToDecimal(value);
    RoundTo(number, decimals);
    return FixedText(number, integerDigits, decimals, decimalSeparator);
}

std::string FormatNumber(double value, char decimalSeparator) {
    TDecimal number = ToDecimal(value);
    DropTrailingZeros(number);
    if (number.digits.empty()) return "0";
    const int digits = static_cast<int>(number.digits.size());
    if (number.pointAt >= -4 && number.pointAt <= kSignificantDigits) {
        const int decimals = digits > number.pointAt ? digits - number.pointAt : 0;
        return FixedText(number, 1, decimals, decimalSeparator);
    }
    const int exponent = number.pointAt - 1;
    number.pointAt = 1;
    return FixedText(number, 1, digits - 1, decimalSeparator) + (exponent < 0 ? "E-" : "E+") +
           std::to_string(std::abs(exponent));
}

std::optional<std::int32_t> ParseInteger(std::string_view text) {
    text = Trim(text);
    if (text.size() > 1 && text[0] == '+' && IsDigit(text[1])) text.remove_prefix(1);
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

std::int32_t ParseIntegerOr(std::string_view text, std::int32_t otherwise) {
    return ParseInteger(text).value_or(otherwise);
}

std::optional<double> ParseNumber(std::string_view text, char decimalSeparator) {
    const std::string plain = WithPoint(Trim(text), decimalSeparator);
    if (plain.empty()) return std::nullopt;
    double number = 0;
    const auto [end, error] = std::from_chars(plain.data(), plain.data() + plain.size(), number);
    if (error != std::errc()) return std::nullopt;
    return number;
}

}  // namespace tolvane
