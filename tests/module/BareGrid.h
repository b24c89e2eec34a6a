#pragma once

#include <windows.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "articles/forms/ArticleGrid.h"
#include "tests/support/window/GridReader.h"

namespace tolvane::test {

// The grid on a real list view of 380 by 360 pixels, whose rows are just numbers. It has two
// columns of 100 pixels, "Number" aligned right and "Other" aligned left, and the focus.
class TBareGrid : private TGridView {
public:
    explicit TBareGrid(std::size_t rows);
    TBareGrid(const TBareGrid&) = delete;
    TBareGrid& operator=(const TBareGrid&) = delete;
    ~TBareGrid() override;

    void Reverse();
    TGridReader Reader() const { return TGridReader(list_); }
    TArticleGrid& Grid() { return grid_; }
    HWND List() const { return list_; }
    HWND Header() const;
    // The colour of a point of a row, counted from the row's upper left corner, as drawn now.
    COLORREF Pixel(int row, POINT at) const;

    // What a cell shows, at first its row's number, and whether a row is in a promotion, at first
    // not.
    std::function<std::string(TRowId row, std::size_t column)> text;
    std::function<bool(TRowId row)> promoted;
    std::vector<std::size_t> clickedTitles;

private:
    // TGridView
    std::size_t RowCount() const override { return order_.size(); }
    TRowId RowAt(std::size_t index) const override { return order_[index]; }
    std::size_t IndexOf(TRowId row) const override { return places_[row]; }
    std::string CellText(TRowId row, std::size_t key) const override { return text(row, key); }
    bool IsPromoted(TRowId row) const override { return promoted(row); }
    COLORREF PromotionColour() const override { return RGB(1, 2, 3); }
    void TitleClicked(std::size_t column) override { clickedTitles.push_back(column); }
    void ColumnEntered(std::size_t) override {}

    static LRESULT CALLBACK Procedure(HWND window, UINT id, WPARAM wParam, LPARAM lParam);
    LRESULT Handle(HWND window, UINT id, WPARAM wParam, LPARAM lParam);

    std::vector<TRowId> order_;
    std::vector<std::size_t> places_;
    TArticleGrid grid_;
    HWND parent_ = nullptr;
    HWND list_ = nullptr;
};

}  // namespace tolvane::test
