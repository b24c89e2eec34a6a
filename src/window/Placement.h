#pragma once

#include <windows.h>

#include "config/WindowPlace.h"

namespace tolvane {

// Where the window is when it is neither maximized nor minimized, on the screen or, for an MDI
// child, in the MDI client; and whether it is maximized now.
TWindowPlace PlaceOf(HWND window);
// Moves and sizes the window, but makes it no smaller than its limit, and does not maximize it. A
// maximized window is moved when it is restored. Does nothing when the window would be out of
// sight, because the screen may have changed.
void MoveTo(HWND window, const TWindowPlace& place);

// The part of a screen that programs may use; the screen is the one that shows most of the
// rectangle or is nearest to it.
RECT WorkArea(const RECT& around);

}  // namespace tolvane
