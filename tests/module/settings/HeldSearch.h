#pragma once

#include <atomic>
#include <thread>
#include <vector>

#include "comm/forms/uFindDevices.h"

namespace tolvane::test {

// A search that works until it is let go or stopped.
struct THeldSearch {
    std::atomic<bool> started{false};
    std::atomic<bool> released{false};
    std::atomic<bool> sawStop{false};
    std::vector<TFoundDevice> found;

    TDeviceSearch Search() {
        return [this](const std::atomic<bool>& stop) {
            started = true;
            while (!released && !stop)
                std::this_thread::yield();
            sawStop = stop.load();
            return found;
        };
    }
};

}  // namespace tolvane::test
