#include "scale/TextLengths.h"

#include <array>
#include <cstddef>

#include "config/TypesUnit.h"

namespace tolvane {
namespace {

// Lengths of the parameters from `first` on, up to the next row.
struct TLengthRow {
    std::int32_t first;
    std::int32_t length;
    std::int32_t evlLength;
};
// The text is sent with the length that it has.
constexpr std::int32_t kOwnLength = 0;
constexpr std::array kLengths = {
    TLengthRow{0, 31, 31},  TLengthRow{4, kOwnLength, kOwnLength},
    TLengthRow{6, 31, 31},  TLengthRow{19, 63, 31},
    TLengthRow{23, 31, 31}, TLengthRow{24, 15, 15},
    TLengthRow{32, 31, 31},
};
constexpr std::int32_t kOtherLength = 31;

}  // namespace

std::optional<std::int32_t> ParameterLength(std::int32_t parameter, std::int32_t scaleType) {
    std::int32_t length = kOtherLength;
    for (const TLengthRow& row : kLengths) {
        if (parameter < row.first) break;
        length = scaleType == kScaleTypeEvl ? row.evlLength : row.length;
    }
    return length > 0 ? std::optional(length) : std::nullopt;
}

std::string FitParameter(std::string_view text, std::int32_t parameter, std::int32_t scaleType) {
    std::string fitted(text);
    if (const auto length = ParameterLength(parameter, scaleType))
        fitted.resize(static_cast<std::size_t>(*length), ' ');
    return fitted;
}

}  // namespace tolvane
