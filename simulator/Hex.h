#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "simulator/Frame.h"

namespace tolvane::simulator {

// Two upper-case digits per byte, `separator` between bytes.
std::string ToHex(std::span<const std::uint8_t> bytes, std::string_view separator = "");
// Pairs of digits; blanks are skipped. Returns nothing when a pair is not a hexadecimal number.
std::optional<TBytes> FromHex(std::string_view text);

}  // namespace tolvane::simulator
