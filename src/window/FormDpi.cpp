#include "window/Form.h"

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <cwchar>
#include <utility>

namespace tolvane {
namespace {

// Windows has it since version 10, and the headers for older ones have not.
constexpr UINT kDpiChangedAfterParent = 0x02E3;
// No monitor has less or more.
constexpr int kLeastDpi = 72;
constexpr int kMostDpi = 960;

bool IsOfClass(HWND control, const wchar_t* name) {
    std::array<wchar_t, 64> found{};
    GetClassNameW(control, found.data(), static_cast<int>(found.size()));
    return std::wcscmp(found.data(), name) == 0;
}

// The height of a drop-down list is that of the opened one.
RECT PlaceOf(HWND form, HWND control) {
    RECT rect{};
    GetWindowRect(control, &rect);
    RECT opened{};
    if (IsOfClass(control, WC_COMBOBOXW) &&
        SendMessageW(control, CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(&opened)) != 0)
        rect.bottom = std::max(rect.bottom, opened.bottom);
    MapWindowPoints(nullptr, form, reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

void SetPlace(HWND window, const RECT& place) {
    SetWindowPos(window, nullptr, place.left, place.top, place.right - place.left,
                 place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
}

// What the frame takes of the window's width and height.
SIZE FrameOf(HWND window) {
    RECT outer{};
    RECT client{};
    GetWindowRect(window, &outer);
    GetClientRect(window, &client);
    return {outer.right - outer.left - client.right, outer.bottom - outer.top - client.bottom};
}

// Also below the controls: a line draws no more than itself over what was there before.
void Erase(HWND window) {
    const HDC dc = GetDCEx(window, nullptr, DCX_CACHE);
    RECT client{};
    GetClientRect(window, &client);
    FillRect(dc, &client, GetSysColorBrush(COLOR_BTNFACE));
    ReleaseDC(window, dc);
}

// Corner and size each by itself, so that equal sizes stay equal.
RECT Rescaled(const RECT& place, TDpi from, TDpi to) {
    const auto scaled = [&](LONG pixels) { return LONG{to.Scale(from.Unscale(pixels))}; };
    const LONG left = scaled(place.left);
    const LONG top = scaled(place.top);
    return {left, top, left + scaled(place.right - place.left),
            top + scaled(place.bottom - place.top)};
}

}  // namespace

void TForm::TakeDpi(TDpi dpi) {
    if (dpi == dpi_) return;
    dpi_ = dpi;
    font_ = MakeFont(dpi_);
    boldFont_ = MakeFont(dpi_, true);
}

bool TForm::HandleDpiChange(const TMessage& message) {
    if (message.id == kDpiChangedAfterParent) {
        FollowDpi(TDpi::Of(Handle()), nullptr);
    } else if (message.id == WM_DPICHANGED) {
        const int dotsPerInch = LOWORD(message.wParam);
        // An MDI child gets it from a host that passes it on.
        const auto* suggested = mdiChild_ ? nullptr : reinterpret_cast<const RECT*>(message.lParam);
        if (dotsPerInch >= kLeastDpi && dotsPerInch <= kMostDpi)
            FollowDpi(TDpi(dotsPerInch), suggested);
    } else {
        return false;
    }
    return true;
}

void TForm::FollowDpi(TDpi dpi, const RECT* suggested) {
    if (dpi == dpi_) return;
    const SIZE client = ClientSize();
    const TDpi before = dpi_;
    // The controls use these until they get the new ones.
    const TOwnedFont font = std::move(font_);
    const TOwnedFont boldFont = std::move(boldFont_);
    TakeDpi(dpi);
    RescaleControls(before, font.Get(), boldFont.Get());
    OnDpiChange();
    RescaleWindow(before, client, suggested);
    OnSize();
    Erase(Handle());
    RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void TForm::RescaleControls(TDpi before, HFONT font, HFONT boldFont) const {
    for (HWND control = GetWindow(Handle(), GW_CHILD); control != nullptr;
         control = GetWindow(control, GW_HWNDNEXT)) {
        const RECT place = PlaceOf(Handle(), control);
        const auto used = reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0));
        if (used == font || used == boldFont)
            SendMessageW(control, WM_SETFONT,
                         reinterpret_cast<WPARAM>(used == font ? Font() : BoldFont()), FALSE);
        SetPlace(control, Rescaled(place, before, dpi_));
    }
}

void TForm::RescaleWindow(TDpi before, SIZE client, const RECT* suggested) const {
    if (IsIconic(Handle()) != 0) return;
    RECT place{};
    if (suggested != nullptr) {
        place = *suggested;
    } else {
        GetWindowRect(Handle(), &place);
        if (mdiChild_)
            MapWindowPoints(nullptr, GetParent(Handle()), reinterpret_cast<POINT*>(&place), 2);
        place = Rescaled(place, before, dpi_);
    }
    if (IsZoomed(Handle()) != 0) {
        if (!mdiChild_) SetPlace(Handle(), place);
        return;
    }
    // Whether the frame has another size then is seen only when the window has its own.
    for (int times = 0; times < 2; ++times) {
        const SIZE frame = FrameOf(Handle());
        place.right = place.left + dpi_.Scale(client.cx) + frame.cx;
        place.bottom = place.top + dpi_.Scale(client.cy) + frame.cy;
        SetPlace(Handle(), place);
    }
}

}  // namespace tolvane
