#pragma once

#include <windows.h>

#include <functional>
#include <memory>

namespace tolvane {

// Carries work from any thread to the thread of a window, in the order of posting. Copies share one
// queue. Work that is posted after Detach is dropped.
class TPostQueue {
public:
    using TTask = std::function<void()>;

    TPostQueue();

    // Interface thread: `window` receives `message` when there is work, and answers it with Run.
    void Attach(HWND window, UINT message);
    void Detach() noexcept;
    // Any thread.
    void Post(TTask task);
    // Interface thread: runs what is waiting, at most about 10 ms in one go (the rest follows with
    // the next message, so that the window stays alive).
    void Run();
    // Interface thread: runs all that is waiting now, however long it takes.
    void RunAll();

private:
    struct TState;
    std::shared_ptr<TState> state_;
};

}  // namespace tolvane
