#pragma once

namespace tolvane {

// From here on Ctrl+C and a request to end (SIGTERM; closing the terminal or the console) do not
// end the process at once, but are counted; the second one ends it with code 130. Windows gives a
// process whose console is closed a few seconds. A signal that is ignored stays so. Any thread.
void CatchInterrupts();
int InterruptCount() noexcept;

}  // namespace tolvane
