#pragma once

#include <span>
#include <string>
#include <vector>

#include "articles/ArticleTable.h"
#include "system/LocalTime.h"
#include "tests/support/client/FakeClient.h"

namespace tolvane::test {

// The results of all queries of a load in a small shop: three articles, the second one in a
// promotion that is valid at the time of TFakeShopClock.
std::span<const TFakeResult> FakeShop();

class TFakeShopClock : public TLocalClock {
public:
    TLocalDateTime Now() const override { return {{2026, 11, 23}, {12, 0, 0, 0}}; }
};

// One line per article of a table: number, name, label text, price, lot and promotional price.
std::vector<std::string> ArticleLines(const TArticleTable& articles);
// Those of the shop, all of them.
const std::vector<std::string>& FakeShopLines();

}  // namespace tolvane::test
