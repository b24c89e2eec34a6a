#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "articles/ArticleTable.h"
#include "database/Query.h"

namespace tolvane {

// Copies rows of the open article query into the article table. Finds its columns once, and throws
// TDatabaseError when one is missing. As nobody knows how many rows will come, they wait in blocks
// until the table's columns can be made in their size: columns that grow would leave holes.
class TRowCopy {
public:
    TRowCopy(const TQuery& query, TArticleTable& articles, const TRegionalSettings& regional);

    // Takes a row, given by the values of the query's columns. Throws TDatabaseError, without
    // taking it, when a value does not convert.
    void Append(std::span<const TColumnValue> values);
    // Moves all rows that were taken into the table.
    void Finish();

private:
    struct TSource {
        TField field;
        std::string_view alias;
        std::size_t column;
    };
    std::int32_t IntegerOf(const TSource& source, const TColumnValue& value) const;
    TTextArena::TPosition StoredText(const TSource& source, const TColumnValue& value);
    TArticleTable::TRow& NewRow();

    TArticleTable& articles_;
    const TRegionalSettings& regional_;
    std::vector<TSource> integers_;
    std::vector<TSource> floats_;
    std::vector<TSource> texts_;
    std::vector<std::unique_ptr<TArticleTable::TRow[]>> blocks_;
    std::size_t rowCount_ = 0;
};

}  // namespace tolvane
