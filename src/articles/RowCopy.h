#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "articles/ArticleTable.h"
#include "database/Query.h"

namespace tolvane {

// Copies rows of the open article query into the article table. Finds its columns once, and throws
// TDatabaseError when one is missing.
class TRowCopy {
public:
    TRowCopy(const TQuery& query, TArticleTable& articles, const TRegionalSettings& regional);

    // Appends a row, given by the values of the query's columns. Throws TDatabaseError, without
    // appending, when a value does not convert.
    void Append(std::span<const TColumnValue> row);

private:
    struct TSource {
        TField field;
        std::string_view alias;
        std::size_t column;
    };
    std::int32_t IntegerOf(const TSource& source, const TColumnValue& value) const;
    void CopyText(const TSource& source, const TColumnValue& value, TRowId to);

    TArticleTable& articles_;
    const TRegionalSettings& regional_;
    std::vector<TSource> integers_;
    std::vector<TSource> floats_;
    std::vector<TSource> texts_;
};

}  // namespace tolvane
