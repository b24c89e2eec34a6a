#pragma once

#include <windows.h>

namespace tolvane {

// In a form with a default button, the button that Enter presses looks like one: `button` while it
// has the focus, otherwise the default button. Interface thread.
void PrepareDefaultLook(HWND button) noexcept;

}  // namespace tolvane
