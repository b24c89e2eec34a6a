#include "articles/forms/ArticleGrid.h"

#include <algorithm>
#include <cstddef>
#include <cwchar>
#include <utility>

#include "articles/forms/GridDrawing.h"
#include "window/VisualStyle.h"
#include "window/WideText.h"

namespace tolvane {
namespace {

constexpr int kThemedVersion = 6;
constexpr int kAutoFitMargin = 8;
constexpr int kRowMargin = 5;

void SetItemState(HWND list, int item, UINT state, UINT mask) {
    LVITEMW change{};
    change.state = state;
    change.stateMask = mask;
    SendMessageW(list, LVM_SETITEMSTATE, static_cast<WPARAM>(item),
                 reinterpret_cast<LPARAM>(&change));
}

int NextItem(HWND list, int after, UINT flags) {
    return static_cast<int>(SendMessageW(list, LVM_GETNEXTITEM, static_cast<WPARAM>(after),
                                         static_cast<LPARAM>(flags)));
}

// Says no to the user's view of our own changes for the length of a block.
class TQuiet {
public:
    explicit TQuiet(bool& quiet) : quiet_(quiet), before_(std::exchange(quiet, true)) {}
    TQuiet(const TQuiet&) = delete;
    TQuiet& operator=(const TQuiet&) = delete;
    ~TQuiet() { quiet_ = before_; }

private:
    bool& quiet_;
    bool before_;
};

}  // namespace

TArticleGrid::TArticleGrid(TDpi dpi, TGridView& view)
    : dpi_(dpi), view_(view), font_(MakeListFont(dpi)) {}

TArticleGrid::~TArticleGrid() {
    if (IsWindow(list_) != 0) RemoveWindowSubclass(list_, &ListProcedure, 0);
}

void TArticleGrid::Attach(HWND list) {
    list_ = list;
    SendMessageW(list_, WM_SETFONT, reinterpret_cast<WPARAM>(font_.Get()), FALSE);
    SetWindowSubclass(list, &ListProcedure, 0, reinterpret_cast<DWORD_PTR>(this));
    constexpr DWORD kStyle = LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER;
    SendMessageW(list_, LVM_SETEXTENDEDLISTVIEWSTYLE, kStyle, static_cast<LPARAM>(kStyle));
    if (CommonControlsVersion() >= kThemedVersion) return;
    sortImages_ = MakeSortImages(dpi_);
    SendMessageW(Header(), HDM_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(sortImages_.Get()));
}

// Not every list view hands a title's double click on to its parent.
LRESULT CALLBACK TArticleGrid::ListProcedure(HWND list, UINT id, WPARAM wParam, LPARAM lParam,
                                             UINT_PTR, DWORD_PTR grid) noexcept {
    if (id == WM_NOTIFY) {
        auto& self = *reinterpret_cast<TArticleGrid*>(grid);
        const auto& header = *reinterpret_cast<const NMHEADERW*>(lParam);
        const bool isDoubleClick = header.hdr.code == static_cast<UINT>(HDN_ITEMDBLCLICKW) ||
                                   header.hdr.code == static_cast<UINT>(HDN_ITEMDBLCLICKA);
        if (isDoubleClick && header.hdr.hwndFrom == self.Header()) {
            self.TitleDoubleClicked(header.iItem);
            return 0;
        }
    }
    if (id == WM_NCDESTROY) RemoveWindowSubclass(list, &ListProcedure, 0);
    return DefSubclassProc(list, id, wParam, lParam);
}

void TArticleGrid::TitleDoubleClicked(int viewIndex) noexcept {
    try {
        if (const auto column = ColumnOfView(viewIndex)) AutoFit(*column);
    } catch (...) {  // NOLINT(bugprone-empty-catch): out of memory; the width stays
    }
}

HWND TArticleGrid::Header() const {
    return reinterpret_cast<HWND>(SendMessageW(list_, LVM_GETHEADER, 0, 0));
}

int TArticleGrid::RowHeight() const {
    return TextHeight(font_.Get()) + dpi_.Scale(kRowMargin);
}

std::optional<std::size_t> TArticleGrid::ColumnOfView(int viewIndex) const {
    if (viewIndex < 0 || static_cast<std::size_t>(viewIndex) >= shown_.size()) return std::nullopt;
    return shown_[static_cast<std::size_t>(viewIndex)];
}

int TArticleGrid::ViewOfColumn(std::size_t column) const {
    const auto found = std::find(shown_.begin(), shown_.end(), column);
    return found == shown_.end() ? -1 : static_cast<int>(found - shown_.begin());
}

void TArticleGrid::SetColumns(std::vector<TGridColumnState> columns) {
    const bool hadColumns = !columns_.empty();
    const std::size_t entered = hadColumns ? KeyOf(currentColumn_) : 0;
    SendMessageW(list_, WM_SETREDRAW, FALSE, 0);
    for (std::size_t count = shown_.size(); count > 0; --count)
        SendMessageW(list_, LVM_DELETECOLUMN, count - 1, 0);
    shown_.clear();
    columns_ = std::move(columns);
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (!columns_[i].visible) continue;
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
        column.fmt = columns_[i].right ? LVCFMT_RIGHT : LVCFMT_LEFT;
        column.cx = columns_[i].width + (shown_.empty() ? IndicatorWidth() : 0);
        column.pszText = columns_[i].title.data();
        SendMessageW(list_, LVM_INSERTCOLUMNW, shown_.size(), reinterpret_cast<LPARAM>(&column));
        shown_.push_back(i);
    }
    if (!shown_.empty() && ViewOfColumn(currentColumn_) < 0) currentColumn_ = shown_.front();
    SendMessageW(list_, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(list_, nullptr, TRUE);
    SetSortMark(sortColumn_, sortAscending_);
    if (hadColumns && !shown_.empty() && KeyOf(currentColumn_) != entered)
        view_.ColumnEntered(currentColumn_);
}

int TArticleGrid::ViewWidth(std::size_t view) const {
    const auto width = static_cast<int>(SendMessageW(list_, LVM_GETCOLUMNWIDTH, view, 0));
    return view == 0 ? std::max(0, width - IndicatorWidth()) : width;
}

void TArticleGrid::ReadWidths() const {
    for (std::size_t view = 0; view < shown_.size(); ++view)
        columns_[shown_[view]].width = ViewWidth(view);
}

std::vector<TGridColumnState> TArticleGrid::Columns() const {
    ReadWidths();
    return columns_;
}

void TArticleGrid::MoveColumn(std::size_t from, std::size_t to) {
    std::vector<TGridColumnState> columns = Columns();
    const auto at = [&](std::size_t index) {
        return columns.begin() + static_cast<std::ptrdiff_t>(index);
    };
    // Where a column that stood at an index stands afterwards.
    const auto moved = [&](std::size_t index) {
        if (index == from) return to;
        if (from < index && index <= to) return index - 1;
        if (to <= index && index < from) return index + 1;
        return index;
    };
    if (from < to)
        std::rotate(at(from), at(from + 1), at(to + 1));
    else
        std::rotate(at(to), at(from), at(from + 1));
    currentColumn_ = moved(currentColumn_);
    if (sortColumn_) sortColumn_ = moved(*sortColumn_);
    // The current column is the same one at another place: none is entered.
    columns_ = columns;
    SetColumns(std::move(columns));
}

void TArticleGrid::ShowColumns(const std::vector<bool>& visible) {
    std::vector<TGridColumnState> columns = Columns();
    for (std::size_t i = 0; i < columns.size(); ++i)
        columns[i].visible = visible.at(i);
    SetColumns(std::move(columns));
}

void TArticleGrid::SetStyle(TGridStyle style) {
    std::vector<TGridColumnState> columns = Columns();
    style_ = style;
    SetColumns(std::move(columns));
}

void TArticleGrid::RowsReplaced() {
    const TQuiet quiet(quiet_);
    const std::size_t count = view_.RowCount();
    SetItemState(list_, -1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    SendMessageW(list_, LVM_SETITEMCOUNT, count, 0);
    marks_.Reset(count);
    // The next range starts at the first row, not where one of the former rows stood.
    SendMessageW(list_, LVM_SETSELECTIONMARK, 0, count > 0 ? 0 : -1);
    if (count > 0) {
        SetItemState(list_, 0, LVIS_FOCUSED, LVIS_FOCUSED);
        SendMessageW(list_, LVM_ENSUREVISIBLE, 0, FALSE);
    }
    InvalidateRect(list_, nullptr, TRUE);
}

void TArticleGrid::RowsReordered() {
    const TQuiet quiet(quiet_);
    SendMessageW(list_, WM_SETREDRAW, FALSE, 0);
    ShowMarks();
    SendMessageW(list_, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(list_, nullptr, TRUE);
}

// The list view keeps the selected places as ranges and gets the shorter list of changes, from the
// top: thousands of them take no time that way.
void TArticleGrid::ShowMarks() {
    const std::size_t count = view_.RowCount();
    const bool most = marks_.Count() > count / 2;
    SetItemState(list_, -1, most ? LVIS_SELECTED : 0, LVIS_SELECTED);
    if (marks_.Count() == 0 || marks_.Count() == count) return;
    for (std::size_t place = 0; place < count; ++place) {
        if (marks_.IsMarked(view_.RowAt(place)) == most) continue;
        SetItemState(list_, static_cast<int>(place), most ? 0 : LVIS_SELECTED, LVIS_SELECTED);
    }
}

std::optional<TRowId> TArticleGrid::CurrentRow() const {
    const int place = NextItem(list_, -1, LVNI_FOCUSED);
    if (place < 0 || static_cast<std::size_t>(place) >= view_.RowCount()) return std::nullopt;
    return view_.RowAt(static_cast<std::size_t>(place));
}

void TArticleGrid::SetCurrentRow(TRowId row) {
    const auto place = static_cast<int>(view_.PlaceOf(row));
    SetItemState(list_, place, LVIS_FOCUSED, LVIS_FOCUSED);
    // A range that the user extends starts here.
    SendMessageW(list_, LVM_SETSELECTIONMARK, 0, place);
    SendMessageW(list_, LVM_ENSUREVISIBLE, static_cast<WPARAM>(place), FALSE);
}

void TArticleGrid::SetSortMark(std::optional<std::size_t> column, bool ascending) {
    sortColumn_ = column;
    sortAscending_ = ascending;
    for (std::size_t view = 0; view < shown_.size(); ++view) {
        HDITEMW item{};
        item.mask = HDI_FORMAT;
        SendMessageW(Header(), HDM_GETITEMW, view, reinterpret_cast<LPARAM>(&item));
        item.fmt &=
            ~(HDF_SORTUP | HDF_SORTDOWN | HDF_IMAGE | HDF_BITMAP_ON_RIGHT | HDF_JUSTIFYMASK);
        // A list view keeps its first title at the left, whatever was asked for.
        item.fmt |= columns_[shown_[view]].right ? HDF_RIGHT : HDF_LEFT;
        if (column == shown_[view]) {
            item.fmt |= ascending ? HDF_SORTUP : HDF_SORTDOWN;
            if (sortImages_) {
                item.mask |= HDI_IMAGE;
                item.fmt |= HDF_IMAGE | HDF_BITMAP_ON_RIGHT;
                item.iImage = ascending ? kSortUpImage : kSortDownImage;
            }
        }
        SendMessageW(Header(), HDM_SETITEMW, view, reinterpret_cast<LPARAM>(&item));
    }
}

std::wstring TArticleGrid::TextAt(TRowId row, std::size_t column) const {
    return Wide(view_.CellText(row, columns_[column].key));
}

void TArticleGrid::AutoFit(std::size_t column) {
    const int view = ViewOfColumn(column);
    if (view < 0) return;
    const TWindowDc dc(list_);
    const auto widthOf = [&](const std::wstring& text) {
        return TextWidth(dc.Get(), font_.Get(), text.c_str(), static_cast<int>(text.size()));
    };
    int width = widthOf(columns_[column].title);
    const std::size_t end = EndOfDrawnRows();
    for (std::size_t place = FirstDrawnRow(); place < end; ++place)
        width = std::max(width, widthOf(TextAt(view_.RowAt(place), column)));
    if (width <= 0) return;
    width += dpi_.Scale(kAutoFitMargin) + (view == 0 ? IndicatorWidth() : 0);
    SendMessageW(list_, LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(view), width);
}

std::size_t TArticleGrid::FirstDrawnRow() const {
    return static_cast<std::size_t>(SendMessageW(list_, LVM_GETTOPINDEX, 0, 0));
}

// The last drawn row may be cut at the list's lower edge; a row that begins at it is not drawn.
std::size_t TArticleGrid::EndOfDrawnRows() const {
    RECT client{};
    GetClientRect(list_, &client);
    const auto isDrawn = [&](std::size_t place) {
        RECT row{LVIR_BOUNDS, 0, 0, 0};
        SendMessageW(list_, LVM_GETITEMRECT, place, reinterpret_cast<LPARAM>(&row));
        return row.top < client.bottom;
    };
    const std::size_t count = view_.RowCount();
    std::size_t end = FirstDrawnRow();
    while (end < count && isDrawn(end))
        ++end;
    return end;
}

LRESULT TArticleGrid::FillText(NMLVDISPINFOW& info) const {
    LVITEMW& item = info.item;
    const std::optional<std::size_t> column = ColumnOfView(item.iSubItem);
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

// A change of one row or of a range that the list view reports; -1 is all rows.
void TArticleGrid::ChangeMarks(int from, int to, bool marked) {
    const bool hadNone = marks_.Count() == 0;
    StoreMarks(from, to, marked);
    // The current row looks different with and without marks.
    if (hadNone != (marks_.Count() == 0)) InvalidateRect(list_, nullptr, FALSE);
}

void TArticleGrid::StoreMarks(int from, int to, bool marked) {
    const auto count = static_cast<int>(view_.RowCount());
    if (from < 0 && !marked) {
        marks_.Clear();
        return;
    }
    const int first = std::max(from, 0);
    const int last = from < 0 ? count - 1 : std::min(to, count - 1);
    for (int place = first; place <= last; ++place) {
        const TRowId row = view_.RowAt(static_cast<std::size_t>(place));
        if (marked)
            marks_.Mark(row);
        else
            marks_.Unmark(row);
    }
}

void TArticleGrid::EnterColumn(int viewIndex) {
    const std::optional<std::size_t> column = ColumnOfView(viewIndex);
    if (!column || *column == currentColumn_) return;
    currentColumn_ = *column;
    InvalidateRect(list_, nullptr, FALSE);
    view_.ColumnEntered(*column);
}

void TArticleGrid::ScrollToColumn(int viewIndex) {
    RECT cell{};
    SendMessageW(Header(), HDM_GETITEMRECT, static_cast<WPARAM>(viewIndex),
                 reinterpret_cast<LPARAM>(&cell));
    MapWindowPoints(Header(), list_, reinterpret_cast<POINT*>(&cell), 2);
    RECT client{};
    GetClientRect(list_, &client);
    int by = 0;
    if (cell.right > client.right) by = cell.right - client.right;
    if (cell.left - by < 0) by = cell.left;
    if (by != 0) SendMessageW(list_, LVM_SCROLL, static_cast<WPARAM>(by), 0);
}

void TArticleGrid::StepColumn(int step) {
    const int view = ViewOfColumn(currentColumn_) + step;
    if (!ColumnOfView(view)) return;
    ScrollToColumn(view);
    EnterColumn(view);
}

void TArticleGrid::ClickCurrentTitle() {
    if (ViewOfColumn(currentColumn_) >= 0) view_.TitleClicked(currentColumn_);
}

bool TArticleGrid::HandleKey(UINT virtualKey) {
    if (virtualKey != VK_LEFT && virtualKey != VK_RIGHT) return false;
    StepColumn(virtualKey == VK_LEFT ? -1 : 1);
    return true;
}

std::optional<LRESULT> TArticleGrid::HandleNotify(NMHDR& header) {
    if (list_ == nullptr || header.hwndFrom != list_) return std::nullopt;
    switch (header.code) {
        case LVN_GETDISPINFOW:
            return FillText(reinterpret_cast<NMLVDISPINFOW&>(header));
        case LVN_ITEMCHANGED: {
            const auto& change = reinterpret_cast<NMLISTVIEW&>(header);
            const UINT changed = change.uOldState ^ change.uNewState;
            if (!quiet_ && (change.uChanged & LVIF_STATE) != 0 && (changed & LVIS_SELECTED) != 0)
                ChangeMarks(change.iItem, change.iItem, (change.uNewState & LVIS_SELECTED) != 0);
            return 0;
        }
        case LVN_ODSTATECHANGED: {
            const auto& change = reinterpret_cast<NMLVODSTATECHANGE&>(header);
            const UINT changed = change.uOldState ^ change.uNewState;
            if (!quiet_ && (changed & LVIS_SELECTED) != 0)
                ChangeMarks(change.iFrom, change.iTo, (change.uNewState & LVIS_SELECTED) != 0);
            return 0;
        }
        case LVN_COLUMNCLICK:
            if (const auto column = ColumnOfView(reinterpret_cast<NMLISTVIEW&>(header).iSubItem))
                view_.TitleClicked(*column);
            return 0;
        case NM_CLICK:
            // A click beside the rows reports column 0.
            if (reinterpret_cast<NMITEMACTIVATE&>(header).iItem >= 0)
                EnterColumn(reinterpret_cast<NMITEMACTIVATE&>(header).iSubItem);
            return 0;
        case LVN_ODFINDITEMW:
        case LVN_ODFINDITEMA:
            // A typed letter: 0 would be the first row.
            return -1;
        default:
            return std::nullopt;
    }
}

int TArticleGrid::IndicatorWidth() const {
    return tolvane::IndicatorWidth(style_, dpi_);
}

TArticleGrid::TRowColours TArticleGrid::ColoursOf(TRowId row, bool marked, bool current) const {
    // Without marks the current row is what the user works on.
    if (marked || (current && marks_.Count() == 0))
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
    for (std::size_t view = 0; view < shown_.size(); ++view)
        DrawCell(item, row, static_cast<int>(view), current);
    if (style_.indicator) {
        RECT area = CellRect(0, item.rcItem);
        area.right = area.left + IndicatorWidth();
        DrawIndicator(item.hDC, area, marked, current, dpi_);
    }
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
    DrawCellLines(item.hDC, cell, style_);
    if (view == 0) cell.left += IndicatorWidth();
    const std::size_t column = shown_[static_cast<std::size_t>(view)];
    if (current && column == currentColumn_ && GetFocus() == list_) {
        const RECT frame{cell.left, cell.top, cell.right - 1, cell.bottom - 1};
        DrawFocusRect(item.hDC, &frame);
    }
    DrawCellText(item.hDC, cell, TextAt(row, column), columns_[column].right, dpi_);
}

}  // namespace tolvane
