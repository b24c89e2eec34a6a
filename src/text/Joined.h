#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace tolvane {

// The parts one after the other.
inline std::string Joined(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts)
        text += part;
    return text;
}

}  // namespace tolvane
