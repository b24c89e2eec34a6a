#pragma once

#include <string>
#include <vector>

#include "articles/ArticleTable.h"
#include "articles/PromotionPass.h"
#include "database/ClientLibrary.h"
#include "system/LocalTime.h"
#include "system/RegionalSettings.h"

namespace tolvane {

// What the list window loads and shows, as one reading of the database.
struct TArticleReading {
    TArticleTable articles;
    std::vector<TActivePromotion> promotions;
    // Code page 1251; empty when there is none.
    std::string baseCurrency{};      // abbreviation
    std::string baseCurrencyName{};  // as the articles' CURR_SELL_NAME
};

// These work without a window on a connection of any origin: the library and its handle cell, as
// TAttachment has them. All failures are TDatabaseError, with the words that the window would show;
// no transaction is left behind.

// Reads everything in one read-only transaction, so that all comes from the same moment, by the
// rules of TArticleLoader. The clock decides which promotions are active. No articles: no rows.
TArticleReading ReadArticles(const TClientLibrary& library, void* database,
                             const TLocalClock& clock, const TRegionalSettings& regional);

// Whether the index is there that keeps the reading fast.
bool HasArticleIndex(const TClientLibrary& library, void* database);
// Creates it; false when it was there already. Writes to the database.
bool CreateArticleIndex(const TClientLibrary& library, void* database);

}  // namespace tolvane
