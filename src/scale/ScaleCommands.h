#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "comm/DevCommBaseUnit.h"

namespace tolvane {

// One command of the scale: its code, the error code that is set until a reply is read, and the
// start of its failure texts.
struct TScaleCommand {
    std::uint8_t code;
    std::int32_t initialErrCode;
    std::string_view failurePrefix;
};

inline constexpr std::string_view kPriceFailure = "Fail set PLU price: ";
// Programming mode reports with the words of weighing mode; users know it so.
inline constexpr TScaleCommand kSetPrgModeCommand{0x36, 1000, "Fail set Weight mode: "};
inline constexpr TScaleCommand kSetWeightModeCommand{0x3C, 1000, "Fail set Weight mode: "};
inline constexpr TScaleCommand kGetVersionCommand{0x48, 0, "Fail get version: "};
inline constexpr TScaleCommand kSetPriceCommand{0x49, 0, kPriceFailure};
inline constexpr TScaleCommand kSetPriceWeightCommand{0x4A, 0, kPriceFailure};
inline constexpr TScaleCommand kSetPriceCCommand{0x4B, 0, kPriceFailure};
inline constexpr std::uint8_t kSetParamCode = 0x4C;

// The fixed length of a text parameter, by number and scale model; nothing for a text that is sent
// with its own length.
std::optional<std::int32_t> ParameterLength(std::int32_t parameter, std::int32_t scaleType);

// The three bytes that open the data of every article command.
void AppendPlu(std::int32_t plu, TCmdBuffer& data);
// Three bytes of packed decimal, least significant pair first. A price in currency units, rounded
// to hundredths; a weight field in thousandths of the unit. Throw std::runtime_error with the value
// when it does not fit in six digits.
void AppendPrice(double price, TCmdBuffer& data);
void AppendWeight(double weight, TCmdBuffer& data);

}  // namespace tolvane
