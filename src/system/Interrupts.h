#pragma once

#include <memory>

namespace tolvane {

// From here on Ctrl+C and a request to end (SIGTERM; closing the terminal or the console) do not
// end the process at once, but are counted; the second one ends it with code 130. Windows gives a
// process whose console is closed a few seconds. A signal that is ignored stays so. Any thread.
void CatchInterrupts();
// From here on the first of them ends the process at once: as the system does it on Linux, which
// tells its parent the signal, and with code 130 on Windows, whose own code depends on the version.
void EndAtInterrupt();
// Those that were counted; 1 also when one waits because no thread takes it, see below.
int InterruptCount() noexcept;

// Threads that are started while one of these lives take no interrupt, not even as handlers that a
// library has put in: it waits for another thread, and InterruptCount tells of it.
class TInterruptsBlocked {
public:
    TInterruptsBlocked();
    TInterruptsBlocked(const TInterruptsBlocked&) = delete;
    TInterruptsBlocked& operator=(const TInterruptsBlocked&) = delete;
    ~TInterruptsBlocked();

private:
    struct TKept;
    std::unique_ptr<TKept> kept_;
};

// Without any more of the program's own code, also when other threads hang.
[[noreturn]] void EndProcess(int code) noexcept;

}  // namespace tolvane
