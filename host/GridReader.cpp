#include "host/GridReader.h"

#include <commctrl.h>

#include <array>

namespace tolvane::host {

TGridReader::TGridReader(HWND grid) : grid_(grid) {
    const auto header = reinterpret_cast<HWND>(SendMessageW(grid_, LVM_GETHEADER, 0, 0));
    const auto count = static_cast<std::size_t>(SendMessageW(header, HDM_GETITEMCOUNT, 0, 0));
    std::vector<int> order(count);
    SendMessageW(grid_, LVM_GETCOLUMNORDERARRAY, count, reinterpret_cast<LPARAM>(order.data()));
    for (const int index : order) {
        std::array<wchar_t, 260> title{};
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
        column.pszText = title.data();
        column.cchTextMax = static_cast<int>(title.size());
        if (SendMessageW(grid_, LVM_GETCOLUMNW, static_cast<WPARAM>(index),
                         reinterpret_cast<LPARAM>(&column)) == 0)
            continue;
        columns_.push_back(
            {index, column.cx, (column.fmt & LVCFMT_JUSTIFYMASK) == LVCFMT_RIGHT, title.data()});
    }
}

std::size_t TGridReader::RowCount() const {
    return static_cast<std::size_t>(SendMessageW(grid_, LVM_GETITEMCOUNT, 0, 0));
}

std::wstring TGridReader::Text(std::size_t row, std::size_t column) const {
    std::array<wchar_t, 512> text{};
    LVITEMW item{};
    item.iSubItem = columns_[column].subItem;
    item.pszText = text.data();
    item.cchTextMax = static_cast<int>(text.size());
    SendMessageW(grid_, LVM_GETITEMTEXTW, row, reinterpret_cast<LPARAM>(&item));
    return item.pszText == nullptr ? std::wstring() : std::wstring(item.pszText);
}

}  // namespace tolvane::host
