#pragma once

#include <windows.h>

#include <string>

namespace tolvane::test {

// Writes the window, as the screen shows it, to a bitmap file in the folder that
// TOLVANE_SCREENSHOTS names; does nothing when that is not set.
void SaveScreenshot(HWND window, const std::string& name);
// The same for a window of the scales' settings: the file is named settings-<name>-<dots per inch>.
void Picture(HWND window, const std::string& name);
// The colour of a point of a window's client area, as drawn.
COLORREF PixelAt(HWND window, POINT at);

}  // namespace tolvane::test
