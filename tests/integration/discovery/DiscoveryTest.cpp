#include "tests/integration/discovery/DiscoveryFixture.h"

#include <chrono>

namespace tolvane::test {
namespace {

// The system's clock; reading it for the third time stops the search.
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

using DiscoveryTest = DiscoveryFixture;

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

TEST_F(DiscoveryTest, FindDevices_GoesOnWhenTheLocalPort5001IsTaken) {
    asio::io_context io;
    const asio::ip::udp::socket holder(io, {asio::ip::udp::v4(), target_.findLocalPort});
    TVirtualScale scale(Scale(1, {'O', 'K'}));
    scale.Start();
    PointAt(scale);
    EXPECT_EQ(Find(), (TFound{{"127.0.0.1", TDeviceKind::UdpModule},
                              {"127.0.0.1", TDeviceKind::TcpModule}}));
}

TEST_F(DiscoveryTest, FindDevices_SomethingThatIsNotAnAddressFindsNothingAtOnce) {
    target_.address = "scale.local";
    EXPECT_EQ(Find(), TFound{});
}

TEST_F(DiscoveryTest, FindDevices_AsksOtherAddressesWhereTheFirstCannotBeAsked) {
    TVirtualScale scale(Scale(1, {'O', 'K'}));
    scale.Start();
    PointAt(scale);
    target_.address = "scale.local";
    target_.otherwise = {"127.0.0.1"};
    EXPECT_EQ(Find().size(), 3U);
}

TEST_F(DiscoveryTest, FindDevices_EndsSoonAfterAStop) {
    TStoppingClock clock(stop_);
    const auto start = SystemClock().Now();
    FoundDevices(clock, stop_, target_);
    EXPECT_LT(SystemClock().Now() - start, std::chrono::milliseconds(900));
}

}  // namespace tolvane::test
