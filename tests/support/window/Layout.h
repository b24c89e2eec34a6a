#pragma once

#include <windows.h>

namespace tolvane::test {

// Expects that the texts of visible labels, buttons, groups and drop-down lists fit into the
// controls that show them.
void ExpectTextsFit(HWND window);
// Expects that visible controls lie inside the window, and none over another.
void ExpectControlsApart(HWND window);

}  // namespace tolvane::test
