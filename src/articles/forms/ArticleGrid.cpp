#include "articles/forms/ArticleGrid.h"

#include <algorithm>
#include <cstddef>
#include <cwchar>
#include <utility>

#include "articles/forms/GridDrawing.h"
#include "window/WideText.h"

namespace tolvane {
namespace {

constexpr int kRowMargin = 5;

}  // namespace

TArticleGrid::TArticleGrid(TDpi dpi, TGridView& view)
    : dpi_(dpi), view_(view), font_(MakeListFont(dpi)), header_(dpi), rows_(view) {}

TArticleGrid::~TArticleGrid() {
    // Its handle may be another window's by now.
    const bool isOurs =
        IsWindow(list_) != 0 &&
        GetWindowLongPtrW(list_, GWLP_WNDPROC) == reinterpret_cast<LONG_PTR>(&ListProcedure) &&
        GetWindowLongPtrW(list_, GWLP_USERDATA) == reinterpret_cast<LONG_PTR>(this);
    if (isOurs) SetWindowLongPtrW(list_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(before_));
}

// SetWindowSubclass would look up a property with each of the list view's messages, which in Wine
// takes longer than most of the messages themselves.
void TArticleGrid::Attach(HWND list) {
    list_ = list;
    SendMessageW(list_, WM_SETFONT, reinterpret_cast<WPARAM>(font_.Get()), FALSE);
    SetWindowLongPtrW(list, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    before_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(list, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&ListProcedure)));
    constexpr DWORD kStyle = LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER;
    SendMessageW(list_, LVM_SETEXTENDEDLISTVIEWSTYLE, kStyle, static_cast<LPARAM>(kStyle));
    header_.Attach(list);
    rows_.Attach(list);
}

void TArticleGrid::SetDpi(TDpi dpi) {
    const TDpi before = std::exchange(dpi_, dpi);
    if (before == dpi) return;
    // The list view uses this one until it gets the new one.
    const TOwnedFont font = std::exchange(font_, MakeListFont(dpi));
    header_.SetDpi(dpi);
    if (list_ == nullptr) return;
    SendMessageW(list_, WM_SETFONT, reinterpret_cast<WPARAM>(font_.Get()), FALSE);
    MeasureRows();
}

// A list view asks for the height of its rows only when it is told that it has another size.
void TArticleGrid::MeasureRows() const {
    RECT rect{};
    GetWindowRect(list_, &rect);
    WINDOWPOS place{};
    place.hwnd = list_;
    place.cx = rect.right - rect.left;
    place.cy = rect.bottom - rect.top;
    place.flags = SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE;
    SendMessageW(list_, WM_WINDOWPOSCHANGED, 0, reinterpret_cast<LPARAM>(&place));
}

// Not every list view passes a title's double click on to its parent.
LRESULT CALLBACK TArticleGrid::ListProcedure(HWND list, UINT id, WPARAM wParam,
                                             LPARAM lParam) noexcept {
    auto& self = *reinterpret_cast<TArticleGrid*>(GetWindowLongPtrW(list, GWLP_USERDATA));
    const WNDPROC before = self.before_;
    if (id == WM_NOTIFY) {
        const auto& header = *reinterpret_cast<const NMHEADERW*>(lParam);
        const bool isDoubleClick = header.hdr.code == static_cast<UINT>(HDN_ITEMDBLCLICKW) ||
                                   header.hdr.code == static_cast<UINT>(HDN_ITEMDBLCLICKA);
        if (isDoubleClick && header.hdr.hwndFrom == self.header_.Control()) {
            self.TitleDoubleClicked(header.iItem);
            return 0;
        }
    }
    if (self.rows_.HandleMessage(id, wParam, lParam)) return 0;
    return CallWindowProcW(before, list, id, wParam, lParam);
}

void TArticleGrid::TitleDoubleClicked(int shown) noexcept {
    try {
        if (const auto column = header_.ColumnAtShown(shown)) AutoFit(*column);
    } catch (...) {  // NOLINT(bugprone-empty-catch): out of memory; the width stays
    }
}

int TArticleGrid::RowHeight() const {
    return TextHeight(font_.Get()) + dpi_.Scale(kRowMargin);
}

void TArticleGrid::SetColumns(std::vector<TGridColumnState> columns) {
    if (header_.Replace(std::move(columns))) view_.ColumnEntered(header_.Current());
}

void TArticleGrid::ShowColumns(const std::vector<bool>& visible) {
    std::vector<TGridColumnState> columns = Columns();
    for (std::size_t i = 0; i < columns.size(); ++i)
        columns[i].visible = visible.at(i);
    SetColumns(std::move(columns));
}

std::wstring TArticleGrid::TextAt(TRowId row, std::size_t column) const {
    return Wide(view_.CellText(row, header_.At(column).key));
}

void TArticleGrid::AutoFit(std::size_t column) {
    const int shown = header_.ShownIndexOf(column);
    if (shown < 0) return;
    const TWindowDc dc(list_);
    const auto widthOf = [&](const std::wstring& text) {
        return TextWidth(dc.Get(), font_.Get(), text.c_str(), static_cast<int>(text.size()));
    };
    int width = widthOf(header_.At(column).title);
    const std::size_t end = rows_.EndOfDrawn();
    for (std::size_t index = rows_.FirstDrawn(); index < end; ++index)
        width = std::max(width, widthOf(TextAt(view_.RowAt(index), column)));
    if (width > 0) header_.SetTextWidth(shown, width);
}

