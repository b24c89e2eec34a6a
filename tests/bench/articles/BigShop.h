#pragma once

#include <string>

namespace tolvane::bench {

// A script that fills the demo's tables with `articles` articles of typical texts, each with a
// barcode, label texts and a lot, every hundredth with a promotion.
std::string BigShopScript(int articles);

}  // namespace tolvane::bench
