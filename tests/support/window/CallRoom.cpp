#include "tests/support/window/CallRoom.h"

namespace tolvane::test {
namespace {

constexpr UINT kCall = WM_APP + 1;

}  // namespace

int TCallRoom::Left(int most) const {
    deepest_ = 0;
    SendMessageW(window_.Handle(), kCall, 1, most);
    return deepest_;
}

LRESULT CALLBACK TCallRoom::Procedure(HWND window, UINT id, WPARAM depth, LPARAM most) {
    const auto* self = TMessageWindow::ObjectOf<TCallRoom>(window);
    if (id != kCall || self == nullptr) return DefWindowProcW(window, id, depth, most);
    self->deepest_ = static_cast<int>(depth);
    if (self->deepest_ < most) SendMessageW(window, kCall, depth + 1, most);
    return 0;
}

}  // namespace tolvane::test
