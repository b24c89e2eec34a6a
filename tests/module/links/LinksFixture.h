#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "comm/DeviceDiscovery.h"
#include "tests/support/Clocks.h"
#include "upload/ScaleSession.h"

namespace tolvane {

inline void PrintTo(const TFoundDevice& device, std::ostream* out) {
    *out << device.address << " kind " << static_cast<int>(device.kind);
}

}  // namespace tolvane

namespace tolvane::test {

// The environment variable TOLVANE_LINKS_<name>; fails the test when it is not set.
std::string Setting(const char* name);

// The price in hundredths of an article in the state that the scale of that name has saved; -1 when
// it is not there.
int PriceIn(const std::string& scale, int number);

inline TFoundDevice Udp(const std::string& address) {
    return {address, TDeviceKind::UdpModule};
}
inline TFoundDevice Tcp(const std::string& address) {
    return {address, TDeviceKind::TcpModule};
}
// By kind and address: who answers a broadcast first is chance.
std::vector<TFoundDevice> Sorted(std::vector<TFoundDevice> devices);

// Virtual scales that run beside the test; each saves what it holds in TOLVANE_LINKS_FOLDER.
class LinksFixture : public testing::Test {
protected:
    // Writes an article into the configured scale; `scale` is the name of its saved state.
    void ExpectUpload(const TScaleRec& rec, const std::string& scale, int number,
                      const std::string& price, int hundredths);

    // Cuts the protocol's pauses short, and leaves the short ones by which a serial read waits.
    TQuickClock clock{{.longestPause = TMilliseconds(10)}};
    TRealScaleFactory factory{clock};
};

}  // namespace tolvane::test
