#pragma once

#include <windows.h>

namespace tolvane {

// The system calls of CallUser.
struct TAttentionCalls {
    decltype(&GetForegroundWindow) getForegroundWindow = &GetForegroundWindow;
    decltype(&FlashWindowEx) flashWindowEx = &FlashWindowEx;
};

// While another program is in front, makes the task-bar button of this program's main window flash
// until the window comes to the front. `window` is the main window or one that it owns, directly or
// not. Interface thread.
void CallUser(HWND window, const TAttentionCalls& calls = {}) noexcept;

}  // namespace tolvane
