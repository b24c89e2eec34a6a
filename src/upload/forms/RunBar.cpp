#include "upload/forms/RunBar.h"

#include <commctrl.h>

#include <string>

#include "window/WideText.h"

namespace tolvane {
namespace {

// What the longest line takes, at 96 dots per inch.
constexpr int kTextWidth = 104;

}  // namespace

void TRunBar::Make(TForm& form) {
    runBar_ = form.Add(TControlKind::Progress, "RunBar", {}, {});
    lblRunCount_ = form.AddLabel("lblRunCount", {}, {});
    Show({});
}

void TRunBar::Arrange(const TForm& form, const TRunBarPlaces& places) {
    inTwoLines_ = places.twoLines.width >= kTextWidth;
    form.Place(runBar_, places.bar);
    form.Place(lblRunCount_, inTwoLines_ ? places.twoLines : places.oneLine);
    ShowText();
}

void TRunBar::Show(const TRunCount& count) {
    count_ = count;
    const int visible = count.all > 0 ? SW_SHOWNA : SW_HIDE;
    SendMessageW(runBar_, PBM_SETRANGE32, 0, static_cast<LPARAM>(count.all));
    SendMessageW(runBar_, PBM_SETPOS, count.done, 0);
    ShowText();
    ShowWindow(runBar_, visible);
    ShowWindow(lblRunCount_, visible);
}

void TRunBar::ShowText() const {
    std::string text = count_.all > 0 ? CountText(count_) : std::string();
    const std::string left = TimeLeftText(count_);
    if (!left.empty()) text += (inTwoLines_ ? "\r\n" : ", ") + left;
    // A label draws itself anew even for the same text.
    if (text != WindowText(lblRunCount_)) SetWindowText(lblRunCount_, text);
}

}  // namespace tolvane
