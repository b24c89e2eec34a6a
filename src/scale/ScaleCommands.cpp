#include "scale/ScaleCommands.h"

#include <cmath>
#include <cstddef>
#include <stdexcept>
#include <string>

#include "config/TypesUnit.h"
#include "text/Numbers.h"

namespace tolvane {
namespace {

constexpr std::size_t kDigits = 6;

// Lengths of the parameters from `first` on, up to the next row.
struct TLengthRow {
    std::int32_t first;
    std::int32_t length;  // 0: the text's own
    std::int32_t evlLength;
};
constexpr std::array kLengths = {
    TLengthRow{0, 31, 31},  TLengthRow{4, 0, 0},    TLengthRow{6, 31, 31},  TLengthRow{19, 63, 31},
    TLengthRow{23, 31, 31}, TLengthRow{24, 15, 15}, TLengthRow{32, 31, 31},
};
constexpr std::int32_t kOtherLength = 31;

std::uint8_t LowByte(std::int32_t number) {
    return static_cast<std::uint8_t>(number & 0xFF);
}

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

std::optional<std::int32_t> ParameterLength(std::int32_t parameter, std::int32_t scaleType) {
    std::int32_t length = kOtherLength;
    for (const TLengthRow& row : kLengths) {
        if (parameter < row.first) break;
        length = scaleType == kScaleTypeEvl ? row.evlLength : row.length;
    }
    return length > 0 ? std::optional(length) : std::nullopt;
}

void AppendPlu(std::int32_t plu, TCmdBuffer& data) {
    data.insert(data.end(), {std::uint8_t{0}, LowByte(plu % 256), LowByte(plu / 256)});
}

void AppendPrice(double price, TCmdBuffer& data) {
    AppendPacked(SixDigits(price, 2), data);
}

void AppendWeight(double weight, TCmdBuffer& data) {
    AppendPacked(SixDigits(weight / 1000, 3), data);
}

}  // namespace tolvane
