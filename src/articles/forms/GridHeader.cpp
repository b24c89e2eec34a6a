#include "articles/forms/GridHeader.h"

#include <commctrl.h>

#include <algorithm>
#include <utility>

#include "articles/forms/GridDrawing.h"
#include "window/VisualStyle.h"

namespace tolvane {
namespace {

constexpr int kThemedVersion = 6;
constexpr int kTextMargin = 8;

}  // namespace

void TGridHeader::Attach(HWND list) {
    list_ = list;
    GiveSortImages();
}

void TGridHeader::GiveSortImages() {
    if (CommonControlsVersion() >= kThemedVersion) return;
    // The header uses the former ones until it gets these.
    const TOwnedImageList before = std::exchange(sortImages_, MakeSortImages(dpi_));
    SendMessageW(Control(), HDM_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(sortImages_.Get()));
}

void TGridHeader::SetDpi(TDpi dpi) {
    std::vector<TGridColumnState> columns;
    if (list_ != nullptr) columns = Columns();
    for (TGridColumnState& column : columns)
        column.width = dpi.Scale(dpi_.Unscale(column.width));
    dpi_ = dpi;
    if (list_ == nullptr) return;
    GiveSortImages();
    Replace(std::move(columns));
}

HWND TGridHeader::Control() const {
    return reinterpret_cast<HWND>(SendMessageW(list_, LVM_GETHEADER, 0, 0));
}

std::optional<std::size_t> TGridHeader::ColumnAtShown(int shown) const {
    if (shown < 0 || static_cast<std::size_t>(shown) >= shown_.size()) return std::nullopt;
    return shown_[static_cast<std::size_t>(shown)];
}

int TGridHeader::ShownIndexOf(std::size_t column) const {
    const auto found = std::find(shown_.begin(), shown_.end(), column);
    return found == shown_.end() ? -1 : static_cast<int>(found - shown_.begin());
}

bool TGridHeader::Replace(std::vector<TGridColumnState> columns) {
    const bool hadColumns = !columns_.empty();
    const std::size_t entered = hadColumns ? At(current_).key : 0;
    SendMessageW(list_, WM_SETREDRAW, FALSE, 0);
    for (std::size_t count = shown_.size(); count > 0; --count)
        SendMessageW(list_, LVM_DELETECOLUMN, count - 1, 0);
    shown_.clear();
    columns_ = std::move(columns);
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (columns_[i].visible) Insert(i);
    }
    if (!shown_.empty() && ShownIndexOf(current_) < 0) current_ = shown_.front();
    SendMessageW(list_, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(list_, nullptr, TRUE);
    SetSortMark(sortColumn_, sortAscending_);
    return hadColumns && !shown_.empty() && At(current_).key != entered;
}

void TGridHeader::Insert(std::size_t index) {
    TGridColumnState& state = columns_[index];
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
    column.fmt = state.right ? LVCFMT_RIGHT : LVCFMT_LEFT;
    column.cx = state.width + (shown_.empty() ? IndicatorWidth() : 0);
    column.pszText = state.title.data();
    SendMessageW(list_, LVM_INSERTCOLUMNW, shown_.size(), reinterpret_cast<LPARAM>(&column));
    shown_.push_back(index);
}

int TGridHeader::ShownWidth(std::size_t shown) const {
    const auto width = static_cast<int>(SendMessageW(list_, LVM_GETCOLUMNWIDTH, shown, 0));
    return shown == 0 ? std::max(0, width - IndicatorWidth()) : width;
}

void TGridHeader::ReadWidths() const {
    for (std::size_t shown = 0; shown < shown_.size(); ++shown)
        columns_[shown_[shown]].width = ShownWidth(shown);
}

std::vector<TGridColumnState> TGridHeader::Columns() const {
    ReadWidths();
    return columns_;
}

void TGridHeader::Move(std::size_t from, std::size_t to) {
    std::vector<TGridColumnState> columns = Columns();
    const auto at = [&](std::size_t index) {
        return columns.begin() + static_cast<std::ptrdiff_t>(index);
    };
    // The new index of the column that was at `index`.
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
    current_ = moved(current_);
    if (sortColumn_) sortColumn_ = moved(*sortColumn_);
    // The same column stays the current one, under another index.
    columns_ = columns;
    Replace(std::move(columns));
}

void TGridHeader::SetSortMark(std::optional<std::size_t> column, bool ascending) {
    sortColumn_ = column;
    sortAscending_ = ascending;
    for (std::size_t shown = 0; shown < shown_.size(); ++shown) {
        HDITEMW item{};
        item.mask = HDI_FORMAT;
        SendMessageW(Control(), HDM_GETITEMW, shown, reinterpret_cast<LPARAM>(&item));
        const int before = item.fmt;
        item.fmt &=
            ~(HDF_SORTUP | HDF_SORTDOWN | HDF_IMAGE | HDF_BITMAP_ON_RIGHT | HDF_JUSTIFYMASK);
        // A list view aligns its first title to the left, whatever it was told.
        item.fmt |= columns_[shown_[shown]].right ? HDF_RIGHT : HDF_LEFT;
        if (column == shown_[shown]) {
            item.fmt |= ascending ? HDF_SORTUP : HDF_SORTDOWN;
            if (sortImages_) {
                item.mask |= HDI_IMAGE;
                item.fmt |= HDF_IMAGE | HDF_BITMAP_ON_RIGHT;
                item.iImage = ascending ? kSortUpImage : kSortDownImage;
            }
        }
        // The other direction's picture has the same format.
        if (item.fmt == before && (item.mask & HDI_IMAGE) == 0) continue;
        SendMessageW(Control(), HDM_SETITEMW, shown, reinterpret_cast<LPARAM>(&item));
    }
}

void TGridHeader::SetStyle(TGridStyle style) {
    std::vector<TGridColumnState> columns = Columns();
    style_ = style;
    Replace(std::move(columns));
}

int TGridHeader::IndicatorWidth() const {
    return tolvane::IndicatorWidth(style_, dpi_);
}

void TGridHeader::SetTextWidth(int shown, int pixels) {
    const int width = pixels + dpi_.Scale(kTextMargin) + (shown == 0 ? IndicatorWidth() : 0);
    SendMessageW(list_, LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(shown), width);
}

RECT TGridHeader::CellRect(int shown, const RECT& row) const {
    const HWND header = Control();
    RECT cell{};
    SendMessageW(header, HDM_GETITEMRECT, static_cast<WPARAM>(shown),
                 reinterpret_cast<LPARAM>(&cell));
    // The header is scrolled sideways together with the list.
    MapWindowPoints(header, list_, reinterpret_cast<POINT*>(&cell), 2);
    return {cell.left, row.top, cell.right, row.bottom};
}

std::vector<RECT> TGridHeader::CellRects(const RECT& row, LONG end) const {
    std::vector<RECT> cells;
    if (shown_.empty()) return cells;
    RECT cell = CellRect(0, row);
    while (cell.left < end) {
        cells.push_back(cell);
        if (cells.size() == shown_.size()) break;
        cell.left = cell.right;
        cell.right += static_cast<int>(SendMessageW(list_, LVM_GETCOLUMNWIDTH, cells.size(), 0));
    }
    return cells;
}

void TGridHeader::ScrollTo(int shown) {
    const RECT cell = CellRect(shown, {});
    RECT client{};
    GetClientRect(list_, &client);
    int by = 0;
    if (cell.right > client.right) by = cell.right - client.right;
    if (cell.left - by < 0) by = cell.left;
    if (by != 0) SendMessageW(list_, LVM_SCROLL, static_cast<WPARAM>(by), 0);
}

}  // namespace tolvane
