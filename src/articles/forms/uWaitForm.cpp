#include "articles/forms/uWaitForm.h"

#include <commctrl.h>

#include <cstdint>

#include "text/Cp1251.h"
#include "window/Handles.h"
#include "window/WideText.h"

namespace tolvane {
namespace {

constexpr int kWidth = 393;
constexpr int kHeight = 73;
constexpr int kBarHeight = 10;
constexpr int kLabelHeight = 16;
constexpr TMilliseconds kBetweenPaints{40};
constexpr COLORREF kBackground = RGB(240, 202, 166);
constexpr COLORREF kNavy = RGB(0, 0, 128);
constexpr std::string_view kLabel = "Моля, изчакайте..."_cp1251;

}  // namespace

void TWaitForm::Make() {
    MakePopup({.className = kWaitFormClass,
               .name = "WaitForm",
               .caption = kLabel,
               .style = WS_POPUP,
               .exStyle = WS_EX_TOOLWINDOW,
               .clientWidth = kWidth,
               .clientHeight = kHeight},
              owner_);
    labelFont_ = MakeFont(Dpi(), true, kLabelHeight);
    bar_ = AddControl({.kind = TControlKind::Progress,
                       .name = "ProgressBar",
                       .bounds = {0, kHeight - kBarHeight, kWidth, kBarHeight}});
}

void TWaitForm::OnDpiChange() {
    labelFont_ = MakeFont(Dpi(), true, kLabelHeight);
}

void TWaitForm::Show(int count) {
    if (Handle() == nullptr) Make();
    ShowWindow(bar_, count >= 1 ? SW_SHOW : SW_HIDE);
    maximum_ = count > 0 ? count : 1;
    position_ = 0;
    SendMessageW(bar_, PBM_SETRANGE32, 0, maximum_);
    SendMessageW(bar_, PBM_SETPOS, 0, 0);
    SetWindowPos(Handle(), HWND_TOP, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
    PumpPaintMessages();
    painted_ = SystemClock().Now();
}

void TWaitForm::Step() {
    if (Handle() == nullptr || position_ >= maximum_) return;
    // Moving the bar takes longer than loading hundreds of rows, so it moves in hundredths and no
    // more often than an eye can follow.
    const auto hundredths = [this] { return std::int64_t{position_} * 100 / maximum_; };
    const std::int64_t before = hundredths();
    ++position_;
    if (hundredths() == before) return;
    const TTimePoint now = SystemClock().Now();
    if (now - painted_ < kBetweenPaints) return;
    painted_ = now;
    SendMessageW(bar_, PBM_SETPOS, static_cast<WPARAM>(position_), 0);
    UpdateWindow(bar_);
    UpdateWindow(Handle());
}

void TWaitForm::Hide() {
    if (Handle() != nullptr) ShowWindow(Handle(), SW_HIDE);
}

void TWaitForm::Paint() const {
    const TPainting painting(Handle());
    const HDC dc = painting.Dc();
    RECT client{};
    GetClientRect(Handle(), &client);
    const TOwnedBrush background(CreateSolidBrush(kBackground));
    FillRect(dc, &client, background.Get());
    const TSelected font(dc, labelFont_.Get());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, kNavy);
    const std::wstring text = Wide(kLabel);
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &client,
              DT_SINGLELINE | DT_CENTER | DT_VCENTER | DT_NOPREFIX);
}

LRESULT TWaitForm::HandleMessage(const TMessage& message) {
    if (message.id == WM_PAINT) {
        Paint();
        return 0;
    }
    if (message.id == WM_CLOSE) return 0;
    return TForm::HandleMessage(message);
}

}  // namespace tolvane
