#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "articles/ArticleTable.h"
#include "database/Query.h"
#include "system/LocalTime.h"

namespace tolvane {

// A promotion that is valid now, of the row that it has marked.
struct TActivePromotion {
    TRowId row = 0;
    bool isPriceChange = false;  // in per cent of the selling price; otherwise a new price
    std::string currency{};      // abbreviation, code page 1251; empty when it names none
};

// Marks the rows whose promotion is valid now, by the open promotion query, which must have fetched
// all its rows. Of several rows with the same article and promotion only the first in order is
// marked; of several promotions of one row the last one counts. Returns those that count, by row.
// Throws TDatabaseError when a column is missing or a value does not convert.
std::vector<TActivePromotion> MarkPromotedArticles(const TQuery& promotions,
                                                   TArticleTable& articles,
                                                   const TLocalDateTime& now,
                                                   const TRegionalSettings& regional);

}  // namespace tolvane
