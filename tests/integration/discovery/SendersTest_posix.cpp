#include <chrono>
#include <string>

#include "tests/integration/discovery/DiscoveryFixture.h"
#include "tests/integration/discovery/Responder.h"

namespace tolvane::test {
namespace {

// Modules at loopback addresses of their own.
using SendersTest = DiscoveryFixture;

}  // namespace

TEST_F(SendersTest, FindDevices_ListsManyModules) {
    std::vector<TResponder::TReply> replies;
    for (int i = 2; i <= 41; ++i)
        replies.push_back({"127.0.0." + std::to_string(i), 2});
    const TResponder responder(replies);
    target_.ports[0] = responder.Port();
    const TFound found = Find();
    ASSERT_EQ(found.size(), 40U);
    for (int i = 0; i < 40; ++i)
        EXPECT_EQ(found[static_cast<std::size_t>(i)],
                  (TFoundDevice{"127.0.0." + std::to_string(i + 2), TDeviceKind::UdpModule}));
}

TEST_F(SendersTest, FindDevices_SurvivesAFloodOf10000Datagrams) {
    const TResponder responder({{"127.0.0.9", 10000, std::string(64, 'x')}});
    target_.ports[2] = responder.Port();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Find(), (TFound{{"127.0.0.9", TDeviceKind::TcpModule}}));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST_F(SendersTest, FindDevices_TakesDatagramsOfAnyLength) {
    const TResponder responder({{"127.0.0.9", 1, std::string(60000, 'x')}});
    target_.ports[1] = responder.Port();
    EXPECT_EQ(Find(), (TFound{{"127.0.0.9", TDeviceKind::UdpModule}}));
}

}  // namespace tolvane::test
