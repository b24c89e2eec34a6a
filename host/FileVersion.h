#pragma once

#include <filesystem>
#include <string>

namespace tolvane::host {

// The version that a program or library for Windows tells of itself, as "1.2.3"; empty when it has
// none.
std::string FileVersion(const std::filesystem::path& file);

}  // namespace tolvane::host
