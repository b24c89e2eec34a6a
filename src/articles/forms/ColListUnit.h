#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "articles/forms/ArticleGrid.h"
#include "window/Form.h"
#include "window/LineDrag.h"

namespace tolvane {

inline constexpr const wchar_t* kColListFormClass = L"TColListForm";

// Shows the column chooser for the grid until it is closed. A dragged column moves in the grid at
// once; columns appear and disappear when the user confirms. `hiddenRows` gets a character per
// column, '1' for a hidden one: as confirmed, or else as it was when the chooser opened. When the
// owner is destroyed, so is the chooser. Throws TWindowError. Interface thread.
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
    void OnDpiChange() override;

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
