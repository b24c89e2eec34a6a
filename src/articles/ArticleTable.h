#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "articles/ArticleFields.h"
#include "text/RegionalSettings.h"

namespace tolvane {

// A reference to one row that stays valid through sorting, until the table is emptied.
using TRowId = std::uint32_t;

// mdPlues: the weighted articles in memory, built for 100,000 rows in a 32-bit process. Rows have
// an identity (TRowId, in order of appending) and a place in the current order. Texts are code page
// 1251 and cut to their field's length when stored. Reading is safe from several threads while no
// one writes.
class TArticleTable {
public:
    std::size_t RowCount() const;
    // The row at a place of the current order, and the place of a row.
    TRowId RowAt(std::size_t place) const;
    std::size_t PlaceOf(TRowId row) const;
    const std::vector<TRowId>& Order() const;

    // Values by type; asking for a field of another type is a programming error (assert).
    std::int32_t Integer(TRowId row, TField field) const;
    double Float(TRowId row, TField field) const;
    bool Boolean(TRowId row, TField field) const;
    std::string_view Text(TRowId row, TField field) const;
    // Any field as plain text (numbers with the system's decimal separator).
    std::string AsText(TRowId row, TField field, const TRegionalSettings& regional) const;
};

}  // namespace tolvane
