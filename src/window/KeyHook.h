#pragma once

#include <windows.h>

#include "window/Handles.h"

namespace tolvane {

// While it lives, keys that the thread's message loop fetches for a non-modal form of this module
// (or a control of it) are offered to the form first, so that they work in a host whose loop knows
// nothing of the form. Menus and the moving of windows keep their keys. Several hooks of one thread
// exist side by side.
class TKeyHook {
public:
    // Interface thread. Without a hook (the system refused it) the form still works by mouse.
    void Install() noexcept;
    void Remove() noexcept { hook_.Reset(); }

private:
    static LRESULT CALLBACK Procedure(int code, WPARAM wParam, LPARAM lParam) noexcept;
    TOwnedHook hook_;
};

}  // namespace tolvane
