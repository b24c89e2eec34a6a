#include "tests/support/window/GridReader.h"

#include <commctrl.h>

#include <array>
#include <optional>

#include "tests/support/window/HostFrame.h"

namespace tolvane::test {
namespace {

constexpr int kTextRoom = 512;

LPARAM PointParam(POINT at) {
    return MAKELPARAM(static_cast<WORD>(at.x), static_cast<WORD>(at.y));
}

}  // namespace

HWND TGridReader::Header() const {
    return reinterpret_cast<HWND>(SendMessageW(grid_, LVM_GETHEADER, 0, 0));
}

int TGridReader::RowCount() const {
    return static_cast<int>(SendMessageW(grid_, LVM_GETITEMCOUNT, 0, 0));
}

std::vector<std::string> TGridReader::Titles() const {
    const auto count = static_cast<int>(SendMessageW(Header(), HDM_GETITEMCOUNT, 0, 0));
    std::vector<std::string> titles;
    titles.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        std::array<wchar_t, kTextRoom> text{};
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT;
        column.pszText = text.data();
        column.cchTextMax = kTextRoom;
        SendMessageW(grid_, LVM_GETCOLUMNW, static_cast<WPARAM>(i),
                     reinterpret_cast<LPARAM>(&column));
        titles.push_back(Utf8(text.data()));
    }
    return titles;
}

std::string TGridReader::Cell(int row, int column) const {
    std::array<wchar_t, kTextRoom> text{};
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = text.data();
    item.cchTextMax = kTextRoom;
    SendMessageW(grid_, LVM_GETITEMTEXTW, static_cast<WPARAM>(row),
                 reinterpret_cast<LPARAM>(&item));
    return Utf8(text.data());
}

std::vector<std::string> TGridReader::Column(int column) const {
    std::vector<std::string> texts;
    texts.reserve(static_cast<std::size_t>(RowCount()));
    for (int row = 0; row < RowCount(); ++row)
        texts.push_back(Cell(row, column));
    return texts;
}

int TGridReader::ColumnByTitle(const std::string& title) const {
    const std::vector<std::string> titles = Titles();
    for (std::size_t i = 0; i < titles.size(); ++i) {
        if (titles[i] == title) return static_cast<int>(i);
    }
    return -1;
}

int TGridReader::ColumnWidth(int column) const {
    return static_cast<int>(
        SendMessageW(grid_, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0));
}

int TGridReader::ColumnFormat(int column) const {
    HDITEMW item{};
    item.mask = HDI_FORMAT;
    SendMessageW(Header(), HDM_GETITEMW, static_cast<WPARAM>(column),
                 reinterpret_cast<LPARAM>(&item));
    return item.fmt;
}

int TGridReader::FocusedRow() const {
    return static_cast<int>(
        SendMessageW(grid_, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED));
}

std::vector<int> TGridReader::SelectedRows() const {
    std::vector<int> rows;
    int at = -1;
    while ((at = static_cast<int>(
                SendMessageW(grid_, LVM_GETNEXTITEM, static_cast<WPARAM>(at), LVNI_SELECTED))) >= 0)
        rows.push_back(at);
    return rows;
}

int TGridReader::TextWidth(const std::wstring& text) const {
    const HDC dc = GetDC(grid_);
    const HGDIOBJ before =
        SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(grid_, WM_GETFONT, 0, 0)));
    SIZE size{};
    GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size);
    SelectObject(dc, before);
    ReleaseDC(grid_, dc);
    return size.cx;
}

RECT TGridReader::TitleRect(int column) const {
    RECT rect{};
    SendMessageW(Header(), HDM_GETITEMRECT, static_cast<WPARAM>(column),
                 reinterpret_cast<LPARAM>(&rect));
    return rect;
}

RECT TGridReader::RowRect(int row) const {
    RECT rect{LVIR_BOUNDS, 0, 0, 0};
    SendMessageW(grid_, LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&rect));
    return rect;
}

POINT TGridReader::TitlePoint(int column) const {
    const RECT rect = TitleRect(column);
    POINT at{(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
    // A title out of view is brought into it first.
    POINT inList = at;
    MapWindowPoints(Header(), grid_, &inList, 1);
    RECT client{};
    GetClientRect(grid_, &client);
    if (inList.x < 0 || inList.x >= client.right)
        SendMessageW(grid_, LVM_SCROLL, static_cast<WPARAM>(inList.x - client.right / 2), 0);
    return at;
}

void TGridReader::ClickTitle(int column) const {
    const LPARAM at = PointParam(TitlePoint(column));
    SendMessageW(Header(), WM_LBUTTONDOWN, MK_LBUTTON, at);
    SendMessageW(Header(), WM_LBUTTONUP, 0, at);
    RunLoopDry();
}

void TGridReader::DoubleClickTitle(int column) const {
    const LPARAM at = PointParam(TitlePoint(column));
    SendMessageW(Header(), WM_LBUTTONDOWN, MK_LBUTTON, at);
    SendMessageW(Header(), WM_LBUTTONUP, 0, at);
    SendMessageW(Header(), WM_LBUTTONDBLCLK, MK_LBUTTON, at);
    SendMessageW(Header(), WM_LBUTTONUP, 0, at);
    RunLoopDry();
}

void TGridReader::DragTitleEdge(int column, int by) const {
    const RECT rect = TitleRect(column);
    const POINT from{rect.right - 1, (rect.top + rect.bottom) / 2};
    const LPARAM to = PointParam({from.x + by, from.y});
    SendMessageW(Header(), WM_LBUTTONDOWN, MK_LBUTTON, PointParam(from));
    SendMessageW(Header(), WM_MOUSEMOVE, MK_LBUTTON, to);
    SendMessageW(Header(), WM_LBUTTONUP, 0, to);
    RunLoopDry();
}

void TGridReader::ClickRow(int row, int column, bool control, bool shift) const {
    RECT cell{};
    cell.top = column;
    cell.left = column == 0 ? LVIR_LABEL : LVIR_BOUNDS;
    SendMessageW(grid_, LVM_GETSUBITEMRECT, static_cast<WPARAM>(row),
                 reinterpret_cast<LPARAM>(&cell));
    const LPARAM at = PointParam({cell.left + 20, (cell.top + cell.bottom) / 2});
    std::optional<THeldKey> heldControl;
    std::optional<THeldKey> heldShift;
    if (control) heldControl.emplace(VK_CONTROL);
    if (shift) heldShift.emplace(VK_SHIFT);
    WPARAM keys = MK_LBUTTON;
    if (control) keys |= MK_CONTROL;
    if (shift) keys |= MK_SHIFT;
    // Posted first: the list waits for the button to go up or for a drag before it returns.
    PostMessageW(grid_, WM_LBUTTONUP, keys & ~static_cast<WPARAM>(MK_LBUTTON), at);
    SendMessageW(grid_, WM_LBUTTONDOWN, keys, at);
    RunLoopDry();
}

}  // namespace tolvane::test
