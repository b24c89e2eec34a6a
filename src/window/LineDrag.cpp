#include "window/LineDrag.h"

#include <commctrl.h>

#include <cstdlib>
#include <utility>

#include "window/CheckList.h"

namespace tolvane {
namespace {

constexpr int kDragDistance = 10;  // pixels
constexpr UINT_PTR kScrollTimer = 1;
constexpr UINT kScrollMilliseconds = 100;

POINT PointOf(LPARAM lParam) {
    return {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
}

}  // namespace

TLineDrag::TLineDrag(HWND list, TMoved moved) : list_(list), moved_(std::move(moved)) {
    SetWindowSubclass(list_, &ListProcedure, 0, reinterpret_cast<DWORD_PTR>(this));
}

TLineDrag::~TLineDrag() {
    if (IsWindow(list_) != 0) RemoveWindowSubclass(list_, &ListProcedure, 0);
}

LRESULT CALLBACK TLineDrag::ListProcedure(HWND list, UINT id, WPARAM wParam, LPARAM lParam,
                                          UINT_PTR, DWORD_PTR drag) noexcept {
    if (id == WM_NCDESTROY) {
        RemoveWindowSubclass(list, &ListProcedure, 0);
        return DefSubclassProc(list, id, wParam, lParam);
    }
    try {
        if (reinterpret_cast<TLineDrag*>(drag)->Handle(id, wParam, lParam)) return 0;
    } catch (...) {  // NOLINT(bugprone-empty-catch): out of memory; the line stays where it is
        return 0;
    }
    return DefSubclassProc(list, id, wParam, lParam);
}

bool TLineDrag::Handle(UINT id, WPARAM wParam, LPARAM lParam) {
    switch (id) {
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:  // the second press of two quick ones
            return Press(wParam, PointOf(lParam));
        case WM_MOUSEMOVE:
            if (line_ < 0) return false;
            Move(PointOf(lParam));
            return true;
        case WM_LBUTTONUP:
            if (line_ < 0) return false;
            Drop(PointOf(lParam));
            return true;
        case WM_CAPTURECHANGED:
            Cancel();
            return false;
        case WM_TIMER:
            if (wParam != kScrollTimer) return false;
            ScrollAtEdge();
            return true;
        case WM_KEYDOWN:
            return MoveByKey(wParam);
        default:
            return false;
    }
}

int TLineDrag::TargetAt(POINT point) const {
    RECT client{};
    GetClientRect(list_, &client);
    if (PtInRect(&client, point) == 0) return -1;
    LVHITTESTINFO hit{};
    hit.pt = point;
    const auto line =
        static_cast<int>(SendMessageW(list_, LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
    return line == line_ ? -1 : line;
}

// The list view itself would wait for the mouse in its own message loop, and change a check box at
// once.
bool TLineDrag::Press(WPARAM buttons, POINT point) {
    // `buttons` also reports Ctrl and Shift, but not of Alt.
    if (buttons != MK_LBUTTON || GetKeyState(VK_MENU) < 0) return false;
    LVHITTESTINFO hit{};
    hit.pt = point;
    SendMessageW(list_, LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
    if (hit.iItem < 0 || (hit.flags & LVHT_ONITEM) == 0) return false;
    SetFocus(list_);
    TCheckList(list_).SetCurrent(hit.iItem);
    SetCapture(list_);
    line_ = hit.iItem;
    onCheckBox_ = (hit.flags & LVHT_ONITEM) == LVHT_ONITEMSTATEICON;
    pressed_ = point;
    return true;
}

void TLineDrag::Move(POINT point) {
    if (!dragging_) {
        if (std::abs(point.x - pressed_.x) < kDragDistance &&
            std::abs(point.y - pressed_.y) < kDragDistance)
            return;
        dragging_ = true;
        SetTimer(list_, kScrollTimer, kScrollMilliseconds, nullptr);
    }
    const int target = TargetAt(point);
    if (target >= 0) TCheckList(list_).SetCurrent(target);
    SetCursor(LoadCursorW(nullptr, target >= 0 ? IDC_SIZENS : IDC_NO));
}

void TLineDrag::Drop(POINT point) {
    const int from = line_;
    const int to = dragging_ ? TargetAt(point) : -1;
    const bool ticks = onCheckBox_ && !dragging_;
    Cancel();
    if (to >= 0) moved_(from, to);
    if (ticks) TCheckList(list_).SetChecked(from, !TCheckList(list_).IsChecked(from));
}

void TLineDrag::Cancel() noexcept {
    if (line_ < 0) return;
    line_ = -1;
    dragging_ = false;
    KillTimer(list_, kScrollTimer);
    if (GetCapture() == list_) ReleaseCapture();
}

// Dragging beyond the list's edge scrolls, to reach lines that are not visible.
void TLineDrag::ScrollAtEdge() {
    RECT client{};
    RECT line{};
    POINT mouse{};
    GetClientRect(list_, &client);
    GetCursorPos(&mouse);
    ScreenToClient(list_, &mouse);
    line.left = LVIR_BOUNDS;
    SendMessageW(list_, LVM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&line));
    const int height = line.bottom - line.top;
    const int by = mouse.y < client.top ? -height : mouse.y >= client.bottom ? height : 0;
    if (by != 0) SendMessageW(list_, LVM_SCROLL, 0, by);
}

bool TLineDrag::MoveByKey(WPARAM key) {
    if (GetKeyState(VK_CONTROL) >= 0 || (key != VK_UP && key != VK_DOWN)) return false;
    const TCheckList lines(list_);
    const int from = lines.Current();
    const int to = from + (key == VK_UP ? -1 : 1);
    if (from >= 0 && to >= 0 && to < lines.Count()) moved_(from, to);
    return true;
}

}  // namespace tolvane
