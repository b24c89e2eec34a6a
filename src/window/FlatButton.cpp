#include "window/FlatButton.h"

#include <commctrl.h>

#include <array>
#include <string>

#include "window/WideText.h"

namespace tolvane {
namespace {

constexpr const wchar_t* kArrowProperty = L"FlatButtonArrow";
constexpr const wchar_t* kIconProperty = L"FlatButtonIcon";
constexpr const wchar_t* kHotProperty = L"FlatButtonHot";
constexpr int kMargin = 6;
constexpr int kIconSize = 16;
constexpr int kArrowHalf = 4;

void DrawArrow(HDC dc, int x, int y, int half) {
    const HBRUSH brush = GetSysColorBrush(COLOR_BTNTEXT);
    const TSelected selectedBrush(dc, brush);
    const TSelected selectedPen(dc, GetStockObject(NULL_PEN));
    const std::array<POINT, 3> corners = {POINT{x - half, y - half / 2},
                                          POINT{x + half + 1, y - half / 2},
                                          POINT{x, y + half / 2 + 1}};
    Polygon(dc, corners.data(), static_cast<int>(corners.size()));
}

void DrawLabel(const DRAWITEMSTRUCT& item, RECT rect) {
    const std::wstring text = Wide(WindowText(item.hwndItem));
    const auto font = reinterpret_cast<HFONT>(SendMessageW(item.hwndItem, WM_GETFONT, 0, 0));
    const TSelected selected(item.hDC, font);
    SetBkMode(item.hDC, TRANSPARENT);
    const bool disabled = (item.itemState & ODS_DISABLED) != 0;
    SetTextColor(item.hDC, GetSysColor(disabled ? COLOR_GRAYTEXT : COLOR_BTNTEXT));
    DrawTextW(item.hDC, text.c_str(), static_cast<int>(text.size()), &rect,
              DT_SINGLELINE | DT_VCENTER | DT_CENTER | DT_END_ELLIPSIS | DT_NOPREFIX);
}

bool IsHot(HWND button) {
    return GetPropW(button, kHotProperty) != nullptr;
}

void BecomeHot(HWND button) {
    TRACKMOUSEEVENT track{sizeof track, TME_LEAVE, button, 0};
    // Without the message of the leaving mouse the button would stay as it is.
    if (TrackMouseEvent(&track) == 0) return;
    SetPropW(button, kHotProperty, button);
    InvalidateRect(button, nullptr, FALSE);
}

void BecomeCold(HWND button) {
    RemovePropW(button, kHotProperty);
    InvalidateRect(button, nullptr, FALSE);
}

LRESULT CALLBACK FlatButtonProcedure(HWND button, UINT id, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                     DWORD_PTR) noexcept {
    if (id == WM_MOUSEMOVE && !IsHot(button)) BecomeHot(button);
    if (id == WM_MOUSELEAVE) BecomeCold(button);
    return DefSubclassProc(button, id, wParam, lParam);
}

}  // namespace

void PrepareFlatButton(HWND button) noexcept {
    SetWindowSubclass(button, &FlatButtonProcedure, 0, 0);
}

void SetFlatButtonArrow(HWND button, bool arrow) {
    SetPropW(button, kArrowProperty, reinterpret_cast<HANDLE>(static_cast<INT_PTR>(arrow)));
}

void SetFlatButtonIcon(HWND button, HICON icon) {
    SetPropW(button, kIconProperty, icon);
}

void RemoveFlatButtonLook(HWND button) noexcept {
    RemovePropW(button, kArrowProperty);
    RemovePropW(button, kIconProperty);
    RemovePropW(button, kHotProperty);
    RemoveWindowSubclass(button, &FlatButtonProcedure, 0);
}

void DrawFlatButton(const DRAWITEMSTRUCT& item, TDpi dpi) {
    RECT rect = item.rcItem;
    FillRect(item.hDC, &rect, GetSysColorBrush(COLOR_BTNFACE));
    const bool pressed = (item.itemState & ODS_SELECTED) != 0;
    const bool disabled = (item.itemState & ODS_DISABLED) != 0;
    if (pressed)
        DrawEdge(item.hDC, &rect, BDR_SUNKENOUTER, BF_RECT);
    else if (IsHot(item.hwndItem) && !disabled)
        DrawEdge(item.hDC, &rect, BDR_RAISEDINNER, BF_RECT);
    if ((item.itemState & ODS_FOCUS) != 0 && (item.itemState & ODS_NOFOCUSRECT) == 0) {
        RECT focus = rect;
        InflateRect(&focus, -dpi.Scale(3), -dpi.Scale(3));
        DrawFocusRect(item.hDC, &focus);
    }
    if (pressed) OffsetRect(&rect, 1, 1);
    const int middle = (rect.top + rect.bottom) / 2;
    const bool hasText = GetWindowTextLengthW(item.hwndItem) > 0;
    if (GetPropW(item.hwndItem, kArrowProperty) != nullptr) {
        const int half = dpi.Scale(kArrowHalf);
        const int x =
            hasText ? rect.right - dpi.Scale(kMargin) - half : (rect.left + rect.right) / 2;
        DrawArrow(item.hDC, x, middle, half);
        if (hasText) rect.right = x - half;
    }
    if (auto* icon = static_cast<HICON>(GetPropW(item.hwndItem, kIconProperty))) {
        const int size = dpi.Scale(kIconSize);
        DrawIconEx(item.hDC, rect.left + dpi.Scale(kMargin), middle - size / 2, icon, size, size, 0,
                   nullptr, DI_NORMAL);
        rect.left += dpi.Scale(kMargin) + size;
    }
    if (hasText) DrawLabel(item, rect);
}

}  // namespace tolvane
