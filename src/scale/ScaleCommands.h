#pragma once

#include <cstdint>
#include <string_view>

namespace tolvane {

// One command of the scale.
struct TScaleCommand {
    std::uint8_t code;
    std::string_view failurePrefix;   // the start of its failure texts
    std::int32_t initialErrCode = 0;  // the error code until a reply is read
};

inline constexpr std::string_view kPriceFailure = "Fail set PLU price: ";
// A failure of programming mode has the words of weighing mode, which users know.
inline constexpr TScaleCommand kSetPrgModeCommand{0x36, "Fail set Weight mode: ", 1000};
inline constexpr TScaleCommand kSetWeightModeCommand{0x3C, "Fail set Weight mode: ", 1000};
inline constexpr TScaleCommand kGetVersionCommand{0x48, "Fail get version: "};
inline constexpr TScaleCommand kSetPriceCommand{0x49, kPriceFailure};
inline constexpr TScaleCommand kSetPriceWeightCommand{0x4A, kPriceFailure};
inline constexpr TScaleCommand kSetPriceCCommand{0x4B, kPriceFailure};
inline constexpr std::uint8_t kSetParamCode = 0x4C;

}  // namespace tolvane
