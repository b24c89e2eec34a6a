#include <array>
#include <string>

#include "articles/forms/ArticleGrid.h"

namespace tolvane {
namespace {

constexpr int kIndicatorWidth = 12;
constexpr int kCellMargin = 3;

// A light shade of the highlight colour: the current row when others are marked.
COLORREF CurrentRowColour() {
    const COLORREF highlight = GetSysColor(COLOR_HIGHLIGHT);
    const COLORREF window = GetSysColor(COLOR_WINDOW);
    const auto mix = [](int a, int b) { return static_cast<BYTE>((a + 4 * b) / 5); };
    return RGB(mix(GetRValue(highlight), GetRValue(window)),
               mix(GetGValue(highlight), GetGValue(window)),
               mix(GetBValue(highlight), GetBValue(window)));
}

}  // namespace

int TArticleGrid::IndicatorWidth() const {
    return style_.indicator ? dpi_.Scale(kIndicatorWidth) : 0;
}

TArticleGrid::TRowColours TArticleGrid::ColoursOf(TRowId row, bool marked, bool current) const {
    // Without marks the current row is what the user works on.
    if (marked || (current && marks_.Count() == 0))
        return {GetSysColor(COLOR_HIGHLIGHT), GetSysColor(COLOR_HIGHLIGHTTEXT)};
    const COLORREF text = GetSysColor(COLOR_WINDOWTEXT);
    if (source_.promoted(row)) return {source_.promotionColour(), text};
    return {current ? CurrentRowColour() : GetSysColor(COLOR_WINDOW), text};
}

bool TArticleGrid::HandleDraw(const DRAWITEMSTRUCT& item) {
    if (item.hwndItem != list_ || item.itemID >= source_.rowCount()) return false;
    const TRowId row = source_.rowAt(item.itemID);
    const auto state = static_cast<UINT>(
        SendMessageW(list_, LVM_GETITEMSTATE, item.itemID, LVIS_SELECTED | LVIS_FOCUSED));
    const bool marked = (state & LVIS_SELECTED) != 0;
    const bool current = (state & LVIS_FOCUSED) != 0;
    const TRowColours colours = ColoursOf(row, marked, current);
    const TOwnedBrush background(CreateSolidBrush(colours.background));
    FillRect(item.hDC, &item.rcItem, background.Get());
    const TSelected selectedFont(item.hDC, font_.Get());
    SetBkMode(item.hDC, TRANSPARENT);
    SetTextColor(item.hDC, colours.text);
    for (std::size_t view = 0; view < shown_.size(); ++view)
        DrawCell(item, row, static_cast<int>(view), current);
    if (style_.indicator) DrawIndicator(item, marked, current);
    return true;
}

RECT TArticleGrid::CellRect(int view, const RECT& row) const {
    RECT cell{};
    SendMessageW(Header(), HDM_GETITEMRECT, static_cast<WPARAM>(view),
                 reinterpret_cast<LPARAM>(&cell));
    // The header is as far to the left as the list is scrolled.
    MapWindowPoints(Header(), list_, reinterpret_cast<POINT*>(&cell), 2);
    return {cell.left, row.top, cell.right, row.bottom};
}

void TArticleGrid::DrawCell(const DRAWITEMSTRUCT& item, TRowId row, int view, bool current) const {
    RECT cell = CellRect(view, item.rcItem);
    if (RectVisible(item.hDC, &cell) == 0) return;
    const TSelected pen(item.hDC, GetStockObject(DC_PEN));
    SetDCPenColor(item.hDC, GetSysColor(COLOR_BTNFACE));
    if (style_.verticalLines) {
        MoveToEx(item.hDC, cell.right - 1, cell.top, nullptr);
        LineTo(item.hDC, cell.right - 1, cell.bottom);
    }
    if (style_.horizontalLines) {
        MoveToEx(item.hDC, cell.left, cell.bottom - 1, nullptr);
        LineTo(item.hDC, cell.right, cell.bottom - 1);
    }
    if (view == 0) cell.left += IndicatorWidth();
    const std::size_t column = shown_[static_cast<std::size_t>(view)];
    if (current && column == currentColumn_ && GetFocus() == list_) {
        const RECT frame{cell.left, cell.top, cell.right - 1, cell.bottom - 1};
        DrawFocusRect(item.hDC, &frame);
    }
    InflateRect(&cell, -dpi_.Scale(kCellMargin), 0);
    const std::wstring text = TextAt(row, column);
    const UINT side = columns_[column].right ? DT_RIGHT : DT_LEFT;
    DrawTextW(item.hDC, text.c_str(), static_cast<int>(text.size()), &cell,
              side | DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX);
}

void TArticleGrid::DrawIndicator(const DRAWITEMSTRUCT& item, bool marked, bool current) const {
    RECT area = CellRect(0, item.rcItem);
    area.right = area.left + IndicatorWidth();
    FillRect(item.hDC, &area, GetSysColorBrush(COLOR_BTNFACE));
    const TSelected brush(item.hDC, GetSysColorBrush(COLOR_BTNTEXT));
    const TSelected pen(item.hDC, GetStockObject(NULL_PEN));
    const int x = (area.left + area.right) / 2;
    const int y = (area.top + area.bottom) / 2;
    const int half = dpi_.Scale(4);
    if (current) {
        const std::array<POINT, 3> arrow = {POINT{x - half / 2, y - half},
                                            POINT{x - half / 2, y + half}, POINT{x + half / 2, y}};
        Polygon(item.hDC, arrow.data(), static_cast<int>(arrow.size()));
    } else if (marked) {
        Ellipse(item.hDC, x - half / 2, y - half / 2, x + half / 2 + 1, y + half / 2 + 1);
    }
}

}  // namespace tolvane
