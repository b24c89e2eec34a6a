#include "window/Placement.h"

namespace tolvane {
namespace {

bool IsMdiChild(HWND window) {
    return (GetWindowLongW(window, GWL_STYLE) & WS_CHILD) != 0;
}

// Whether enough of a title bar would be seen to take hold of it.
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

}  // namespace

TPlacement PlacementOf(HWND window) {
    TPlacement result;
    result.maximized = IsZoomed(window) != 0;
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    GetWindowPlacement(window, &placement);
    result.outer = placement.rcNormalPosition;
    if (result.maximized || IsIconic(window) != 0) return result;
    // The normal position of a window on the screen leaves the task bar out.
    GetWindowRect(window, &result.outer);
    if (IsMdiChild(window))
        MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&result.outer), 2);
    return result;
}

void MoveToPlacement(HWND window, const RECT& outer) {
    if (!IsInSight(window, outer)) return;
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
