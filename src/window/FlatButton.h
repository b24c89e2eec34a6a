#pragma once

#include <windows.h>

#include "window/Dpi.h"

namespace tolvane {

// Flat buttons are owner-drawn; a form draws them by itself. What they look like beyond their text
// and font is kept as window properties.

// A small arrow at the right edge (alone in the middle when the button has no text).
void SetFlatButtonArrow(HWND button, bool arrow);
// An icon in front of the text; the button does not own it.
void SetFlatButtonIcon(HWND button, HICON icon);
void DrawFlatButton(const DRAWITEMSTRUCT& item, TDpi dpi);
// Before the button goes.
void RemoveFlatButtonLook(HWND button) noexcept;

}  // namespace tolvane
