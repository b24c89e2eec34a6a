#include "command/ScaleArticles.h"

#include <string_view>
#include <utility>

namespace tolvane {

TScaleArticles ArticlesForScale(const TArticleTable& table, std::int32_t scaleNumber,
                                TLineChoices choices, const TRegionalSettings& regional) {
    const TArticleLineBuilder builder(table, choices, regional, [](std::string_view) {});
    TScaleArticles found;
    for (const TRowId row : table.Order()) {
        const TArticleLine line = builder.LineFor(row, scaleNumber);
        if (line.fault) found.leftOut.push_back({.row = row, .fault = *line.fault});
        if (line.line.empty()) continue;
        TScaleArticle article{.row = row, .price = builder.Price(row)};
        if (ParseArticleLine(line.line, regional.decimalSeparator, article.plu))
            found.articles.push_back(std::move(article));
    }
    return found;
}

}  // namespace tolvane
