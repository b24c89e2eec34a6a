#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace tolvane {

// "2024-05-01T12:00:00Z", of a time in the years 0 to 9999.
std::string UtcText(std::chrono::sys_seconds time);
// Nothing for any other text.
std::optional<std::chrono::sys_seconds> ParseUtc(std::string_view text);

}  // namespace tolvane
