#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "articles/ArticleSession.h"
#include "articles/GridLayout.h"
#include "articles/forms/ArticleGrid.h"

namespace tolvane {

// The grid of the list window: TArticleGrid over the articles of a session, with a column per
// field. Interface thread.
class TListGrid : private TGridView {
public:
    // `fieldEntered` is called when another field's column becomes the current one. The session
    // outlives the grid.
    TListGrid(TDpi dpi, TArticleSession& session, std::function<void(TField)> fieldEntered);

    // The grid itself: its control, its rows and its marks.
    TArticleGrid& Grid() { return grid_; }
    const TArticleGrid& Grid() const { return grid_; }

    // Replaces the columns. The window's place in the layout is not used.
    void SetLayout(const TGridLayout& layout);
    // The columns as they are now, without the window's place.
    TGridLayout Layout() const;
    // Lets the user choose the columns until the chooser is closed; see TColListForm.
    void ChooseColumns(HWND owner);
    TField FieldOf(std::size_t column) const;
    // Shows by which column the articles are sorted.
    void ShowSortMark();

private:
    // TGridView
    std::size_t RowCount() const override;
    TRowId RowAt(std::size_t index) const override;
    std::size_t IndexOf(TRowId row) const override;
    std::string CellText(TRowId row, std::size_t key) const override;
    bool IsPromoted(TRowId row) const override;
    COLORREF PromotionColour() const override;
    void TitleClicked(std::size_t column) override;
    void ColumnEntered(std::size_t column) override;

    TArticleSession& session_;
    std::function<void(TField)> fieldEntered_;
    TArticleGrid grid_;
    std::string hiddenRows_;  // see TGridLayout
};

}  // namespace tolvane
