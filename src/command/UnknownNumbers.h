#pragma once

#include <cstdint>
#include <set>
#include <vector>

#include "articles/ArticleTable.h"
#include "command/ScaleResult.h"
#include "config/TypesUnit.h"

namespace tolvane {

// Those of the chosen numbers that no article has, or only articles that none of these scales gets.
std::vector<TRefusedArticle> UnknownNumbers(const std::set<std::int32_t>& chosen,
                                            const TArticleTable& table,
                                            const std::vector<TScaleRec>& scales);

}  // namespace tolvane