LRESULT TArticleGrid::FillText(NMLVDISPINFOW& info) const {
    LVITEMW& item = info.item;
    const std::optional<std::size_t> column = header_.ColumnAtShown(item.iSubItem);
    if ((item.mask & LVIF_TEXT) == 0 || item.pszText == nullptr || item.cchTextMax <= 0) return 0;
    item.pszText[0] = L'\0';
    if (!column || item.iItem < 0 || static_cast<std::size_t>(item.iItem) >= view_.RowCount())
        return 0;
    const std::wstring text = TextAt(view_.RowAt(static_cast<std::size_t>(item.iItem)), *column);
    const auto length = std::min(text.size(), static_cast<std::size_t>(item.cchTextMax) - 1);
    std::wmemcpy(item.pszText, text.c_str(), length);
    item.pszText[length] = L'\0';
    return 0;
}

void TArticleGrid::EnterColumn(int shown) {
    const std::optional<std::size_t> column = header_.ColumnAtShown(shown);
    if (!column || *column == header_.Current()) return;
    header_.SetCurrent(*column);
    InvalidateRect(list_, nullptr, FALSE);
    view_.ColumnEntered(*column);
}

void TArticleGrid::StepColumn(int step) {
    const int shown = header_.ShownIndexOf(header_.Current()) + step;
    if (!header_.ColumnAtShown(shown)) return;
    header_.ScrollTo(shown);
    EnterColumn(shown);
}

void TArticleGrid::ClickCurrentTitle() {
    if (header_.ShownIndexOf(header_.Current()) >= 0) view_.TitleClicked(header_.Current());
}

bool TArticleGrid::HandleKey(UINT virtualKey) {
    if (virtualKey != VK_LEFT && virtualKey != VK_RIGHT) return false;
    StepColumn(virtualKey == VK_LEFT ? -1 : 1);
    return true;
}

std::optional<LRESULT> TArticleGrid::HandleNotify(NMHDR& header) {
    if (list_ == nullptr || header.hwndFrom != list_) return std::nullopt;
    if (rows_.HandleChange(header)) return 0;
    switch (header.code) {
        case LVN_GETDISPINFOW:
            return FillText(reinterpret_cast<NMLVDISPINFOW&>(header));
        case LVN_COLUMNCLICK:
            if (const auto column =
                    header_.ColumnAtShown(reinterpret_cast<NMLISTVIEW&>(header).iSubItem))
                view_.TitleClicked(*column);
            return 0;
        case NM_CLICK:
            // A click beside the rows reports column 0.
            if (reinterpret_cast<NMITEMACTIVATE&>(header).iItem >= 0)
                EnterColumn(reinterpret_cast<NMITEMACTIVATE&>(header).iSubItem);
            return 0;
        case LVN_ODFINDITEMW:
        case LVN_ODFINDITEMA:
            // A typed letter selects no row (0 would be the first).
            return -1;
        default:
            return std::nullopt;
    }
}

TArticleGrid::TRowColours TArticleGrid::ColoursOf(TRowId row, bool marked, bool current) const {
    // Without marks the current row is what the user works on.
    if (marked || (current && !rows_.HasMarks()))
        return {GetSysColor(COLOR_HIGHLIGHT), GetSysColor(COLOR_HIGHLIGHTTEXT)};
    const COLORREF text = GetSysColor(COLOR_WINDOWTEXT);
    if (view_.IsPromoted(row)) return {view_.PromotionColour(), text};
    return {current ? CurrentRowColour() : GetSysColor(COLOR_WINDOW), text};
}

bool TArticleGrid::HandleDraw(const DRAWITEMSTRUCT& item) {
    if (item.hwndItem != list_ || item.itemID >= view_.RowCount()) return false;
    const TRowId row = view_.RowAt(item.itemID);
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
    RECT clip{};
    GetClipBox(item.hDC, &clip);
    const std::vector<RECT> cells = header_.CellRects(item.rcItem, clip.right);
    for (std::size_t shown = 0; shown < cells.size(); ++shown) {
        if (cells[shown].right > clip.left)
            DrawCell(item.hDC, cells[shown], row, static_cast<int>(shown), current);
    }
    if (header_.Style().indicator && !cells.empty()) {
        RECT area = cells.front();
        area.right = area.left + header_.IndicatorWidth();
        DrawIndicator(item.hDC, area, marked, current, dpi_);
    }
    return true;
}

void TArticleGrid::DrawCell(HDC dc, RECT cell, TRowId row, int shown, bool current) const {
    DrawCellLines(dc, cell, header_.Style());
    if (shown == 0) cell.left += header_.IndicatorWidth();
    const std::size_t column = header_.ColumnAtShown(shown).value();
    if (current && column == header_.Current() && GetFocus() == list_) {
        const RECT frame{cell.left, cell.top, cell.right - 1, cell.bottom - 1};
        DrawFocusRect(dc, &frame);
    }
    DrawCellText(dc, cell, TextAt(row, column), header_.At(column).right, dpi_);
}

}  // namespace tolvane
