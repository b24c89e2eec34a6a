#pragma once

#include <windows.h>

namespace tolvane {

// Makes an edit line show and keep an address mask (see TIpMask): whatever is typed, pasted, cut or
// set goes through the mask, which lives as long as the edit line. Throws TWindowError.
void MakeIpMaskEdit(HWND edit);

}  // namespace tolvane
