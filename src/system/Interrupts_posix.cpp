#include "system/Interrupts.h"

#include <signal.h>
#include <unistd.h>

#include <atomic>

namespace tolvane {
namespace {

constexpr int kInterrupted = 130;

std::atomic<int> interrupts = 0;
static_assert(std::atomic<int>::is_always_lock_free);

void Interrupted(int) {
    if (++interrupts > 1) _exit(kInterrupted);
}

}  // namespace

void CatchInterrupts() {
    struct sigaction action {};
    action.sa_handler = Interrupted;
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction before {};
        sigaction(signal, nullptr, &before);
        if (before.sa_handler != SIG_IGN) sigaction(signal, &action, nullptr);
    }
}

int InterruptCount() noexcept {
    return interrupts;
}

}  // namespace tolvane
