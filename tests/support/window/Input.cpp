#include "tests/support/window/Input.h"

#include <array>
#include <cstddef>
#include <optional>

#include "tests/support/window/Controls.h"
#include "tests/support/window/HostFrame.h"

namespace tolvane::test {
namespace {

constexpr BYTE kDown = 0x80;
constexpr LPARAM kDownOnce = 1;
constexpr auto kUp = static_cast<LPARAM>(0xC0000001);

// Windows keeps the left key's state beside that of the key in general.
int LeftKey(int virtualKey) {
    switch (virtualKey) {
        case VK_CONTROL:
            return VK_LCONTROL;
        case VK_SHIFT:
            return VK_LSHIFT;
        case VK_MENU:
            return VK_LMENU;
        default:
            return virtualKey;
    }
}

// What the key was before.
BYTE SetKey(int virtualKey, BYTE state) {
    std::array<BYTE, 256> keys{};
    GetKeyboardState(keys.data());
    const BYTE before = keys.at(static_cast<std::size_t>(virtualKey));
    keys.at(static_cast<std::size_t>(virtualKey)) = state;
    keys.at(static_cast<std::size_t>(LeftKey(virtualKey))) = state;
    SetKeyboardState(keys.data());
    return before;
}

BOOL CALLBACK BringToFront(HWND window, LPARAM) {
    if (GetActiveWindow() == window || IsWindowVisible(window) == 0 || IsWindowEnabled(window) == 0)
        return TRUE;
    SetForegroundWindow(window);
    return FALSE;
}

}  // namespace

void PressKey(HWND window, int virtualKey, bool control, bool shift) {
    std::optional<THeldKey> heldControl;
    std::optional<THeldKey> heldShift;
    if (control) heldControl.emplace(VK_CONTROL);
    if (shift) heldShift.emplace(VK_SHIFT);
    PostMessageW(window, WM_KEYDOWN, static_cast<WPARAM>(virtualKey), kDownOnce);
    RunLoopDry();
    PostMessageW(window, WM_KEYUP, static_cast<WPARAM>(virtualKey), kUp);
    RunLoopDry();
}

void PostKey(int virtualKey) {
    // When another window has taken the keyboard, a user brings this one to the front.
    if (GetFocus() == nullptr) EnumThreadWindows(GetCurrentThreadId(), &BringToFront, 0);
    PostMessageW(GetFocus(), WM_KEYDOWN, static_cast<WPARAM>(virtualKey), kDownOnce);
    PostMessageW(GetFocus(), WM_KEYUP, static_cast<WPARAM>(virtualKey), kUp);
}

void PostText(const std::wstring& text) {
    for (const wchar_t character : text)
        PostMessageW(GetFocus(), WM_CHAR, character, 1);
}

THeldKey::THeldKey(int virtualKey) : virtualKey_(virtualKey), before_(SetKey(virtualKey, kDown)) {}

THeldKey::~THeldKey() {
    SetKey(virtualKey_, before_);
}

void ReleaseKeys() {
    std::array<BYTE, 256> keys{};
    SetKeyboardState(keys.data());
}

void Press(HWND window, const std::string& name) {
    SendMessageW(ControlOf(window, name), BM_CLICK, 0, 0);
}

void SetTextOf(HWND window, const std::string& name, const std::wstring& text) {
    SendMessageW(ControlOf(window, name), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

void Choose(HWND combo, int index) {
    SendMessageW(combo, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
    SendMessageW(GetParent(combo), WM_COMMAND,
                 MAKEWPARAM(static_cast<WORD>(GetDlgCtrlID(combo)), CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(combo));
}

void Click(HWND button) {
    PostMessageW(button, BM_CLICK, 0, 0);
}

void ClickAt(HWND control, POINT at) {
    const LPARAM point = MAKELPARAM(static_cast<WORD>(at.x), static_cast<WORD>(at.y));
    PostMessageW(control, WM_LBUTTONUP, 0, point);
    SendMessageW(control, WM_LBUTTONDOWN, MK_LBUTTON, point);
}

}  // namespace tolvane::test
