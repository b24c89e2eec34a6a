#pragma once

#include <windows.h>

#include "window/Handles.h"

namespace tolvane {

// Offers a non-modal form of this module the keys that the thread's message loop retrieves for the
// form or its controls, so that they work although the host's loop does not know the form. Keys of
// menus, and keys that move a window, are not offered. A thread may have several hooks.
class TKeyHook {
public:
    // Interface thread. If the system refuses the hook, the form still works with the mouse.
    void Install() noexcept;
    void Remove() noexcept { hook_.Reset(); }

private:
    static LRESULT CALLBACK Procedure(int code, WPARAM wParam, LPARAM lParam) noexcept;
    TOwnedHook hook_;
};

}  // namespace tolvane
