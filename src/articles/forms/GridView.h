#pragma once

#include <windows.h>

#include <cstddef>
#include <string>

#include "articles/ArticleTable.h"

namespace tolvane {

// What the article grid asks its owner for, and what it reports to it. A row is named by its
// identity, a column by its index among all columns, hidden ones included. Interface thread.
class TGridView {
public:
    virtual ~TGridView() = default;
    virtual std::size_t RowCount() const = 0;
    // The row at an index of the current order, and the index of a row.
    virtual TRowId RowAt(std::size_t index) const = 0;
    virtual std::size_t IndexOf(TRowId row) const = 0;
    // By the column's key; code page 1251.
    virtual std::string CellText(TRowId row, std::size_t key) const = 0;
    virtual bool IsPromoted(TRowId row) const = 0;
    // The background of a promoted row that is not marked.
    virtual COLORREF PromotionColour() const = 0;
    virtual void TitleClicked(std::size_t column) = 0;
    // Another column has become the current one.
    virtual void ColumnEntered(std::size_t column) = 0;
};

}  // namespace tolvane
