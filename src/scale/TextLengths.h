#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tolvane {

// The fixed length of a text parameter, by number and scale model; nothing for a text that is sent
// with the length that it has.
std::optional<std::int32_t> ParameterLength(std::int32_t parameter, std::int32_t scaleType);
// The text as it is sent: cut or padded with spaces to the parameter's length. Code page 1251.
std::string FitParameter(std::string_view text, std::int32_t parameter, std::int32_t scaleType);

}  // namespace tolvane
