#pragma once

#include <windows.h>

#include "window/Dpi.h"

namespace tolvane {

// Flat buttons are drawn by their form. Their arrow and icon, and whether the mouse is over one,
// are kept as window properties. Interface thread.

// Makes a button show that the mouse is over it.
void PrepareFlatButton(HWND button) noexcept;

// Sets whether the button has a small arrow: at its right edge, or in the middle of a button
// without text.
void SetFlatButtonArrow(HWND button, bool arrow);
// Sets the icon in front of the text. The button does not own it.
void SetFlatButtonIcon(HWND button, HICON icon);
void DrawFlatButton(const DRAWITEMSTRUCT& item, TDpi dpi);
// Removes the properties; for when the button is being destroyed.
void RemoveFlatButtonLook(HWND button) noexcept;

}  // namespace tolvane
