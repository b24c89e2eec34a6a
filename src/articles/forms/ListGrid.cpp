#include "articles/forms/ListGrid.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "articles/GridColumns.h"
#include "articles/PromotionColour.h"
#include "articles/forms/ColListUnit.h"
#include "window/WideText.h"

namespace tolvane {
namespace {

bool IsNumber(TField field) {
    const TFieldType type = FieldInfo(field).type;
    return type == TFieldType::Integer || type == TFieldType::Float;
}

}  // namespace

TListGrid::TListGrid(TDpi dpi, TArticleSession& session, std::function<void(TField)> fieldEntered)
    : session_(session), fieldEntered_(std::move(fieldEntered)), grid_(dpi, *this) {}

void TListGrid::SetLayout(const TGridLayout& layout) {
    hiddenRows_ = layout.hiddenRows;
    std::vector<TGridColumnState> columns;
    columns.reserve(layout.columns.size());
    for (const TColumnLayout& column : layout.columns) {
        const bool hidden = IsHidden(layout.hiddenRows, columns.size()).value_or(false);
        columns.push_back({.key = static_cast<std::size_t>(column.field),
                           .title = Wide(TitleOf(column.field)),
                           .width = column.width,
                           .right = IsNumber(column.field),
                           .visible = !hidden});
    }
    grid_.SetColumns(std::move(columns));
}

TGridLayout TListGrid::Layout() const {
    TGridLayout layout;
    const std::vector<TGridColumnState> columns = grid_.Columns();
    std::transform(columns.begin(), columns.end(), layout.columns.begin(),
                   [](const TGridColumnState& column) {
                       return TColumnLayout{static_cast<TField>(column.key), column.width};
                   });
    layout.hiddenRows = hiddenRows_;
    return layout;
}

void TListGrid::ChooseColumns(HWND owner) {
    tolvane::ChooseColumns(owner, grid_, hiddenRows_);
}

TField TListGrid::FieldOf(std::size_t column) const {
    return static_cast<TField>(grid_.KeyOf(column));
}

void TListGrid::ShowSortMark() {
    const TSortState& sort = session_.Sort();
    std::optional<std::size_t> marked;
    for (std::size_t column = 0; column < grid_.ColumnCount(); ++column) {
        if (FieldOf(column) == sort.field) marked = column;
    }
    grid_.SetSortMark(marked, sort.ascending);
}

std::size_t TListGrid::RowCount() const {
    return session_.ShownRowCount();
}

TRowId TListGrid::RowAt(std::size_t index) const {
    return session_.Articles().RowAt(index);
}

std::size_t TListGrid::IndexOf(TRowId row) const {
    return session_.Articles().IndexOf(row);
}

std::string TListGrid::CellText(TRowId row, std::size_t key) const {
    return session_.DisplayText(row, static_cast<TField>(key));
}

bool TListGrid::IsPromoted(TRowId row) const {
    return session_.Articles().Boolean(row, TField::HasActivePromotion);
}

COLORREF TListGrid::PromotionColour() const {
    const COLORREF window = GetSysColor(COLOR_WINDOW);
    const TRgb colour =
        tolvane::PromotionColour({GetRValue(window), GetGValue(window), GetBValue(window)});
    return RGB(colour.red, colour.green, colour.blue);
}

void TListGrid::TitleClicked(std::size_t column) {
    if (session_.IsBusy()) return;
    const std::optional<TRowId> current = grid_.CurrentRow();
    if (session_.ClickTitle(FieldOf(column))) {
        grid_.RowsReordered();
        if (current) grid_.SetCurrentRow(*current);
    }
    ShowSortMark();
}

void TListGrid::ColumnEntered(std::size_t column) {
    fieldEntered_(FieldOf(column));
}

}  // namespace tolvane
