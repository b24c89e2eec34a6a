#pragma once

#include <windows.h>

#include "entry/HostInterface.h"

namespace tolvane::host {

// The print service that the host gives its operations: shows a preview of the visible columns of a
// list view, which the user can print from there. `frame` owns the preview.
TPrintProc MakePrintProc(HWND frame);

}  // namespace tolvane::host
