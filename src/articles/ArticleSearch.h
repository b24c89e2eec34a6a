#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "articles/ArticleTable.h"

namespace tolvane {

// The index, in the current order, of the first row from `fromIndex` on whose field contains `text`
// anywhere, without regard to case; nothing when no row up to the end does. The field's value is
// searched as TArticleTable::AsText gives it, not as the grid shows it. An empty text matches every
// row.
std::optional<std::size_t> FindInColumn(const TArticleTable& articles, TField field,
                                        std::size_t fromIndex, std::string_view text,
                                        const TRegionalSettings& regional);

}  // namespace tolvane
