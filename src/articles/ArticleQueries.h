#pragma once

#include <string>
#include <string_view>

namespace tolvane {

// The statements that run on the host's database; code page 1251.

// First column: the abbreviation of the base currency.
std::string BaseCurrencyQuery();
// First column: its name.
std::string_view BaseCurrencyNameQuery();
// One row per article, barcode and qualifying promotion, ordered by article number.
std::string ArticleQuery();
// The promotions of the weighted articles, ordered by article number and priority.
std::string_view PromotionQuery();

// The index that keeps the article query's lookup of the latest lot fast.
inline constexpr std::string_view kLotIndexName = "SUPPLIES_PLUCONTROL_PLUIDX";
// Column QTTY: how many indexes of that name the table has.
std::string LotIndexQuery();
std::string LotIndexStatement();

}  // namespace tolvane
