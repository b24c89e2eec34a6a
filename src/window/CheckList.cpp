#include "window/CheckList.h"

#include <commctrl.h>

#include <array>
#include <utility>

#include "window/WideText.h"

namespace tolvane {

int TCheckList::Count() const {
    return ListView_GetItemCount(list_);
}

// Measures and draws once for all lines. The column comes last, as it leaves room for the scroll
// bar, which comes with the redraw.
void TCheckList::Fill(std::vector<TLine> lines) {
    SendMessageW(list_, WM_SETREDRAW, FALSE, 0);
    ListView_DeleteAllItems(list_);
    int at = 0;
    for (TLine& line : lines)
        Insert(at++, std::move(line));
    SendMessageW(list_, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(list_, nullptr, TRUE);
    FitColumn();
}

void TCheckList::Insert(int at, TLine line) {
    LVITEMW item{};
    item.mask = LVIF_TEXT;
    item.iItem = at;
    item.pszText = line.text.data();
    SendMessageW(list_, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    // A new line has no check mark.
    if (line.checked) SetChecked(at, true);
}

void TCheckList::FitColumn() {
    SendMessageW(list_, LVM_SETCOLUMNWIDTH, 0, LVSCW_AUTOSIZE_USEHEADER);
}

void TCheckList::Move(int from, int to) {
    TLine line{WideTextOf(from), IsChecked(from)};
    Remove(from);
    Insert(to, std::move(line));
    FitColumn();
}

std::string TCheckList::Text(int index) const {
    return Narrow(WideTextOf(index));
}

std::wstring TCheckList::WideTextOf(int index) const {
    std::array<wchar_t, 512> buffer{};
    LVITEMW item{};
    item.pszText = buffer.data();
    item.cchTextMax = static_cast<int>(buffer.size());
    SendMessageW(list_, LVM_GETITEMTEXTW, static_cast<WPARAM>(index),
                 reinterpret_cast<LPARAM>(&item));
    return buffer.data();
}

bool TCheckList::IsChecked(int index) const {
    return ListView_GetCheckState(list_, index) == 1;
}

void TCheckList::SetChecked(int index, bool checked) {
    ListView_SetCheckState(list_, index, checked ? TRUE : FALSE);
}

int TCheckList::Current() const {
    return ListView_GetNextItem(list_, -1, LVNI_FOCUSED);
}

void TCheckList::SetCurrent(int index) {
    constexpr UINT kState = LVIS_FOCUSED | LVIS_SELECTED;
    ListView_SetItemState(list_, index, kState, kState);
    ListView_EnsureVisible(list_, index, FALSE);
}

void TCheckList::ShowWholeLines() const {
    RECT line{};
    RECT client{};
    RECT outer{};
    if (!ListView_GetItemRect(list_, 0, &line, LVIR_BOUNDS)) return;
    GetClientRect(list_, &client);
    GetWindowRect(list_, &outer);
    const LONG height = line.bottom - line.top;
    if (height <= 0 || Count() <= client.bottom / height) return;
    SetWindowPos(list_, nullptr, 0, 0, outer.right - outer.left,
                 outer.bottom - outer.top - client.bottom % height,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void TCheckList::Remove(int index) {
    ListView_DeleteItem(list_, index);
}

void PrepareCheckList(HWND list) {
    ListView_SetExtendedListViewStyle(list, LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT);
    LVCOLUMNW column{};
    column.mask = LVCF_WIDTH;
    column.cx = 100;
    SendMessageW(list, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
}

}  // namespace tolvane
