#include <gtest/gtest.h>

#include <algorithm>

#include "comm/DeviceDiscovery.h"
#include "simulator/VirtualScale.h"
#include "tests/integration/discovery/Responder.h"

namespace tolvane::test {
namespace {

using simulator::TProbe;
using simulator::TProbeOptions;
using simulator::TScaleOptions;
using simulator::TVirtualScale;
using TFound = std::vector<TFoundDevice>;

// A port that nobody held a moment ago.
std::uint16_t FreePort() {
    asio::io_context io;
    const asio::ip::udp::socket socket(io, {asio::ip::address_v4::loopback(), 0});
    return socket.local_endpoint().port();
}

// The system's time; the third look at it stops the search.
class TStoppingClock : public TClock {
public:
    explicit TStoppingClock(std::atomic<bool>& stop) : stop_(stop) {}
    TTimePoint Now() const override {
        stop_ = ++looks_ >= 3;
        return SystemClock().Now();
    }
    void Sleep(TMilliseconds pause) override { SystemClock().Sleep(pause); }

private:
    std::atomic<bool>& stop_;
    mutable int looks_ = 0;
};

// A network of this computer alone.
class DiscoveryTest : public testing::Test {
protected:
    DiscoveryTest() {
        target_.address = "127.0.0.1";
        for (std::uint16_t& port : target_.ports)
            port = FreePort();
        target_.findLocalPort = FreePort();
    }

    TFound Find() const { return FindDevices(SystemClock(), stop_, target_); }
    // Where the scale listens for its probes.
    void PointAt(const TVirtualScale& scale) {
        target_.ports = {scale.ProbePort(TProbe::Character), scale.ProbePort(TProbe::Find),
                         scale.ProbePort(TProbe::Converter)};
    }
    static TScaleOptions Scale(int replies, simulator::TBytes reply) {
        TScaleOptions options;
        for (const TProbe probe : {TProbe::Character, TProbe::Find, TProbe::Converter})
            options.probes.push_back(
                {.probe = probe, .port = std::uint16_t{0}, .replies = replies, .reply = reply});
        return options;
    }

    TDiscoveryTarget target_;
    std::atomic<bool> stop_{false};
};

}  // namespace

TEST_F(DiscoveryTest, FindDevices_FindsNothingWhereNobodyAnswers) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Find(), TFound{});
    const auto passed = std::chrono::steady_clock::now() - start;
    EXPECT_GE(passed, std::chrono::milliseconds(2900));
    EXPECT_LT(passed, std::chrono::seconds(10));
}

TEST_F(DiscoveryTest, FindDevices_FindsAScaleByEachProbe) {
    TVirtualScale scale(Scale(1, {'O', 'K'}));
    scale.Start();
    PointAt(scale);
    EXPECT_EQ(Find(), (TFound{{"127.0.0.1", TDeviceKind::UdpModule},
                              {"127.0.0.1", TDeviceKind::UdpModule},
                              {"127.0.0.1", TDeviceKind::TcpModule}}));
}

TEST_F(DiscoveryTest, FindDevices_ListsAScaleOfSeveralDatagramsOncePerProbe) {
    TVirtualScale scale(Scale(5, {'O', 'K'}));
    scale.Start();
    PointAt(scale);
    EXPECT_EQ(Find().size(), 3U);
}

TEST_F(DiscoveryTest, FindDevices_IgnoresRealEmptyDatagrams) {
    TVirtualScale scale(Scale(2, {}));
    scale.Start();
    PointAt(scale);
    EXPECT_EQ(Find(), TFound{});
}

TEST_F(DiscoveryTest, FindDevices_ListsManyModules) {
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

TEST_F(DiscoveryTest, FindDevices_SurvivesAFloodOf10000Datagrams) {
    const TResponder responder({{"127.0.0.9", 10000, std::string(64, 'x')}});
    target_.ports[2] = responder.Port();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Find(), (TFound{{"127.0.0.9", TDeviceKind::TcpModule}}));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST_F(DiscoveryTest, FindDevices_TakesDatagramsOfAnyLength) {
    const TResponder responder({{"127.0.0.9", 1, std::string(60000, 'x')}});
    target_.ports[1] = responder.Port();
    EXPECT_EQ(Find(), (TFound{{"127.0.0.9", TDeviceKind::UdpModule}}));
}

TEST_F(DiscoveryTest, FindDevices_GoesOnWhenTheLocalPort5001IsTaken) {
    asio::io_context io;
    const asio::ip::udp::socket holder(io, {asio::ip::udp::v4(), target_.findLocalPort});
    TVirtualScale scale(Scale(1, {'O', 'K'}));
    scale.Start();
    PointAt(scale);
    EXPECT_EQ(Find(), (TFound{{"127.0.0.1", TDeviceKind::UdpModule},
                              {"127.0.0.1", TDeviceKind::TcpModule}}));
}

TEST_F(DiscoveryTest, FindDevices_AnAddressThatIsNoneFindsNothingAtOnce) {
    target_.address = "scale.local";
    EXPECT_EQ(Find(), TFound{});
}

TEST_F(DiscoveryTest, FindDevices_EndsSoonAfterAStop) {
    TStoppingClock clock(stop_);
    const auto start = SystemClock().Now();
    FindDevices(clock, stop_, target_);
    EXPECT_LT(SystemClock().Now() - start, std::chrono::milliseconds(900));
}

}  // namespace tolvane::test
