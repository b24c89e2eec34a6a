#include "system/Interrupts.h"

#include <windows.h>

#include <atomic>
#include <cstdlib>

namespace tolvane {
namespace {

constexpr UINT kInterrupted = 130;

std::atomic<int> interrupts = 0;

BOOL WINAPI Interrupted(DWORD event) {
    // Nothing else runs then, as nothing would do after SIGKILL.
    if (++interrupts > 1) TerminateProcess(GetCurrentProcess(), kInterrupted);
    // The process would end as soon as this returns.
    if (event == CTRL_CLOSE_EVENT || event == CTRL_LOGOFF_EVENT || event == CTRL_SHUTDOWN_EVENT)
        Sleep(INFINITE);
    return TRUE;
}

BOOL WINAPI Ended(DWORD) {
    TerminateProcess(GetCurrentProcess(), kInterrupted);
    return TRUE;
}

}  // namespace

void EndAtInterrupt() {
    SetConsoleCtrlHandler(Ended, TRUE);
}

void CatchInterrupts() {
    SetConsoleCtrlHandler(Interrupted, TRUE);
}

int InterruptCount() noexcept {
    return interrupts;
}

// The system has a thread of its own for them.
struct TInterruptsBlocked::TKept {};

TInterruptsBlocked::TInterruptsBlocked() = default;
TInterruptsBlocked::~TInterruptsBlocked() = default;

void EndProcess(int code) noexcept {
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(code));
    std::abort();
}

}  // namespace tolvane
