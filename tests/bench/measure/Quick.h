#pragma once

#include <algorithm>
#include <cstdlib>
#include <span>
#include <string_view>
#include <vector>

namespace tolvane::bench {

// Whether a program is to run for a few seconds with small numbers.
inline bool IsQuick(int count, char** arguments) {
    const std::span<char* const> all(arguments, static_cast<std::size_t>(count));
    return std::ranges::any_of(all, [](std::string_view text) { return text == "--quick"; });
}

// The sizes that a program is to run with: the numbers given, else the usual ones.
inline std::vector<int> Sizes(int count, char** arguments, const std::vector<int>& usual,
                              const std::vector<int>& quick) {
    if (IsQuick(count, arguments)) return quick;
    std::vector<int> sizes;
    for (int i = 1; i < count; ++i)
        sizes.push_back(std::atoi(arguments[i]));
    return sizes.empty() ? usual : sizes;
}

}  // namespace tolvane::bench
