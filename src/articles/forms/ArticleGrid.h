#pragma once

#include <windows.h>

#include <commctrl.h>

#include <cstddef>
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

// What the grid asks for and what it reports; rows by their identity, columns by their index among
// all columns, hidden ones included. Interface thread.
class TGridView {
public:
    virtual ~TGridView() = default;
    virtual std::size_t RowCount() const = 0;
    virtual TRowId RowAt(std::size_t place) const = 0;
    virtual std::size_t PlaceOf(TRowId row) const = 0;
    // By the column's key; code page 1251.
    virtual std::string CellText(TRowId row, std::size_t key) const = 0;
    virtual bool IsPromoted(TRowId row) const = 0;
    // The background of a promoted row that is not marked.
    virtual COLORREF PromotionColour() const = 0;
    virtual void TitleClicked(std::size_t column) = 0;
    // Another column is the current one now.
    virtual void ColumnEntered(std::size_t column) = 0;
};

// The behaviour of the article grid on top of a standard list view with owner data: rows drawn by
// itself, marks in the order of marking, a current column, sort marks and auto-fit. The list view
// is made with kGridListStyle and belongs to the form, which hands its messages on.
class TArticleGrid {
public:
    // The view outlives the grid.
    TArticleGrid(TDpi dpi, TGridView& view);
    TArticleGrid(const TArticleGrid&) = delete;
    TArticleGrid& operator=(const TArticleGrid&) = delete;
    ~TArticleGrid();

    // Takes the list view into use. Comes once, before the other functions but Handle.
    void Attach(HWND list);
    // Null before Attach.
    HWND Handle() const noexcept { return list_; }

    // Replaces all columns; the list view shows the visible ones in this order.
    void SetColumns(std::vector<TGridColumnState> columns);
    // All columns, with the widths that the user gave them.
    std::vector<TGridColumnState> Columns() const;
    std::size_t ColumnCount() const { return columns_.size(); }
    // Throws std::out_of_range.
    std::size_t KeyOf(std::size_t column) const { return columns_.at(column).key; }
    // Takes the column out and puts it at the other's place; indexes among all columns.
    void MoveColumn(std::size_t from, std::size_t to);
    // One entry per column.
    void ShowColumns(const std::vector<bool>& visible);
    void SetStyle(TGridStyle style);

    // Shows rows that replace the former ones: without marks, the first row is the current one.
    void RowsReplaced();
    // Shows the same rows in another order. The marks stay with their rows; the current place
    // stays where it is.
    void RowsReordered();

    std::optional<TRowId> CurrentRow() const;
    // Makes the row current and brings it into view; marks stay.
    void SetCurrentRow(TRowId row);
    std::vector<TRowId> MarkedRows() const { return marks_.InOrder(); }

    // Does what a click on the title of the current column does.
    void ClickCurrentTitle();
    // Marks the title of the column by which the rows are sorted; nullopt removes the mark.
    void SetSortMark(std::optional<std::size_t> column, bool ascending);
    // Sets a column's width to its widest text among the title and the drawn rows, plus 8 pixels.
    void AutoFit(std::size_t column);

    // The form gives these the messages that may concern the list view. HandleNotify returns the
    // answer to WM_NOTIFY, or nullopt if the message is not for the grid; the others return whether
    // it was. RowHeight answers WM_MEASUREITEM, in pixels.
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

    TDpi dpi_;
    TGridView& view_;
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
