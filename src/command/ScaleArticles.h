#pragma once

#include <cstdint>
#include <vector>

#include "articles/ArticleTable.h"
#include "config/TypesUnit.h"
#include "system/RegionalSettings.h"
#include "upload/ArticleLine.h"
#include "upload/ArticleLineBuilder.h"

namespace tolvane {

// One article as a scale would get it. The number is the database's, not cut to the scale's digits.
struct TScaleArticle {
    TRowId row = 0;
    double price = 0.0;  // as the database has it: in `plu` one above 21 million is 0
    TPLUD plu{};
};

// An article that is meant for the scale but has no line.
struct TLeftOutArticle {
    TRowId row = 0;
    TLineFault fault{};
};

// The articles of one scale, in the order of the table.
struct TScaleArticles {
    std::vector<TScaleArticle> articles{};
    std::vector<TLeftOutArticle> leftOut{};
};

// What the window's run would put into its lines for this scale, parsed as its pass parses them.
// Throws std::runtime_error when a field that must be an integer holds something else. Any thread,
// while nobody changes the table.
TScaleArticles ArticlesForScale(const TArticleTable& table, std::int32_t scaleNumber,
                                TLineChoices choices, const TRegionalSettings& regional);

}  // namespace tolvane
