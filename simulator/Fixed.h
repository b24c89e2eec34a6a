#pragma once

#include <cstdint>
#include <string>

namespace tolvane::simulator {

// A number, not negative, with a decimal point before its last 1 to 9 digits: Fixed(1234, 2) is
// "12.34", Fixed(5, 3) "0.005".
std::string Fixed(std::int64_t value, int decimals);

}  // namespace tolvane::simulator
