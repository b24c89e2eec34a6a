#pragma once

#include <windows.h>

#include <functional>
#include <list>
#include <memory>
#include <utility>

namespace tolvane {

// The system calls that a queue uses to reach its window. Any of them may fail: a thread's message
// queue can be full, the system can run out of timers.
struct TQueueCalls {
    decltype(&PostMessageW) postMessage = &PostMessageW;
    decltype(&SendNotifyMessageW) sendNotifyMessage = &SendNotifyMessageW;
    decltype(&SetTimer) setTimer = &SetTimer;
};

// Runs work that any thread posts on the thread of a window, in the order of posting. Copies share
// one queue. Work posted after Detach is dropped.
class TPostQueue {
public:
    using TTask = std::function<void()>;

    // Work that has all the memory that it takes to post it, once.
    class TPrepared {
    public:
        explicit TPrepared(TTask task) { tasks_.push_back(std::move(task)); }

    private:
        friend class TPostQueue;
        std::list<TTask> tasks_;
    };

    explicit TPostQueue(const TQueueCalls& calls = {});

    // Interface thread: `window` receives `message` when there is work, and must then call Run.
    void Attach(HWND window, UINT message);
    void Detach() noexcept;
    // Any thread. If the window cannot be reached: on the interface thread the work runs at once;
    // on another thread the result is false, and the work waits for the next Post or Announce.
    bool Post(TTask task);
    // The same with prepared work. Needs no memory.
    bool Post(TPrepared& prepared);
    // Tries again to reach the window; false when that failed.
    bool Announce();
    // Interface thread: runs the waiting work for about 10 ms. The rest runs with a later message,
    // so that the window stays responsive; if there can be no later message, it runs now. Throws
    // the first exception that a task has thrown.
    void Run();

private:
    struct TState;
    std::shared_ptr<TState> state_;
};

}  // namespace tolvane
