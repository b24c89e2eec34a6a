#pragma once

#include <vector>

#include "articles/ArticleReading.h"
#include "command/Problem.h"
#include "command/ScaleList.h"

namespace tolvane {

// Of articles that concern no single scale: no scale of the list `scales`, best-before, currencies.
// `price`: the chosen one, as in TLineChoices.
std::vector<TProblem> ProblemsOfArticles(const TArticleReading& reading, int price,
                                         const std::vector<TListedScale>& scales);

}  // namespace tolvane
