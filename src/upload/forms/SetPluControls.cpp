#include "upload/forms/SetPluControls.h"

#include <commctrl.h>

#include <utility>

#include "text/Cp1251.h"
#include "window/CheckList.h"
#include "window/WideText.h"

namespace tolvane {
namespace {

// Sizes at 96 dots per inch.
constexpr int kMargin = 8;
constexpr int kScalesWidth = 120;
constexpr int kListTop = 26;
constexpr int kListHeight = 140;
constexpr int kLabelHeight = 16;
constexpr int kButtonHeight = 27;
constexpr int kButtonWidth = 100;
constexpr int kDeleteWidth = 220;

}  // namespace

void TSetPluControls::Make(TForm& form, const TRunKind& kind, const std::vector<TScaleObj>& scales,
                           const TSetPluActions& actions) {
    MakeScales(form, scales);
    choices.Make(form);
    MakeLog(form);
    MakeButtons(form, kind, actions);
    bar.Make(form);
}

void TSetPluControls::MakeScales(TForm& form, const std::vector<TScaleObj>& scales) {
    lblScales_ = form.AddLabel("lblScales", "Везни"_cp1251, {});
    scaleList = form.Add(TControlKind::CheckList, "ScaleList", {}, {});
    std::vector<TCheckList::TLine> names;
    names.reserve(scales.size());
    for (const TScaleObj& scale : scales)
        names.push_back({Wide(scale.Rec.ScaleName.View())});
    TCheckList list(scaleList);
    list.Fill(std::move(names));
    if (!scales.empty()) list.SetCurrent(0);
}

void TSetPluControls::MakeLog(TForm& form) {
    readPropLabel = form.AddLabel("ReadPropLabel", {}, {}, SS_ENDELLIPSIS);
    statusMemo = form.Add(TControlKind::Memo, "StatusMemo", {}, {});
    log.Attach(form.Handle(), statusMemo);
    lblStatus = form.AddLabel("lblStatus", {}, {}, SS_ENDELLIPSIS);
}

void TSetPluControls::MakeButtons(TForm& form, const TRunKind& kind,
                                  const TSetPluActions& actions) {
    saveVisible_ = kind.saveVisible;
    saveBtn = form.AddButton("SaveBtn", kind.saveCaption, {}, actions.save);
    if (!saveVisible_) ShowWindow(saveBtn, SW_HIDE);
    deleteBtn = form.AddButton("DeleteBtn", "Изтриване на всички артикули"_cp1251, {},
                               actions.deleteEverything);
    stopReadBtn = form.AddButton("StopReadBtn", "Прекъсни"_cp1251, {}, actions.stop);
    EnableWindow(stopReadBtn, FALSE);
    okBtn = form.AddButton("OkBtn", "Затвори"_cp1251, {}, actions.close, IDCANCEL);
}

void TSetPluControls::Arrange(const TForm& form) {
    if (okBtn == nullptr) return;
    const SIZE client = form.ClientSize();
    const int width = client.cx;
    const int inner = width - 2 * kMargin;
    const int choicesLeft = width - kMargin - TRunChoices::kWidth;
    const int buttonsTop = client.cy - kMargin - kButtonHeight;
    const int statusTop = buttonsTop - kMargin - kLabelHeight;
    const int connectionTop = kListTop + kListHeight + kMargin;
    const int memoTop = connectionTop + kLabelHeight + 2;
    const int listWidth = choicesLeft - 2 * kMargin;
    const int besideScales = 2 * kMargin + kScalesWidth;
    form.Place(lblScales_, {kMargin, kMargin, kScalesWidth, kLabelHeight});
    form.Place(scaleList, {kMargin, kListTop, listWidth, kListHeight});
    choices.Arrange(form, choicesLeft, kMargin);
    form.Place(readPropLabel, {kMargin, connectionTop, inner, kLabelHeight});
    form.Place(statusMemo, {kMargin, memoTop, inner, statusTop - 4 - memoTop});
    form.Place(lblStatus, {kMargin, statusTop, inner, kLabelHeight});
    const TBounds besideButtons = ArrangeButtons(form, width, buttonsTop);
    bar.Arrange(form, {.bar = {kMargin, buttonsTop - kMargin + 1, inner, kMargin - 2},
                       .twoLines = besideButtons,
                       .oneLine = {besideScales, kMargin, kMargin + listWidth - besideScales,
                                   kLabelHeight}});
    SendMessageW(scaleList, LVM_SETCOLUMNWIDTH, 0, LVSCW_AUTOSIZE_USEHEADER);
    InvalidateRect(form.Handle(), nullptr, TRUE);
}

TBounds TSetPluControls::ArrangeButtons(const TForm& form, int width, int top) const {
    int left = kMargin;
    const auto place = [&](HWND button, int buttonWidth) {
        form.Place(button, {left, top, buttonWidth, kButtonHeight});
        left += buttonWidth + kMargin;
    };
    if (saveVisible_) place(saveBtn, kButtonWidth);
    place(deleteBtn, kDeleteWidth);
    place(stopReadBtn, kButtonWidth);
    const int freeLeft = left;
    left = width - kMargin - kButtonWidth;
    const int freeWidth = left - kMargin - freeLeft;
    place(okBtn, kButtonWidth);
    return {freeLeft, top, freeWidth, kButtonHeight};
}

}  // namespace tolvane
