#pragma once

#include <windows.h>

namespace tolvane {

class TWindow;

// Destroys `window` when `owner` is destroyed. The system does that only for a top-level owner.
// Interface thread; both windows belong to it.
class TOwnerWatch {
public:
    TOwnerWatch(HWND owner, TWindow& window) noexcept;
    TOwnerWatch(const TOwnerWatch&) = delete;
    TOwnerWatch& operator=(const TOwnerWatch&) = delete;
    ~TOwnerWatch();

private:
    static LRESULT CALLBACK Procedure(HWND owner, UINT id, WPARAM wParam, LPARAM lParam,
                                      UINT_PTR watch, DWORD_PTR window) noexcept;
    HWND owner_;
};

}  // namespace tolvane
