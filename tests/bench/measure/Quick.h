#pragma once

#include <algorithm>
#include <span>
#include <string_view>

namespace tolvane::bench {

// Whether a program is to run for a few seconds with small numbers.
inline bool IsQuick(int count, char** arguments) {
    const std::span<char* const> all(arguments, static_cast<std::size_t>(count));
    return std::ranges::any_of(all, [](std::string_view text) { return text == "--quick"; });
}

}  // namespace tolvane::bench
