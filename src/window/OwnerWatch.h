#pragma once

#include <windows.h>

namespace tolvane {

class TWindow;

// While it lives, `window` is destroyed when `owner` is, although the system owner of a popup is
// always a top-level window. Interface thread; both windows belong to it.
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
