#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "articles/forms/ArticleGrid.h"
#include "window/Form.h"
#include "window/LineDrag.h"

namespace tolvane {

inline constexpr const wchar_t* kColListFormClass = L"TColListForm";

// Shows the column chooser for the grid until it is closed. A column that is dragged moves in the
// grid at once; which ones are visible changes when the choice is confirmed. `hiddenRows` gets a
// character per column: '1' when it was hidden, at the opening or, once confirmed, at the end. The
// chooser goes with the owner.
void ChooseColumns(HWND owner, TArticleGrid& grid, std::string& hiddenRows);

// The column chooser. See ChooseColumns.
class TColListForm : public TForm {
public:
    TColListForm(HWND owner, TArticleGrid& grid);

    const std::string& HiddenRows() const { return hiddenRows_; }

protected:
    void OnShow() override;
    bool CanClose(int result) override;
    void OnCancel() override;

private:
    void MakeControls();
    void Fill();
    void CheckAll(bool checked);
    void MoveLine(int from, int to);

    TArticleGrid& grid_;
    std::string hiddenRows_;
    HWND list_ = nullptr;
    std::optional<TLineDrag> drag_;
};

}  // namespace tolvane
