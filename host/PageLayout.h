#pragma once

#include <cstddef>
#include <vector>

namespace tolvane::host {

// How a table lies on pages. Lengths are tenths of a millimetre.
struct TPaper {
    int width = 2970;  // A4, landscape
    int height = 2100;
    int margin = 120;
    int headHeight = 160;  // title, date and page number, above the column titles
    int rowHeight = 45;    // the column titles take one row as well
};

struct TPlacedColumn {
    std::size_t column = 0;  // index in the given widths
    int x = 0;               // from the paper's left edge
    int width = 0;
};

// Pages are numbered from 0: all rows of the first columns, then all rows of the next ones that did
// not fit beside them. Nothing here depends on the number of rows, so a long table costs nothing.
class TPageLayout {
public:
    // `columnWidths` as they are to be on paper; a column wider than the page is cut to it, one of
    // width 0 is left out.
    TPageLayout(TPaper paper, const std::vector<int>& columnWidths, std::size_t rowCount);

    // At least one page, also for an empty table.
    std::size_t PageCount() const;
    std::size_t RowsPerPage() const;
    const std::vector<TPlacedColumn>& Columns(std::size_t page) const;
    // The first row of a page and the row behind its last.
    std::size_t FirstRow(std::size_t page) const;
    std::size_t EndRow(std::size_t page) const;
    const TPaper& Paper() const { return paper_; }

private:
    std::size_t PagesPerStrip() const;

    TPaper paper_;
    std::size_t rowCount_;
    std::vector<std::vector<TPlacedColumn>> strips_;
};

}  // namespace tolvane::host
