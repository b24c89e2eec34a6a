#pragma once

#include <windows.h>

#include <functional>
#include <thread>

#include "window/Handles.h"
#include "window/PostQueue.h"

namespace tolvane {

// A thread for one body of work at a time, which waits on a wire: a run, or a search for devices.
// Used from the interface thread.
class TWorkerThread {
public:
    TWorkerThread() = default;
    TWorkerThread(const TWorkerThread&) = delete;
    TWorkerThread& operator=(const TWorkerThread&) = delete;
    ~TWorkerThread() { Wait(); }

    // Waits for an earlier body, then runs `body` on the thread. Afterwards runs `done` on the
    // interface thread through the queue, also when `body` has thrown. An exception of `body` is
    // dropped, so `body` reports its failures itself. Throws std::runtime_error when the system
    // gives no event, std::system_error when it gives no thread.
    void Start(std::function<void()> body, TPostQueue queue, std::function<void()> done);
    // Returns when the body has ended; meanwhile windows paint and answer what other threads send.
    void Wait() noexcept;

private:
    TOwnedKernelObject ended_;
    std::thread thread_;
};

}  // namespace tolvane
