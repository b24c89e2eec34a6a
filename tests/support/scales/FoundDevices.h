#pragma once

#include <atomic>
#include <vector>

#include "comm/DeviceDiscovery.h"

namespace tolvane::test {

// Runs a whole search. Returns what its three probes have found.
inline std::vector<TFoundDevice> FoundDevices(
    TClock& clock, const std::atomic<bool>& stop, const TDiscoveryTarget& target = {},
    const TProbeSocketFactory& makeSocket = &MakeProbeSocket) {
    std::vector<TFoundDevice> all;
    const auto add = [&](const std::vector<TFoundDevice>& found) {
        all.insert(all.end(), found.begin(), found.end());
    };
    FindDevices(clock, stop, add, target, makeSocket);
    return all;
}

}  // namespace tolvane::test
