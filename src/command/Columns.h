#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tolvane {

// The columns that a text (UTF-8) takes on a terminal: its code points, as our texts have neither
// wide nor combining letters.
std::size_t Columns(std::string_view text);
// The text, cut to so many columns; three points stand for what was cut.
std::string Fitted(const std::string& text, std::size_t columns);

}  // namespace tolvane
