#pragma once

namespace tolvane::bench {

// Prints what it takes to show windows like the module's with nothing in them: an MDI child with an
// empty list view, and a small popup window with a progress bar.
void TellBareWindows(int rounds);

}  // namespace tolvane::bench
