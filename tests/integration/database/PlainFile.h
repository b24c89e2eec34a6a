#pragma once

#include <filesystem>
#include <string>

#include "tests/integration/database/Shop.h"
#include "tests/support/ScratchFolder.h"

namespace tolvane::test {

// A copy of the shop's database file, which no server has ever opened.
inline void CopyShop(const std::filesystem::path& to) {
    std::filesystem::copy_file(Variable("TOLVANE_FB_SHOP"), to);
}

constexpr const char* kInUse =
    "Another program has the file open. If that is a server, name it: localhost:PATH.";

}  // namespace tolvane::test
