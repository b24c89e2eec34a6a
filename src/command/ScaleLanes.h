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
// go one after another, in their order.
class TScaleLanes {
public:
    struct TTask {
        std::vector<std::string> needs;
        std::function<void()> run;  // throws nothing
    };

    // Starts. `atOnce` lanes at the same time; 0: all of them.
    TScaleLanes(std::vector<TTask> tasks, std::size_t atOnce);
    // Waits for all tasks.
    ~TScaleLanes();
    TScaleLanes(const TScaleLanes&) = delete;
    TScaleLanes& operator=(const TScaleLanes&) = delete;

    // Waits, but not longer than this; answers whether all tasks have ended.
    bool WaitFor(TMilliseconds time);

private:
    void Work();

    std::vector<std::vector<std::function<void()>>> lanes_;
    std::atomic<std::size_t> next_ = 0;
    std::mutex mutex_;
    std::condition_variable ended_;
    std::size_t running_ = 0;  // threads
    std::vector<std::jthread> threads_;
};

}  // namespace tolvane
