#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tolvane {

// A number with at least `integerDigits` digits before and exactly `decimals` digits after the
// separator. Rounds decimally, half away from zero, on the number's 15 significant decimal digits:
// 1.005 (stored as 1.00499…) gives 1.01, as a price list shows it. A result of zero has no sign.
// A value that is not finite is shown as zero.
std::string FormatFixed(double value, int integerDigits, int decimals, char decimalSeparator);

// The shortest usual text of a number, up to 15 significant digits: 12.5 -> "12,5", 3 -> "3"; with
// an exponent from 1E+15 on and below 0.00001. A value that is not finite is shown as "0".
std::string FormatNumber(double value, char decimalSeparator);

// A decimal integer with an optional sign, blanks around it allowed; nothing when the text is not
// one or does not fit.
std::optional<std::int32_t> ParseInteger(std::string_view text);
// The same with a default for a text that is not an integer.
std::int32_t ParseIntegerOr(std::string_view text, std::int32_t otherwise);

// A decimal number with the given separator, an optional sign and exponent, blanks around it
// allowed; nothing when the text is not one or lies outside the range of a double.
std::optional<double> ParseNumber(std::string_view text, char decimalSeparator);

}  // namespace tolvane
