#pragma once

#include <windows.h>

namespace tolvane {

// The position of a window when it is neither maximized nor minimized: its outer rectangle in
// pixels, on the screen or, for an MDI child, in the MDI client.
struct TPlacement {
    RECT outer{};
    bool maximized = false;
};

TPlacement PlacementOf(HWND window);
// Moves the window there, no smaller than it may be; a maximized one goes there when it is
// restored. Nothing happens when it would be out of sight: the screen may be another one now.
void MoveToPlacement(HWND window, const RECT& outer);

// What programs may use of the screen that shows most of a rectangle, or is next to it.
RECT WorkArea(const RECT& around);

}  // namespace tolvane
