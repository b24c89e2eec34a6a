#include <exception>

#include "text/Failure.h"
#include "window/Form.h"
#include "window/MessageBoxes.h"

namespace tolvane {
namespace {

LRESULT DialogCode(HWND control) {
    return SendMessageW(control, WM_GETDLGCODE, 0, 0);
}

bool HasOpenList(HWND control) {
    return SendMessageW(control, CB_GETDROPPEDSTATE, 0, 0) != 0;
}

// Whether all that the control lies in, up to the form, is visible and enabled.
bool IsInReach(HWND control, HWND form) {
    HWND at = control;
    while (at != form && at != nullptr) {
        at = GetAncestor(at, GA_PARENT);
        if (at == form) return true;
        const LONG style = GetWindowLongW(at, GWL_STYLE);
        if ((style & WS_VISIBLE) == 0 || (style & WS_DISABLED) != 0) return false;
    }
    return true;
}

// Wine's looks through all controls until it comes back to the message's, and passes by what lies
// in a disabled or hidden one: it would look for ever.
bool IsDialogKey(HWND form, MSG& message) {
    return IsInReach(message.hwnd, form) && IsDialogMessageW(form, &message) != 0;
}

bool IsArrow(UINT key) {
    return key == VK_LEFT || key == VK_RIGHT || key == VK_UP || key == VK_DOWN;
}

}  // namespace

bool IsKeyDown(int virtualKey) {
    return GetKeyState(virtualKey) < 0;
}

bool TForm::MoveFocus(HWND focus, bool back) {
    const HWND next = GetNextDlgTabItem(Handle(), focus, back ? TRUE : FALSE);
    if (next == nullptr) return false;
    SetFocus(next);
    if ((DialogCode(next) & DLGC_HASSETSEL) != 0) SendMessageW(next, EM_SETSEL, 0, -1);
    return true;
}

bool TForm::PressEnter(HWND focus) {
    const LRESULT code = DialogCode(focus);
    const bool pushes = (code & DLGC_BUTTON) != 0 && (code & DLGC_RADIOBUTTON) == 0;
    const HWND button = pushes ? focus : GetDlgItem(Handle(), IDOK);
    if (button == nullptr || IsWindowEnabled(button) == 0) return false;
    // BM_CLICK would move the focus, and the field that loses it would correct the typed text.
    if (pushes)
        SendMessageW(button, BM_CLICK, 0, 0);
    else
        SendMessageW(Handle(), WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED),
                     reinterpret_cast<LPARAM>(button));
    return true;
}

bool TForm::HandleKeyDown(MSG& message) {
    if (message.message != WM_KEYDOWN || IsBehindAnother()) return false;
    const auto key = static_cast<UINT>(message.wParam);
    const HWND focus = message.hwnd;
    if (OnKey(key, focus)) return true;
    if (IsKeyDown(VK_CONTROL) || IsKeyDown(VK_MENU)) return false;
    switch (key) {
        case VK_TAB:
            return MoveFocus(focus, IsKeyDown(VK_SHIFT));
        case VK_RETURN:
            return !HasOpenList(focus) && PressEnter(focus);
        case VK_ESCAPE:
            if (HasOpenList(focus)) return false;
            OnCancel();
            return true;
        default:
            // Arrows move between the buttons of a group. Every other control uses them itself.
            return IsArrow(key) && (DialogCode(focus) & DLGC_BUTTON) != 0 &&
                   IsDialogKey(Handle(), message);
    }
}

bool TForm::HandleKeyMessage(MSG& message) {
    const bool own = message.hwnd == Handle() || IsChild(Handle(), message.hwnd) != 0;
    if (!own) return false;
    const TKeep keep(*this);
    try {
        if (HandleKeyDown(message)) return true;
        // The underlined letters of captions.
        return message.message == WM_SYSCHAR && Handle() != nullptr &&
               IsDialogKey(Handle(), message);
    } catch (...) {
        ShowCurrentException({}, [this](std::string_view text) { HandleError(text); });
        return true;
    }
}

}  // namespace tolvane
