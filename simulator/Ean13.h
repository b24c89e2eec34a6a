#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tolvane::simulator {

// The digit that follows these twelve; nothing when they are not twelve digits.
std::optional<char> Ean13CheckDigit(std::string_view twelve);

// The 95 modules of an EAN-13 from left to right, '1' for a bar; nothing when these are not
// thirteen digits of which the last is the check digit.
std::optional<std::string> Ean13Modules(std::string_view digits);

// The bars as an SVG with the digits below them, at the place that readers need around it included.
// Empty when Ean13Modules has nothing.
std::string Ean13Svg(std::string_view digits);

}  // namespace tolvane::simulator
