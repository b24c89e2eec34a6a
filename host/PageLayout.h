#pragma once

#include <cstddef>
#include <vector>

namespace tolvane::host {

// A sheet of paper and the margins of a table on it. Lengths are tenths of a millimetre.
struct TPaper {
    int width = 2970;  // A4, landscape
    int height = 2100;
    int margin = 120;
    int headHeight = 130;  // title, date and page number, above the column titles
    int rowHeight = 45;    // the column titles take one row as well
};

TPaper LandscapePaper();
TPaper PortraitPaper();

struct TPlacedColumn {
    std::size_t column = 0;  // index in the given widths
    int x = 0;               // from the paper's left edge
    int width = 0;
};

// Divides a table into pages, numbered from 0. The columns that fit beside each other make a strip;
// the pages of the first strip, with all rows, come before those of the second. A table that is a
// little too wide is drawn smaller instead of in strips. A strip's columns are widened (by
// kMostWidening at most) to fill the page. The cost does not depend on the number of rows.
class TPageLayout {
public:
    static constexpr int kSmallestScale = 70;  // percent
    static constexpr int kStripScale = 85;     // percent
    static constexpr int kMostWidening = 130;  // percent

    // `columnWidths` in true size. A column that is wider than the page is narrowed to it; a column
    // of width 0 is left out.
    TPageLayout(TPaper paper, const std::vector<int>& columnWidths, std::size_t rowCount);

    // At least one page, also for an empty table.
    std::size_t PageCount() const;
    std::size_t RowsPerPage() const;
    const std::vector<TPlacedColumn>& Columns(std::size_t page) const;
    // The first row of a page and the row after its last.
    std::size_t FirstRow(std::size_t page) const;
    std::size_t EndRow(std::size_t page) const;
    const TPaper& Paper() const { return paper_; }
    // The percentage of the true size at which the table's texts and rows are drawn.
    int Scale() const { return scale_; }
    int RowHeight() const;

private:
    int Space() const { return paper_.width - 2 * paper_.margin; }
    void ChooseScale(const std::vector<int>& columnWidths);
    void FillStrips(const std::vector<int>& columnWidths);
    void Widen(std::vector<TPlacedColumn>& strip) const;
    std::size_t PagesPerStrip() const;

    TPaper paper_;
    std::size_t rowCount_;
    int scale_ = 100;
    std::vector<std::vector<TPlacedColumn>> strips_;
};

// A printer's sheet in dots of the printer: its size, the first dot that can be printed, and the
// dots per inch.
struct TSheet {
    int width = 0;
    int height = 0;
    int offsetX = 0;
    int offsetY = 0;
    int dotsPerInchX = 0;
    int dotsPerInchY = 0;
};

struct TSheetPlace {
    int x = 0;  // from the first dot that can be printed on
    int y = 0;
    int width = 0;
    int height = 0;
};

// Where a page is printed on a sheet: centred, in true size if the sheet is large enough, else as
// large as possible.
TSheetPlace PlaceOnSheet(const TPaper& paper, const TSheet& sheet);

}  // namespace tolvane::host
