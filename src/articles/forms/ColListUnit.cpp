#include "articles/forms/ColListUnit.h"

#include <string>
#include <utility>
#include <vector>

#include "text/Cp1251.h"
#include "window/CheckList.h"
#include "window/MessageBoxes.h"
#include "window/OwnerWatch.h"
#include "window/WideText.h"

namespace tolvane {
namespace {

// Sizes at 96 dots per inch.
constexpr int kWidth = 201;
constexpr int kHeight = 383;
constexpr int kMargin = 4;
constexpr int kSmallWidth = 75;
constexpr int kSmallHeight = 20;
constexpr int kListTop = 2 * kMargin + kSmallHeight;
constexpr int kBarHeight = 33;
constexpr TBounds kListPlace = {0, kListTop, kWidth, kHeight - kBarHeight - kListTop};
constexpr int kButtonWidth = 88;
constexpr int kButtonHeight = 25;
constexpr int kButtonTop = kHeight - kBarHeight + kMargin;

}  // namespace

void ChooseColumns(HWND owner, TArticleGrid& grid, std::string& hiddenRows) {
    TColListForm form(owner, grid);
    const TOwnerWatch watch(owner, form);
    form.ShowModal();
    hiddenRows = form.HiddenRows();
}

TColListForm::TColListForm(HWND owner, TArticleGrid& grid) : grid_(grid) {
    MakePopup({.className = kColListFormClass,
               .name = "ColListForm",
               .caption = "Видими колони"_cp1251,
               .style = WS_POPUP | WS_CAPTION,
               .exStyle = WS_EX_TOOLWINDOW | WS_EX_CONTROLPARENT,
               .clientWidth = kWidth,
               .clientHeight = kHeight,
               .overOwner = true},
              owner);
    MakeControls();
    drag_.emplace(list_, [this](int from, int to) { MoveLine(from, to); });
}

void TColListForm::MakeControls() {
    AddButton("SelAllBtn", "Всички"_cp1251, {kMargin, kMargin, kSmallWidth, kSmallHeight},
              [this] { CheckAll(true); });
    AddButton("SelNoneBtn", "Нищо"_cp1251,
              {2 * kMargin + kSmallWidth, kMargin, kSmallWidth, kSmallHeight},
              [this] { CheckAll(false); });
    list_ = Add(TControlKind::CheckList, "aCheckListBox", {}, kListPlace);
    AddButton(
        "btnCancel", "Отказ"_cp1251, {kMargin, kButtonTop, kButtonWidth, kButtonHeight},
        [this] { EndModal(IDCANCEL); }, IDCANCEL);
    AddButton(
        "btnOK", "Потвърди"_cp1251,
        {kWidth - kMargin - kButtonWidth, kButtonTop, kButtonWidth, kButtonHeight},
        [this] { EndModal(IDOK); }, IDOK);
}

void TColListForm::OnShow() {
    Fill();
    SetFocus(list_);
}

void TColListForm::Fill() {
    std::vector<TCheckList::TLine> titles;
    hiddenRows_.clear();
    for (const TGridColumnState& column : grid_.Columns()) {
        titles.push_back({column.title, column.visible});
        hiddenRows_ += column.visible ? '0' : '1';
    }
    TCheckList lines(list_);
    lines.Fill(std::move(titles));
    if (lines.Count() > 0) lines.SetCurrent(0);
    lines.ShowWholeLines();
}

void TColListForm::OnDpiChange() {
    Place(list_, kListPlace);
    TCheckList lines(list_);
    lines.FitColumn();
    lines.ShowWholeLines();
}

void TColListForm::CheckAll(bool checked) {
    TCheckList lines(list_);
    for (int line = 0; line < lines.Count(); ++line)
        lines.SetChecked(line, checked);
}

void TColListForm::MoveLine(int from, int to) {
    TCheckList lines(list_);
    lines.Move(from, to);
    lines.SetCurrent(to);
    grid_.MoveColumn(static_cast<std::size_t>(from), static_cast<std::size_t>(to));
}

bool TColListForm::CanClose(int result) {
    if (result != IDOK) return true;
    const TCheckList lines(list_);
    std::vector<bool> visible;
    std::string hiddenRows;
    for (int line = 0; line < lines.Count(); ++line) {
        visible.push_back(lines.IsChecked(line));
        hiddenRows += visible.back() ? '0' : '1';
    }
    if (hiddenRows.find('0') == std::string::npos) {
        ShowError(Handle(), "Поне едно поле трябва да бъде избрано !"_cp1251);
        return false;
    }
    grid_.ShowColumns(visible);
    hiddenRows_ = hiddenRows;
    return true;
}

// During a drag, Esc ends the drag only.
void TColListForm::OnCancel() {
    if (drag_->IsDragging())
        drag_->Cancel();
    else
        TForm::OnCancel();
}

}  // namespace tolvane
