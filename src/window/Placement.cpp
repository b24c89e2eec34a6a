#include "window/Placement.h"

#include <algorithm>

namespace tolvane {
namespace {

bool IsMdiChild(HWND window) {
    return (GetWindowLongW(window, GWL_STYLE) & WS_CHILD) != 0;
}

// Whether enough of the title bar would be visible to drag it.
bool IsInSight(HWND window, const RECT& outer) {
    const int title = GetSystemMetrics(SM_CYCAPTION);
    const RECT grip{outer.left, outer.top, outer.right, outer.top + title};
    if (!IsMdiChild(window)) return MonitorFromRect(&grip, MONITOR_DEFAULTTONULL) != nullptr;
    RECT client{};
    GetClientRect(GetParent(window), &client);
    RECT seen{};
    return IntersectRect(&seen, &client, &grip) != 0 && seen.right - seen.left >= title &&
           outer.top >= 0;
}

RECT OuterNow(HWND window) {
    RECT outer{};
    GetWindowRect(window, &outer);
    if (IsMdiChild(window))
        MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&outer), 2);
    return outer;
}

// Sets where a maximized window goes when it is restored; it stays maximized until then.
void SetPlaceToRestore(HWND window, const RECT& outer) {
    MINMAXINFO limits{};
    SendMessageW(window, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    GetWindowPlacement(window, &placement);
    const RECT now = OuterNow(window);
    RECT normal = outer;
    normal.right = std::max(normal.right, normal.left + limits.ptMinTrackSize.x);
    normal.bottom = std::max(normal.bottom, normal.top + limits.ptMinTrackSize.y);
    placement.rcNormalPosition = normal;
    placement.showCmd = SW_SHOWMAXIMIZED;
    SetWindowPlacement(window, &placement);
    // On some systems that call makes a maximized window's hidden edges visible.
    SetWindowPos(window, nullptr, now.left, now.top, now.right - now.left, now.bottom - now.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

TWindowPlace PlaceOf(HWND window) {
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    GetWindowPlacement(window, &placement);
    const bool maximized = IsZoomed(window) != 0;
    RECT outer = placement.rcNormalPosition;
    // rcNormalPosition of a top-level window does not count the task bar.
    if (!maximized && IsIconic(window) == 0) outer = OuterNow(window);
    return {.left = outer.left,
            .top = outer.top,
            .width = outer.right - outer.left,
            .height = outer.bottom - outer.top,
            .maximized = maximized};
}

void MoveTo(HWND window, const TWindowPlace& place) {
    const RECT outer{place.left, place.top, place.left + place.width, place.top + place.height};
    if (!IsInSight(window, outer)) return;
    if (IsZoomed(window) != 0) {
        SetPlaceToRestore(window, outer);
        return;
    }
    SetWindowPos(window, nullptr, outer.left, outer.top, outer.right - outer.left,
                 outer.bottom - outer.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

RECT WorkArea(const RECT& around) {
    MONITORINFO info{};
    info.cbSize = sizeof info;
    if (GetMonitorInfoW(MonitorFromRect(&around, MONITOR_DEFAULTTONEAREST), &info) == 0)
        SystemParametersInfoW(SPI_GETWORKAREA, 0, &info.rcWork, 0);
    return info.rcWork;
}

}  // namespace tolvane
