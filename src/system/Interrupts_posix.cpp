#include "system/Interrupts.h"

#include <signal.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstddef>

namespace tolvane {
namespace {

constexpr int kInterrupted = 130;

constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP};

std::atomic<int> interrupts = 0;
// By the place in kSignals: one that waits is told, as it would not have been ignored.
std::array<std::atomic<bool>, kSignals.size()> told{};
static_assert(std::atomic<int>::is_always_lock_free);

void Interrupted(int) {
    if (++interrupts > 1) _exit(kInterrupted);
}

}  // namespace

void CatchInterrupts() {
    struct sigaction action {};
    action.sa_handler = Interrupted;
    action.sa_flags = SA_RESTART;
    for (const int signal : kSignals) {
        struct sigaction before {};
        sigaction(signal, nullptr, &before);
        if (before.sa_handler != SIG_IGN) sigaction(signal, &action, nullptr);
    }
}

void EndAtInterrupt() {}

int InterruptCount() noexcept {
    sigset_t waiting;
    if (interrupts > 0 || sigpending(&waiting) != 0) return interrupts;
    for (std::size_t i = 0; i < kSignals.size(); ++i)
        if (told[i] && sigismember(&waiting, kSignals[i]) == 1) return 1;
    return 0;
}

struct TInterruptsBlocked::TKept {
    sigset_t mask{};
};

TInterruptsBlocked::TInterruptsBlocked() : kept_(std::make_unique<TKept>()) {
    sigset_t blocked;
    sigemptyset(&blocked);
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        struct sigaction action {};
        sigaction(kSignals[i], nullptr, &action);
        told[i] = action.sa_handler != SIG_IGN;
        sigaddset(&blocked, kSignals[i]);
    }
    pthread_sigmask(SIG_BLOCK, &blocked, &kept_->mask);
}

TInterruptsBlocked::~TInterruptsBlocked() {
    pthread_sigmask(SIG_SETMASK, &kept_->mask, nullptr);
}

void EndProcess(int code) noexcept {
    _exit(code);
}

}  // namespace tolvane
