#pragma once

#include <windows.h>

#include <functional>
#include <thread>

#include "window/Handles.h"
#include "window/PostQueue.h"

namespace tolvane {

// The thread of one run at a time. Used from the interface thread.
class TRunWorker {
public:
    TRunWorker() = default;
    TRunWorker(const TRunWorker&) = delete;
    TRunWorker& operator=(const TRunWorker&) = delete;
    ~TRunWorker() { Wait(); }

    // Waits for an earlier body, then runs `body` on the thread and, whatever becomes of it, `done`
    // on the interface thread through the queue. What `body` throws ends there: it has to tell of
    // its failures itself. Throws std::runtime_error when there is no thread to be had.
    void Start(std::function<void()> body, TPostQueue queue, std::function<void()> done);
    // Returns when the body has ended; meanwhile windows paint and answer what other threads send.
    void Wait() noexcept;

private:
    struct TEventTraits {
        using TValue = HANDLE;
        static constexpr HANDLE kNone = nullptr;
        static void Free(HANDLE handle) noexcept { CloseHandle(handle); }
    };

    TOwned<TEventTraits> ended_;
    std::thread thread_;
};

}  // namespace tolvane
