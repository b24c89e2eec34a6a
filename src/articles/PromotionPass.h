#pragma once

#include <cstddef>

#include "articles/ArticleTable.h"
#include "database/Query.h"
#include "system/LocalTime.h"

namespace tolvane {

// Marks the rows whose promotion is valid now, by the open promotion query, which must have fetched
// all its rows. Of several rows with the same article and promotion only the first in order is
// marked. Throws TDatabaseError when a column is missing or a value does not convert.
void MarkPromotedArticles(const TQuery& promotions, TArticleTable& articles,
                          const TLocalDateTime& now, const TRegionalSettings& regional);

}  // namespace tolvane
