#pragma once

#include <windows.h>

#include <functional>
#include <memory>

namespace tolvane {

// The system calls that bring a queue's work to its window. Any of them may fail: a thread's
// message queue can be full, the system can be out of timers.
struct TQueueCalls {
    decltype(&PostMessageW) postMessage = &PostMessageW;
    decltype(&SendNotifyMessageW) sendNotifyMessage = &SendNotifyMessageW;
    decltype(&SetTimer) setTimer = &SetTimer;
};

// Carries work from any thread to the thread of a window, in the order of posting. Copies share one
// queue. Work that is posted after Detach is dropped.
class TPostQueue {
public:
    using TTask = std::function<void()>;

    explicit TPostQueue(const TQueueCalls& calls = {});

    // Interface thread: `window` receives `message` when there is work, and answers it with Run.
    void Attach(HWND window, UINT message);
    void Detach() noexcept;
    // Any thread. On the interface thread the work runs at once when nothing can bring it later. On
    // another one, false means that the work waits for a later Post or Announce.
    bool Post(TTask task);
    // Tries again to bring what waits to the window; false when that failed.
    bool Announce();
    // Interface thread: runs what is waiting, at most about 10 ms in one go (the rest follows with
    // the next message, so that the window stays alive; or now, when there can be no next message).
    // Throws the first exception that a task has thrown.
    void Run();

private:
    struct TState;
    std::shared_ptr<TState> state_;
};

}  // namespace tolvane
