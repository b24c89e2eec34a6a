#include "window/Attention.h"

namespace tolvane {

void CallUser(HWND window, const TAttentionCalls& calls) noexcept {
    DWORD process = 0;
    const HWND front = calls.getForegroundWindow();
    if (front != nullptr) GetWindowThreadProcessId(front, &process);
    if (process == GetCurrentProcessId()) return;
    FLASHWINFO flash{};
    flash.cbSize = sizeof flash;
    // An owned window has no button of its own.
    flash.hwnd = GetAncestor(window, GA_ROOTOWNER);
    flash.dwFlags = FLASHW_TRAY | FLASHW_TIMERNOFG;
    calls.flashWindowEx(&flash);
}

}  // namespace tolvane
