#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tolvane::test {

// A copy of the demo shop's database file (TOLVANE_FB_SHOP), which no server has open, changed by
// these statements (UTF-8) through the embedded engine.
void MakePlainShop(const std::filesystem::path& file, const std::vector<std::string>& statements);

}  // namespace tolvane::test
