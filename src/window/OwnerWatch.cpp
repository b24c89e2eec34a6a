#include "window/OwnerWatch.h"

#include <commctrl.h>

#include "window/Window.h"

namespace tolvane {
namespace {

constexpr UINT_PTR kWatch = 1;

}  // namespace

TOwnerWatch::TOwnerWatch(HWND owner, TWindow& window) noexcept : owner_(owner) {
    if (owner_ != nullptr)
        SetWindowSubclass(owner_, &Procedure, kWatch, reinterpret_cast<DWORD_PTR>(&window));
}

TOwnerWatch::~TOwnerWatch() {
    if (owner_ != nullptr) RemoveWindowSubclass(owner_, &Procedure, kWatch);
}

LRESULT CALLBACK TOwnerWatch::Procedure(HWND owner, UINT id, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                        DWORD_PTR window) noexcept {
    if (id == WM_DESTROY) {
        RemoveWindowSubclass(owner, &Procedure, kWatch);
        reinterpret_cast<TWindow*>(window)->Destroy();
    }
    return DefSubclassProc(owner, id, wParam, lParam);
}

}  // namespace tolvane
