#include "window/KeyHook.h"

#include "window/Form.h"
#include "window/Window.h"

namespace tolvane {
namespace {

TWindow* OwnWindowAround(HWND window) {
    for (HWND at = window; at != nullptr; at = GetAncestor(at, GA_PARENT)) {
        if (TWindow* own = TWindow::FromHandle(at)) return own;
    }
    return nullptr;
}

bool MenuOrMoveIsOn() {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    return GetGUIThreadInfo(GetCurrentThreadId(), &info) != 0 &&
           (info.flags &
            (GUI_INMENUMODE | GUI_INMOVESIZE | GUI_POPUPMENUMODE | GUI_SYSTEMMENUMODE)) != 0;
}

bool OfferKey(MSG& message) {
    const TWindow* window = OwnWindowAround(message.hwnd);
    if (window == nullptr || window->Handle() == nullptr || MenuOrMoveIsOn()) return false;
    // Through the window procedure, which keeps the form alive and catches exceptions.
    return SendMessageW(window->Handle(), kHookKeyMessage, 0, reinterpret_cast<LPARAM>(&message)) !=
           0;
}

}  // namespace

void TKeyHook::Install() noexcept {
    hook_.Reset(SetWindowsHookExW(WH_GETMESSAGE, &Procedure, nullptr, GetCurrentThreadId()));
}

LRESULT CALLBACK TKeyHook::Procedure(int code, WPARAM wParam, LPARAM lParam) noexcept {
    auto& message = *reinterpret_cast<MSG*>(lParam);
    if (code == HC_ACTION && wParam == PM_REMOVE && message.message == WM_KEYDOWN &&
        OfferKey(message)) {
        // The form has handled the key: the host's loop gets a message that does nothing.
        message.message = WM_NULL;
        message.wParam = 0;
        message.lParam = 0;
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

}  // namespace tolvane
