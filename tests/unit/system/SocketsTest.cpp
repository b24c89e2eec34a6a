#include "system/Sockets.h"

#include <gtest/gtest.h>

namespace tolvane::test {
namespace {

// Which there are depends on the computer.
TEST(Sockets, BroadcastAddressesAreNotOfLoopback) {
    for (const std::uint32_t address : BroadcastAddresses()) {
        EXPECT_NE(address, 0U);
        EXPECT_NE(address >> 24, 127U);
    }
}

}  // namespace
}  // namespace tolvane::test
