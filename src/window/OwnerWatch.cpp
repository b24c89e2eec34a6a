#include "window/OwnerWatch.h"

#include <commctrl.h>

#include "window/Window.h"

namespace tolvane {
namespace {

// Several watches may watch one owner.
UINT_PTR NumberOf(const TOwnerWatch& watch) {
    return reinterpret_cast<UINT_PTR>(&watch);
}

}  // namespace

TOwnerWatch::TOwnerWatch(HWND owner, TWindow& window) noexcept : owner_(owner) {
    if (owner_ != nullptr)
        SetWindowSubclass(owner_, &Procedure, NumberOf(*this),
                          reinterpret_cast<DWORD_PTR>(&window));
}

TOwnerWatch::~TOwnerWatch() {
    if (owner_ != nullptr) RemoveWindowSubclass(owner_, &Procedure, NumberOf(*this));
}

LRESULT CALLBACK TOwnerWatch::Procedure(HWND owner, UINT id, WPARAM wParam, LPARAM lParam,
                                        UINT_PTR watch, DWORD_PTR window) noexcept {
    if (id == WM_DESTROY) {
        RemoveWindowSubclass(owner, &Procedure, watch);
        reinterpret_cast<TWindow*>(window)->Destroy();
    }
    return DefSubclassProc(owner, id, wParam, lParam);
}

}  // namespace tolvane
