#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "articles/ArticleTable.h"

namespace tolvane {

// The first place from `fromPlace` on whose row's field contains `text` anywhere, without regard to
// case; nothing when there is none to the end. The field's value is searched as
// TArticleTable::AsText gives it, not as the grid shows it. An empty text matches every row.
std::optional<std::size_t> FindInColumn(const TArticleTable& articles, TField field,
                                        std::size_t fromPlace, std::string_view text,
                                        const TRegionalSettings& regional);

}  // namespace tolvane
