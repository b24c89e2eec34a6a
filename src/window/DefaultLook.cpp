#include "window/DefaultLook.h"

#include <commctrl.h>

namespace tolvane {
namespace {

void SetDefaultLook(HWND button, bool on) {
    SendMessageW(button, BM_SETSTYLE, on ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON, TRUE);
}

LRESULT CALLBACK PushButtonProcedure(HWND button, UINT id, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                     DWORD_PTR) noexcept {
    const LRESULT result = DefSubclassProc(button, id, wParam, lParam);
    if (id == WM_NCDESTROY) RemoveWindowSubclass(button, &PushButtonProcedure, 0);
    if (id != WM_SETFOCUS && id != WM_KILLFOCUS) return result;
    const HWND usual = GetDlgItem(GetParent(button), IDOK);
    if (usual != nullptr && usual != button) {
        const bool focused = id == WM_SETFOCUS;
        SetDefaultLook(button, focused);
        SetDefaultLook(usual, !focused);
    }
    return result;
}

}  // namespace

void PrepareDefaultLook(HWND button) noexcept {
    SetWindowSubclass(button, &PushButtonProcedure, 0, 0);
}

}  // namespace tolvane
