#pragma once

#include <windows.h>

#include <commctrl.h>

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "articles/GridLayout.h"
#include "articles/forms/GridHeader.h"
#include "articles/forms/GridRows.h"
#include "articles/forms/GridView.h"
#include "window/Dpi.h"
#include "window/Handles.h"

namespace tolvane {

// The article grid: a standard list view with owner data whose rows this class draws. It keeps
// marks in the order of marking (TGridRows), and a current column, a sort mark and the widths of
// the columns (TGridHeader). The list view is made with kGridListStyle and belongs to the form,
// which passes its messages on. Interface thread.
class TArticleGrid {
public:
    // The view outlives the grid.
    TArticleGrid(TDpi dpi, TGridView& view);
    TArticleGrid(const TArticleGrid&) = delete;
    TArticleGrid& operator=(const TArticleGrid&) = delete;
    ~TArticleGrid();

    // Takes the list view into use. Must be called once, before the other functions except Handle.
    void Attach(HWND list);
    // Null before Attach.
    HWND Handle() const noexcept { return list_; }
    // Shows everything at another resolution.
    void SetDpi(TDpi dpi);

    // Replaces all columns; the list view shows the visible ones in this order.
    void SetColumns(std::vector<TGridColumnState> columns);
    // All columns, with the widths that the user gave them.
    std::vector<TGridColumnState> Columns() const { return header_.Columns(); }
    std::size_t ColumnCount() const { return header_.Count(); }
    // Throws std::out_of_range.
    std::size_t KeyOf(std::size_t column) const { return header_.At(column).key; }
    // Takes a column out and inserts it at the other index; indexes among all columns.
    void MoveColumn(std::size_t from, std::size_t to) { header_.Move(from, to); }
    // One entry per column.
    void ShowColumns(const std::vector<bool>& visible);
    void SetStyle(TGridStyle style) { header_.SetStyle(style); }

    // Takes the rows away and draws nothing until RowsReplaced. The view has no rows now.
    void SuspendRows() { rows_.Suspend(); }
    // Shows rows that replace the former ones: without marks, the first row is the current one.
    void RowsReplaced() { rows_.Replace(); }
    // Shows the same rows in another order. The marks stay with their rows; the row at the index of
    // the former current row becomes the current one.
    void RowsReordered() { rows_.Reorder(); }

    std::optional<TRowId> CurrentRow() const { return rows_.Current(); }
    // Makes the row current and brings it into view; marks stay.
    void SetCurrentRow(TRowId row) { rows_.SetCurrent(row); }
    std::vector<TRowId> MarkedRows() const { return rows_.Marked(); }

    // Does what a click on the title of the current column does.
    void ClickCurrentTitle();
    // Marks the title of the column by which the rows are sorted; nullopt removes the mark.
    void SetSortMark(std::optional<std::size_t> column, bool ascending) {
        header_.SetSortMark(column, ascending);
    }
    // Sets a column's width to its widest text among the title and the drawn rows, plus 8 pixels at
    // 96 dots per inch.
    void AutoFit(std::size_t column);

    // The form passes these functions the messages that may concern the list view. HandleNotify
    // returns the result of WM_NOTIFY, or nullopt if the message is not for the grid; the others
    // return whether it was. RowHeight is the height for WM_MEASUREITEM, in pixels.
    std::optional<LRESULT> HandleNotify(NMHDR& header);
    bool HandleKey(UINT virtualKey);
    bool HandleDraw(const DRAWITEMSTRUCT& item);
    int RowHeight() const;

private:
    struct TRowColours {
        COLORREF background;
        COLORREF text;
    };
    static LRESULT CALLBACK ListProcedure(HWND list, UINT id, WPARAM wParam,
                                          LPARAM lParam) noexcept;
    void TitleDoubleClicked(int shown) noexcept;
    void MeasureRows() const;
    LRESULT FillText(NMLVDISPINFOW& info) const;
    void EnterColumn(int shown);
    void StepColumn(int step);
    std::wstring TextAt(TRowId row, std::size_t column) const;
    TRowColours ColoursOf(TRowId row, bool marked, bool current) const;
    void DrawCell(HDC dc, RECT cell, TRowId row, int shown, bool current) const;

    TDpi dpi_;
    TGridView& view_;
    TOwnedFont font_;
    HWND list_ = nullptr;
    WNDPROC before_ = nullptr;  // the list view's own procedure
    TGridHeader header_;
    TGridRows rows_;
};

inline constexpr DWORD kGridListStyle =
    LVS_REPORT | LVS_OWNERDATA | LVS_OWNERDRAWFIXED | LVS_SHOWSELALWAYS;

}  // namespace tolvane
