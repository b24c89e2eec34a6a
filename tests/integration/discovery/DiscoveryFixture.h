#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <utility>
#include <vector>

#include "comm/DeviceDiscovery.h"
#include "simulator/VirtualScale.h"
#include "tests/support/FreeUdpPort.h"
#include "tests/support/scales/FoundDevices.h"

namespace tolvane::test {

using simulator::TProbe;
using simulator::TProbeOptions;
using simulator::TScaleOptions;
using simulator::TVirtualScale;
using TFound = std::vector<TFoundDevice>;

// Searches on this computer's loopback address alone.
class DiscoveryFixture : public testing::Test {
protected:
    DiscoveryFixture() {
        target_.address = "127.0.0.1";
        for (std::uint16_t& port : target_.ports)
            port = FreeUdpPort();
        target_.findLocalPort = FreeUdpPort();
    }

    TFound Find() const { return FoundDevices(SystemClock(), stop_, target_); }
    // Aims the three probes at the ports on which the scale listens for them.
    void PointAt(const TVirtualScale& scale) {
        target_.ports = {scale.ProbePort(TProbe::Character), scale.ProbePort(TProbe::Find),
                         scale.ProbePort(TProbe::Converter)};
    }
    static TScaleOptions Scale(int replies, const simulator::TBytes& reply) {
        TScaleOptions options;
        for (const TProbe probe : {TProbe::Character, TProbe::Find, TProbe::Converter})
            options.probes.push_back(
                {.probe = probe, .port = std::uint16_t{0}, .replies = replies, .reply = reply});
        return options;
    }

    TDiscoveryTarget target_;
    std::atomic<bool> stop_{false};
};

}  // namespace tolvane::test
