#pragma once

#include <windows.h>

#include <functional>
#include <thread>

#include "window/Handles.h"
#include "window/PostQueue.h"

namespace tolvane {

// A thread for one job at a time that waits on a wire: a run, or a search for devices. All
// functions are for the interface thread.
class TWorkerThread {
public:
    TWorkerThread() = default;
    TWorkerThread(const TWorkerThread&) = delete;
    TWorkerThread& operator=(const TWorkerThread&) = delete;
    ~TWorkerThread() { Wait(); }

    // Waits for an earlier job, then runs `body` on the thread. Afterwards runs `done` on the
    // interface thread through the queue, even if `body` has thrown. Drops an exception of `body`,
    // which must therefore report its failures itself. Throws std::runtime_error when the system
    // has no event, std::system_error when it has no thread.
    void Start(std::function<void()> body, TPostQueue queue, std::function<void()> done);
    // Returns when the job has ended. Meanwhile it handles painting and sent messages.
    void Wait() noexcept;

private:
    TOwnedKernelObject ended_;
    std::thread thread_;
};

}  // namespace tolvane
