#pragma once

#include <windows.h>

#include <cstddef>
#include <string>
#include <vector>

namespace tolvane::host {

struct TGridColumn {
    int subItem = 0;
    int width = 0;  // pixels
    UINT align = DT_LEFT;
    std::wstring title;
};

// Reads a list view in report mode with ordinary messages: its columns in the order in which they
// are shown, and its texts. A window that is not a list view has no columns and no rows.
class TGridReader {
public:
    explicit TGridReader(HWND grid);

    HWND Handle() const noexcept { return grid_; }
    const std::vector<TGridColumn>& Columns() const { return columns_; }
    std::size_t RowCount() const;
    std::wstring Text(std::size_t row, std::size_t column) const;

private:
    void ReadColumn(int index);

    HWND grid_;
    std::vector<TGridColumn> columns_;
};

}  // namespace tolvane::host
