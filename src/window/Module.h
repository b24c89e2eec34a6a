#pragma once

#include <windows.h>

namespace tolvane {

// The DLL or program that this code is linked into (not the process that loaded it).
HINSTANCE ModuleInstance() noexcept;

// The number of the module's icon resource, which forms show if the module has it.
inline constexpr int kModuleIcon = 1;

// Keeps this module loaded as long as the object exists, so that a host that unloads it too early
// does not remove the code of an open window. A helper thread releases the module after this thread
// has returned to its message loop; `uiWindow` is a window of this thread.
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
