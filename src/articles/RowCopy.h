#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "articles/ArticleTable.h"
#include "database/Query.h"

namespace tolvane {

// Copies the rows of the open article query into the article table. Finds its columns once, and
// throws TDatabaseError when one is missing.
class TRowCopy {
public:
    TRowCopy(const TQuery& query, TArticleTable& articles, const TRegionalSettings& regional);

    // Appends one row of the query. Throws TDatabaseError, without appending, when a value does not
    // convert.
    void Append(std::size_t row);

private:
    struct TSource {
        TField field;
        std::size_t column;
    };
    std::int32_t IntegerFor(const TSource& source, std::size_t row) const;
    void CopyText(const TSource& source, std::size_t row, TRowId to);

    const TQuery& query_;
    TArticleTable& articles_;
    const TRegionalSettings& regional_;
    std::vector<TSource> integers_;
    std::vector<TSource> floats_;
    std::vector<TSource> texts_;
};

}  // namespace tolvane
