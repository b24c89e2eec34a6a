#pragma once

#include <windows.h>

#include "entry/HostInterface.h"

namespace tolvane::host {

// The print service that the host hands to its operations: shows a preview of the list view, drawn
// from its visible columns, from where it can be printed. `frame` owns the preview.
TPrintProc MakePrintProc(HWND frame);

}  // namespace tolvane::host
