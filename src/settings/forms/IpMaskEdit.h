#pragma once

#include <windows.h>

namespace tolvane {

// Gives an edit line an address mask (see TIpMask): every typed, pasted, cut or set text goes
// through the mask, which lives as long as the edit line. Throws TWindowError. Interface thread.
void MakeIpMaskEdit(HWND edit);

}  // namespace tolvane
