#include "host/GridReader.h"

#include <commctrl.h>

#include <algorithm>
#include <array>

namespace tolvane::host {
namespace {

UINT Alignment(int format) {
    switch (format & LVCFMT_JUSTIFYMASK) {
        case LVCFMT_RIGHT:
            return DT_RIGHT;
        case LVCFMT_CENTER:
            return DT_CENTER;
        default:
            return DT_LEFT;
    }
}

}  // namespace

TGridReader::TGridReader(HWND grid) : grid_(grid) {
    const auto header = reinterpret_cast<HWND>(SendMessageW(grid_, LVM_GETHEADER, 0, 0));
    const auto count = SendMessageW(header, HDM_GETITEMCOUNT, 0, 0);
    if (header == nullptr || count <= 0) return;
    std::vector<int> order(static_cast<std::size_t>(count));
    SendMessageW(grid_, LVM_GETCOLUMNORDERARRAY, order.size(),
                 reinterpret_cast<LPARAM>(order.data()));
    for (const int index : order)
        ReadColumn(index);
}

void TGridReader::ReadColumn(int index) {
    std::array<wchar_t, 260> title{};
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
    column.pszText = title.data();
    column.cchTextMax = static_cast<int>(title.size());
    if (SendMessageW(grid_, LVM_GETCOLUMNW, static_cast<WPARAM>(index),
                     reinterpret_cast<LPARAM>(&column)) == 0)
        return;
    columns_.push_back({index, column.cx, Alignment(column.fmt), title.data()});
}

std::size_t TGridReader::RowCount() const {
    if (columns_.empty()) return 0;
    const LRESULT count = SendMessageW(grid_, LVM_GETITEMCOUNT, 0, 0);
    return static_cast<std::size_t>(std::max<LRESULT>(count, 0));
}

std::wstring TGridReader::Text(std::size_t row, std::size_t column) const {
    std::array<wchar_t, 512> text{};
    LVITEMW item{};
    item.iSubItem = columns_[column].subItem;
    item.pszText = text.data();
    item.cchTextMax = static_cast<int>(text.size());
    SendMessageW(grid_, LVM_GETITEMTEXTW, row, reinterpret_cast<LPARAM>(&item));
    text.back() = L'\0';
    return text.data();
}

}  // namespace tolvane::host
