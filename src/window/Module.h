#pragma once

#include <windows.h>

namespace tolvane {

// The DLL or program that this code is linked into (not the process that loaded it).
HINSTANCE ModuleInstance() noexcept;

// The number of the module's icon resource; forms carry it when it is there.
inline constexpr int kModuleIcon = 1;

// Keeps this module in memory while it lives, so that a host that unloads it too early does not
// take the code from under an open window. Giving the last hold back happens on a helper thread,
// after this thread has returned to its message loop; `uiWindow` is a window of it.
class TModuleHold {
public:
    explicit TModuleHold(HWND uiWindow) noexcept;
    TModuleHold(const TModuleHold&) = delete;
    TModuleHold& operator=(const TModuleHold&) = delete;
    ~TModuleHold();

private:
    HWND uiWindow_;
    DWORD uiThread_;
    HMODULE module_ = nullptr;
};

}  // namespace tolvane
