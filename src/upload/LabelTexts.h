#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "config/TypesUnit.h"

namespace tolvane {

// One text parameter of an article in a scale: its number, its content, and the scales that take
// it. Each model has a set of label modes: bit n is set when a scale of the model takes the text in
// mode n.
struct TLabelText {
    std::int32_t parameter;
    std::string_view label;  // in error texts, code page 1251
    bool raw;                // sent as bytes, not through the scale's code table
    std::string (*text)(const TPLUD& plu, std::int32_t uncutScaleNumber);
    std::uint8_t evlModes;
    std::uint8_t etsModes;
    std::uint8_t s300Modes;
    std::uint8_t otherModes;  // scales of any other type code
};

// All text parameters, in the order of sending.
std::span<const TLabelText> LabelTexts();
// `mode` is 0 to 3, as the scale reports it.
bool IsSent(const TLabelText& text, std::int32_t scaleType, std::int32_t mode);

// The value's bytes, the most significant first, without leading zero bytes; at least one byte.
std::string ValueToBytesText(std::int32_t value);
// The last digits of an article's scale number: as many digits as the scale's highest number has.
std::int32_t PluTail(std::int32_t scaleNumber, std::int32_t maxPlu);

}  // namespace tolvane
