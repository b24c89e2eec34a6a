#pragma once

#include <string>

namespace tolvane::bench {

// A script that fills the demo's tables with `articles` articles of typical texts, each with a
// barcode, label texts and a lot, and one of `promotionEvery` with a promotion.
std::string BigShopScript(int articles, int promotionEvery = 100);

}  // namespace tolvane::bench
