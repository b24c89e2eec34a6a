#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "articles/GridLayout.h"
#include "window/Dpi.h"
#include "window/Handles.h"

namespace tolvane {

// A column of the grid, shown or hidden.
struct TGridColumnState {
    std::size_t key = 0;  // the owner's own number of the column
    std::wstring title;
    int width = 0;  // pixels, without the indicator, which stands before the first shown column
    bool right = false;
    bool visible = true;
};

// The columns of the article grid and the title row that shows them: order, widths, the current
// column, the sort mark. Columns are named by their index among all columns; `shown` is a
// column's index among the shown ones, as the list view counts. Interface thread.
class TGridHeader {
public:
    explicit TGridHeader(TDpi dpi) : dpi_(dpi) {}

    // Takes the list view into use. Must be called once, before the other functions.
    void Attach(HWND list);
    // Scales the columns to another resolution; may come before Attach.
    void SetDpi(TDpi dpi);
    // The list view's header control.
    HWND Control() const;

    // Replaces all columns; the list view shows the visible ones in this order. Returns whether
    // that has made another column the current one.
    bool Replace(std::vector<TGridColumnState> columns);
    // All columns, with the widths that the user gave them.
    std::vector<TGridColumnState> Columns() const;
    // Takes a column out and inserts it at the other index.
    void Move(std::size_t from, std::size_t to);
    std::size_t Count() const { return columns_.size(); }
    // Throws std::out_of_range.
    const TGridColumnState& At(std::size_t column) const { return columns_.at(column); }

    std::size_t ShownCount() const { return shown_.size(); }
    // ColumnAtShown returns nothing for an index that no shown column has, ShownIndexOf -1 for a
    // hidden column.
    std::optional<std::size_t> ColumnAtShown(int shown) const;
    int ShownIndexOf(std::size_t column) const;

    std::size_t Current() const { return current_; }
    void SetCurrent(std::size_t column) { current_ = column; }

    // Marks the title of the column by which the rows are sorted; nullopt removes the mark.
    void SetSortMark(std::optional<std::size_t> column, bool ascending);

    TGridStyle Style() const { return style_; }
    // Shows the columns in the new style.
    void SetStyle(TGridStyle style);
    // The width before the first column, in pixels; 0 in a style without an indicator.
    int IndicatorWidth() const;
    // Makes a shown column wide enough for a text of so many pixels.
    void SetTextWidth(int shown, int pixels);
    // A shown column's part of a row, in the list view's coordinates.
    RECT CellRect(int shown, const RECT& row) const;
    // The same of the columns from the first one on that begin before `end`.
    std::vector<RECT> CellRects(const RECT& row, LONG end) const;
    void ScrollTo(int shown);

private:
    int ShownWidth(std::size_t shown) const;
    void ReadWidths() const;
    void Insert(std::size_t column);
    // Where the common controls have none.
    void GiveSortImages();

    TDpi dpi_;
    HWND list_ = nullptr;
    mutable std::vector<TGridColumnState> columns_;
    std::vector<std::size_t> shown_;  // of the shown ones: the index among all columns
    std::size_t current_ = 0;
    std::optional<std::size_t> sortColumn_;
    bool sortAscending_ = true;
    TGridStyle style_;
    TOwnedImageList sortImages_;  // only where the common controls have no sort marks
};

}  // namespace tolvane
