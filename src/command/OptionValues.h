#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

namespace tolvane {

// "90", "90s", "30m", "2h", "7d"; nothing for any other text, and for more than 10000 days.
std::optional<std::chrono::seconds> ParseDuration(const std::string& text);

std::filesystem::path PathOf(const std::string& utf8);

}  // namespace tolvane
