#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "tests/support/window/Input.h"

namespace tolvane::test {

// Reads a list view by ordinary list view messages, as a host does; texts come as UTF-8.
class TGridReader {
public:
    explicit TGridReader(HWND grid) : grid_(grid) {}

    HWND Handle() const { return grid_; }
    int RowCount() const;
    std::vector<std::string> Titles() const;
    std::string Cell(int row, int column) const;
    std::vector<std::string> Column(int column) const;
    int ColumnByTitle(const std::string& title) const;  // -1 when there is none
    int ColumnWidth(int column) const;
    int ColumnFormat(int column) const;             // HDF_... of the title
    int TextWidth(const std::wstring& text) const;  // pixels, in the grid's font
    RECT TitleRect(int column) const;               // in the header
    RECT RowRect(int row) const;
    int FocusedRow() const;
    std::vector<int> SelectedRows() const;

    // What a user does with the mouse.
    void ClickTitle(int column) const;
    void DoubleClickTitle(int column) const;
    void DragTitleEdge(int column, int by) const;  // its right edge, `by` pixels to the right
    void ClickRow(int row, int column, bool control = false, bool shift = false) const;

private:
    HWND Header() const;
    POINT TitlePoint(int column) const;

    HWND grid_;
};

}  // namespace tolvane::test
