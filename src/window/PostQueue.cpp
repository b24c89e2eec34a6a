#include "window/PostQueue.h"

#include <exception>
#include <list>
#include <mutex>
#include <utility>

namespace tolvane {

struct TPostQueue::TState {
    explicit TState(const TQueueCalls& systemCalls) : calls(systemCalls) {}

    const TQueueCalls calls;
    std::mutex mutex;
    std::list<TTask> tasks;
    HWND window = nullptr;
    UINT message = 0;
    bool announced = false;  // a message or a timer is on its way, or Run is working

    bool IsOwnThread() const {
        return GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId();
    }
    bool SetContinueTimer() const {
        return calls.setTimer(window, message, USER_TIMER_MINIMUM, &Continue) != 0;
    }
    // A timer must belong to the calling thread. From another thread a sent message serves: it
    // needs no room in the queue of posted messages.
    bool RequestRun() const {
        if (calls.postMessage(window, message, 0, 0) != 0) return true;
        return IsOwnThread() ? SetContinueTimer()
                             : calls.sendNotifyMessage(window, message, 0, 0) != 0;
    }
    TTask Take() {
        const std::lock_guard lock(mutex);
        if (tasks.empty()) return {};
        TTask task = std::move(tasks.front());
        tasks.pop_front();
        return task;
    }
    void RunSlice() {
        constexpr DWORD kSliceMs = 10;
        const DWORD start = GetTickCount();
        while (const TTask task = Take()) {
            task();
            if (GetTickCount() - start >= kSliceMs) return;
        }
    }
    // After a slice. The work that is left waits for a timer: a posted message would come before
    // all input and painting. Returns false when work is left and the window cannot be reached.
    bool EndSlice() {
        const std::lock_guard lock(mutex);
        const bool isWaiting = window != nullptr && !tasks.empty();
        announced =
            isWaiting && (SetContinueTimer() || calls.postMessage(window, message, 0, 0) != 0);
        return announced || !isWaiting;
    }
    // The message is sent within the timer's own thread, so it is handled at once, before posted
    // messages.
    static void CALLBACK Continue(HWND timerWindow, UINT, UINT_PTR runMessage, DWORD) {
        KillTimer(timerWindow, runMessage);
        SendMessageW(timerWindow, static_cast<UINT>(runMessage), 0, 0);
    }
};

TPostQueue::TPostQueue(const TQueueCalls& calls) : state_(std::make_shared<TState>(calls)) {}

void TPostQueue::Attach(HWND window, UINT message) {
    const std::lock_guard lock(state_->mutex);
    state_->window = window;
    state_->message = message;
    // A message to an earlier window was lost with that window.
    state_->announced = false;
}

void TPostQueue::Detach() noexcept {
    const std::lock_guard lock(state_->mutex);
    state_->window = nullptr;
    state_->tasks.clear();
}

bool TPostQueue::Post(TTask task) {
    TPrepared prepared(std::move(task));
    return Post(prepared);
}

bool TPostQueue::Post(TPrepared& prepared) {
    {
        const std::lock_guard lock(state_->mutex);
        if (state_->window == nullptr) return true;
        state_->tasks.splice(state_->tasks.end(), prepared.tasks_);
    }
    return Announce();
}

bool TPostQueue::Announce() {
    {
        const std::lock_guard lock(state_->mutex);
        if (state_->window == nullptr || state_->tasks.empty()) return true;
        if (!state_->announced) state_->announced = state_->RequestRun();
        if (state_->announced) return true;
        if (!state_->IsOwnThread()) return false;
    }
    Run();
    return true;
}

void TPostQueue::Run() {
    // A task may destroy the window that owns the queue.
    const std::shared_ptr<TState> state = state_;
    std::exception_ptr failure;
    do {
        try {
            state->RunSlice();
        } catch (...) {
            if (!failure) failure = std::current_exception();
        }
    } while (!state->EndSlice());
    if (failure) std::rethrow_exception(failure);
}

}  // namespace tolvane
