#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "config/TypesUnit.h"
#include "system/Clock.h"

namespace tolvane {

// What a scale needs for itself while it is worked on: its link and its ledger. A TCP scale has a
// link of its own, a serial line is one, and all UDP scales share one local port.
std::vector<std::string> NeedsOf(const TScaleRec& rec);

// Does tasks at the same time on threads of its own. Tasks that need the same thing form a lane and
// go one after another, in their order. When the system gives fewer threads than are wanted, fewer
// lanes go at the same time; without any, WaitFor does the work.
class TScaleLanes {
public:
    struct TTask {
        std::vector<std::string> needs;
        std::function<void()> run;  // throws nothing
    };

    // Starts a thread; throws std::system_error when the system has none.
    using TStartThread = std::function<std::jthread(std::function<void()> work)>;

    // Starts. `atOnce` lanes at the same time; 0: all of them.
    TScaleLanes(std::vector<TTask> tasks, std::size_t atOnce,
                const TStartThread& startThread = &StartThread);
    // Does or waits for all tasks.
    ~TScaleLanes();
    TScaleLanes(const TScaleLanes&) = delete;
    TScaleLanes& operator=(const TScaleLanes&) = delete;

    // Waits, but not longer than this; answers whether all tasks have ended. Without threads it
    // does a task instead, however long that takes.
    bool WaitFor(TMilliseconds time);

private:
    static std::jthread StartThread(std::function<void()> work);
    bool StartOne(const TStartThread& startThread);
    void Work();
    // Does the next task on the caller's thread; answers whether that was the last one.
    bool WorkHere();

    std::vector<std::vector<std::function<void()>>> lanes_;
    std::atomic<std::size_t> next_ = 0;
    std::size_t here_ = 0;  // the task of the lane next_ that WorkHere does next
    std::mutex mutex_;
    std::condition_variable ended_;
    std::size_t running_ = 0;  // threads
    std::vector<std::jthread> threads_;
};

}  // namespace tolvane
