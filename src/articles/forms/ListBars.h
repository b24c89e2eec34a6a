#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "articles/ArticleFields.h"
#include "window/Form.h"

namespace tolvane {

// Command numbers that the menus send to the form.
inline constexpr int kFirstRunCommand = 1000;  // + run number
inline constexpr int kSettingsCommand = 1005;
inline constexpr int kFirstSearchCommand = 2000;  // + index among the search menu's fields

// The list window's two bars with their buttons and menus. Interface thread.
class TListBars {
public:
    using TClick = std::function<void()>;

    explicit TListBars(TForm& form) : form_(form) {}

    // Make the controls of a bar; throw TWindowError. The Tab key follows the order of making, so
    // the form makes the grid between the two calls.
    void MakeTop(TClick search);
    void MakeBottom(TClick refresh, TClick columns, TClick print);
    // After a change of size: moves the bottom bar, and the grid to the room between the bars.
    void Arrange(HWND grid) const;
    // Takes the icon of the scales' button in the size of the form's resolution.
    void LoadIcon();
    // On WM_PAINT: draws the bars' borders.
    void Paint() const;

    void FillSearchMenu(const std::vector<TField>& fields);
    // Names the field on the search button.
    void ShowSearchField(TField field) const;
    // The search button's caption; code page 1251.
    std::string SearchCaption() const;

private:
    void MakeSaveButton();
    void MakeSaveMenu();
    void DropMenu(HMENU menu, HWND button) const;

    TForm& form_;
    HWND search_ = nullptr;
    HWND searchMenuButton_ = nullptr;
    HWND save_ = nullptr;
    HWND refresh_ = nullptr;
    HWND columns_ = nullptr;
    HWND print_ = nullptr;
    HWND printBevel_ = nullptr;
    HWND close_ = nullptr;
    TOwnedMenu saveMenu_;
    TOwnedMenu searchMenu_;
    TOwnedIcon scaleIcon_;
};

}  // namespace tolvane
