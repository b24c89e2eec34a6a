#include "window/PostQueue.h"

#include <deque>
#include <mutex>
#include <utility>

namespace tolvane {

struct TPostQueue::TState {
    std::mutex mutex;
    std::deque<TTask> tasks;
    HWND window = nullptr;
    UINT message = 0;
    bool announced = false;

    void Announce() {
        if (!announced) announced = PostMessageW(window, message, 0, 0) != 0;
    }
    TTask Take() {
        const std::lock_guard lock(mutex);
        if (tasks.empty()) return {};
        TTask task = std::move(tasks.front());
        tasks.pop_front();
        return task;
    }
    // After a turn of Run, also one that a task's exception ended. What is left waits for a timer:
    // a posted message would come before all that the user does and before every painting.
    void EndTurn() {
        const std::lock_guard lock(mutex);
        announced = window != nullptr && !tasks.empty() &&
                    SetTimer(window, message, USER_TIMER_MINIMUM, &Continue) != 0;
        if (!announced && window != nullptr && !tasks.empty()) Announce();
    }
    static void CALLBACK Continue(HWND timerWindow, UINT, UINT_PTR runMessage, DWORD) {
        KillTimer(timerWindow, runMessage);
        PostMessageW(timerWindow, static_cast<UINT>(runMessage), 0, 0);
    }
};

TPostQueue::TPostQueue() : state_(std::make_shared<TState>()) {}

void TPostQueue::Attach(HWND window, UINT message) {
    const std::lock_guard lock(state_->mutex);
    state_->window = window;
    state_->message = message;
}

void TPostQueue::Detach() noexcept {
    const std::lock_guard lock(state_->mutex);
    state_->window = nullptr;
    state_->tasks.clear();
}

void TPostQueue::Post(TTask task) {
    const std::lock_guard lock(state_->mutex);
    if (state_->window == nullptr) return;
    state_->tasks.push_back(std::move(task));
    state_->Announce();
}

void TPostQueue::Run() {
    constexpr DWORD kSliceMs = 10;
    // A task may end the window that owns the queue.
    const std::shared_ptr<TState> state = state_;
    const std::unique_ptr<TState, void (*)(TState*)> endTurn(state.get(),
                                                             [](TState* turn) { turn->EndTurn(); });
    const DWORD start = GetTickCount();
    while (const TTask task = state->Take()) {
        task();
        if (GetTickCount() - start >= kSliceMs) return;
    }
}

void TPostQueue::RunAll() {
    const std::shared_ptr<TState> state = state_;
    while (const TTask task = state->Take())
        task();
}

}  // namespace tolvane
