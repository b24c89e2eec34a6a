#include "scale/PackedDecimal.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "text/Numbers.h"

namespace tolvane {
namespace {

constexpr std::size_t kDigits = 6;

// The value as six digits, `decimals` of them after the point. Throws std::runtime_error when it
// needs more.
std::string SixDigits(double value, int decimals) {
    const int integerDigits = static_cast<int>(kDigits) - decimals;
    if (std::isfinite(value)) {
        std::string text = FormatFixed(value, integerDigits, decimals, '.');
        if (text.size() == kDigits + 1)
            return text.erase(static_cast<std::size_t>(integerDigits), 1);
        throw std::runtime_error(FormatNumber(value, '.') + " does not fit in six digits.");
    }
    throw std::runtime_error("A value that is not a number does not fit in six digits.");
}

void AppendPacked(const std::string& digits, TCmdBuffer& data) {
    for (std::size_t pair = kDigits; pair > 0; pair -= 2) {
        const int high = digits[pair - 2] - '0';
        const int low = digits[pair - 1] - '0';
        data.push_back(static_cast<std::uint8_t>(high * 16 + low));
    }
}

}  // namespace

void AppendPrice(double price, TCmdBuffer& data) {
    AppendPacked(SixDigits(price, 2), data);
}

void AppendWeight(double weight, TCmdBuffer& data) {
    AppendPacked(SixDigits(weight / 1000, 3), data);
}

}  // namespace tolvane
