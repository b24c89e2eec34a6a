#include "simulator/Fixed.h"

#include <algorithm>
#include <cstddef>

namespace tolvane::simulator {

std::string Fixed(std::int64_t value, int decimals) {
    const auto after = static_cast<std::size_t>(decimals);
    std::string text = std::to_string(value);
    text.insert(0, std::max(text.size(), after + 1) - text.size(), '0');
    return text.insert(text.size() - after, 1, '.');
}

}  // namespace tolvane::simulator
