#pragma once

#include <windows.h>

#include <string>

namespace tolvane::test {

// Writes what the screen shows at a window's place as a bitmap file, into the folder that
// TOLVANE_SCREENSHOTS names; does nothing when it names none.
void SaveScreenshot(HWND window, const std::string& name);
// The colour of a point of a window's client area, as drawn.
COLORREF PixelAt(HWND window, POINT at);

}  // namespace tolvane::test
