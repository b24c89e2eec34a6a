#pragma once

#include <vector>

#include "articles/ArticleReading.h"
#include "command/Problem.h"

namespace tolvane {

// Of articles that concern no single scale: no scale, best-before, currencies. `price`: the chosen
// one, as in TLineChoices.
std::vector<TProblem> ProblemsOfArticles(const TArticleReading& reading, int price);

}  // namespace tolvane
