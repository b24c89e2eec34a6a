#pragma once

#include <windows.h>

namespace tolvane {

// Where a window stands when it is neither maximized nor minimized: its outer rectangle in pixels,
// on the screen or, for an MDI child, in the MDI client.
struct TPlacement {
    RECT outer{};
    bool maximized = false;
};

TPlacement PlacementOf(HWND window);
// Moves and sizes the window, but makes it no smaller than its limit. A maximized window is moved
// when it is restored. Does nothing when the window would be out of sight, because the screen may
// have changed.
void MoveToPlacement(HWND window, const RECT& outer);

// The part of a screen that programs may use; the screen is the one that shows most of the
// rectangle or is nearest to it.
RECT WorkArea(const RECT& around);

}  // namespace tolvane
