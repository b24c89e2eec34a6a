#pragma once

#include <atomic>
#include <cstddef>
#include <thread>
#include <vector>

#include "settings/forms/uFindDevices.h"

namespace tolvane::test {

// A search that works until the test releases or stops it, and then finds something.
struct THeldSearch {
    std::atomic<bool> started{false};
    std::atomic<bool> released{false};
    std::atomic<bool> sawStop{false};
    std::vector<TFoundDevice> found;

    TDeviceSearch Search() {
        return [this](const std::atomic<bool>& stop, const TProbeReport& report) {
            started = true;
            while (!released && !stop)
                std::this_thread::yield();
            sawStop = stop.load();
            if (!found.empty()) report(found);
        };
    }
};

// A search whose probes end one after another, each when the test allows it; a stop ends the
// search.
struct TSteppedSearch {
    std::vector<std::vector<TFoundDevice>> probes;
    std::atomic<std::size_t> ended{0};  // how many probes may end
    std::atomic<bool> sawStop{false};

    TDeviceSearch Search() {
        return [this](const std::atomic<bool>& stop, const TProbeReport& report) {
            for (std::size_t probe = 0; probe < probes.size(); ++probe) {
                while (ended <= probe && !stop)
                    std::this_thread::yield();
                if (stop) {
                    sawStop = true;
                    return;
                }
                if (!probes[probe].empty()) report(probes[probe]);
            }
        };
    }
};

}  // namespace tolvane::test
