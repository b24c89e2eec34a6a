#pragma once

#include <windows.h>

#include <commctrl.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "articles/GridLayout.h"
#include "articles/forms/RowMarks.h"
#include "window/Dpi.h"
#include "window/Handles.h"

namespace tolvane {

// A column of the grid, shown or hidden.
struct TGridColumnState {
    std::size_t key = 0;  // the owner's own number of the column
    std::wstring title;
    int width = 0;  // pixels; the indicator stands before the first shown column and is no part
                    // of its width
    bool right = false;
    bool visible = true;
};

// What the grid shows, and what it tells; all by row identity or by the column's index among all
// columns, hidden ones included.
struct TGridSource {
    std::function<std::size_t()> rowCount;
    std::function<TRowId(std::size_t place)> rowAt;
    std::function<std::size_t(TRowId row)> placeOf;
    std::function<std::string(TRowId row, std::size_t key)> text;  // code page 1251
    std::function<bool(TRowId row)> promoted;
    std::function<COLORREF()> promotionColour;  // background of a promoted row that is not marked
    std::function<void(std::size_t column)> titleClicked;
    std::function<void(std::size_t column)> columnEntered;
};

// The behaviour of the article grid on top of a standard list view with owner data: rows drawn by
// itself, marks in the order of marking, a current column, sort marks and auto-fit. The list view
// is made with kGridListStyle and belongs to the form, which hands its messages on.
class TArticleGrid {
public:
    TArticleGrid(TDpi dpi, TGridSource source);
    TArticleGrid(const TArticleGrid&) = delete;
    TArticleGrid& operator=(const TArticleGrid&) = delete;
    ~TArticleGrid();

    void Attach(HWND list);
    HWND Handle() const noexcept { return list_; }

    // Replaces all columns; the list view shows the visible ones in this order.
    void SetColumns(std::vector<TGridColumnState> columns);
    // With the widths that the user gave them.
    std::vector<TGridColumnState> Columns() const;
    std::size_t ColumnCount() const { return columns_.size(); }
    std::size_t KeyOf(std::size_t column) const { return columns_.at(column).key; }
    // Takes the column out and puts it at the other's place; indexes among all columns.
    void MoveColumn(std::size_t from, std::size_t to);
    // One entry per column.
    void ShowColumns(const std::vector<bool>& visible);
    void SetStyle(TGridStyle style);

    // The rows are others now: no marks, the first row is the current one.
    void RowsReplaced();
    // The same rows stand in another order: marks and the current row stay with their rows.
    void RowsReordered();

    std::optional<TRowId> CurrentRow() const;
    // Makes the row current and brings it into view; marks stay.
    void SetCurrentRow(TRowId row);
    std::vector<TRowId> MarkedRows() const { return marks_.InOrder(); }

    // As a click on the title of the current column.
    void ClickCurrentTitle();
    // No column: no mark.
    void SetSortMark(std::optional<std::size_t> column, bool ascending);
    // Sets a column's width to its widest text among the title and the drawn rows, plus 8 pixels.
    void AutoFit(std::size_t column);

    // Messages that concern the list view; nothing when it is none of the grid's.
    std::optional<LRESULT> HandleNotify(NMHDR& header);
    bool HandleKey(UINT virtualKey);
    bool HandleDraw(const DRAWITEMSTRUCT& item);
    int RowHeight() const;

private:
    struct TRowColours {
        COLORREF background;
        COLORREF text;
    };
    static LRESULT CALLBACK ListProcedure(HWND list, UINT id, WPARAM wParam, LPARAM lParam,
                                          UINT_PTR subclass, DWORD_PTR grid) noexcept;
    void TitleDoubleClicked(int viewIndex) noexcept;
    HWND Header() const;
    std::optional<std::size_t> ColumnOfView(int viewIndex) const;
    int ViewOfColumn(std::size_t column) const;
    void ReadWidths() const;
    void ShowMarks();
    void MakeSortImages();
    LRESULT FillText(NMLVDISPINFOW& info) const;
    void ChangeMarks(int from, int to, bool marked);
    void StoreMarks(int from, int to, bool marked);
    void EnterColumn(int viewIndex);
    void StepColumn(int step);
    int ViewWidth(std::size_t view) const;
    void ScrollToColumn(int viewIndex);
    std::wstring TextAt(TRowId row, std::size_t column) const;
    std::size_t FirstDrawnRow() const;
    std::size_t EndOfDrawnRows() const;
    int IndicatorWidth() const;
    TRowColours ColoursOf(TRowId row, bool marked, bool current) const;
    RECT CellRect(int view, const RECT& row) const;
    void DrawCell(const DRAWITEMSTRUCT& item, TRowId row, int view, bool current) const;
    void DrawIndicator(const DRAWITEMSTRUCT& item, bool marked, bool current) const;

    TDpi dpi_;
    TGridSource source_;
    TOwnedFont font_;
    HWND list_ = nullptr;
    mutable std::vector<TGridColumnState> columns_;
    std::vector<std::size_t> shown_;  // list view column -> index among all columns
    std::size_t currentColumn_ = 0;   // index among all columns
    std::optional<std::size_t> sortColumn_;
    bool sortAscending_ = true;
    TRowMarks marks_;
    TGridStyle style_;
    TOwnedImageList sortImages_;  // only where the common controls have no sort marks
    bool quiet_ = false;          // our own changes of state are not the user's
};

inline constexpr DWORD kGridListStyle =
    LVS_REPORT | LVS_OWNERDATA | LVS_OWNERDRAWFIXED | LVS_SHOWSELALWAYS;

}  // namespace tolvane
