// Deadlines by the system's own clock, and what the waiting costs.
#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <thread>
#include <vector>

#include "comm/TDevCommTCP.h"
#include "system/SystemError.h"
#include "tests/integration/comm/TcpPeer.h"
#include "tests/integration/comm/WaitingLink.h"

namespace tolvane::test {
namespace {

constexpr TMilliseconds kTimeout{1000};

struct TWaitingLinkKind {
    const char* name;
    std::unique_ptr<TWaitingLink> (*make)();
};

// Noise without a start or an end byte, as much as a line of 9600 bit/s carries in ten
// milliseconds.
const TCmdBuffer kNoise(10, 0x55);

class RealTimeTest : public testing::TestWithParam<TWaitingLinkKind> {
public:
    void SetUp() override { Make(); }
    void Make() {
        link = GetParam().make();
        ASSERT_TRUE(link->Channel().IsConnected()) << link->Channel().LastError;
    }
    std::int32_t Read(TMilliseconds timeout) {
        return link->Channel().ReadAnswer(reply, 0x02, 0x03,
                                          static_cast<std::int32_t>(timeout.count()));
    }
    void ExpectTimesOut(TMilliseconds timeout = kTimeout) {
        EXPECT_EQ(Read(timeout), kReadTimeout);
        EXPECT_EQ(link->Channel().LastError, link->readFailure + link->timeoutText);
    }

    std::unique_ptr<TWaitingLink> link;
    TCmdBuffer reply;
};

TEST_P(RealTimeTest, ASilentReadEndsWithinATenthOfASecondOfItsDeadlineAndIsNotBusy) {
    ExpectLasts(kTimeout, [&] { ExpectTimesOut(); });
    EXPECT_EQ(reply, TCmdBuffer{});
}

TEST_P(RealTimeTest, AFrameThatStopsInTheMiddleEndsWithinATenthOfASecondOfTheDeadline) {
    constexpr TMilliseconds kShort{500};
    ExpectLasts(kShort, [&] {
        link->Send({0x02, 0x41});
        ExpectTimesOut(kShort);
        EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x41}));
    });
}

TEST_P(RealTimeTest, NoiseThatNeverEndsDoesNotKeepTheReadBeyondItsDeadlineNorBusy) {
    const TSteadySender sender([&] { link->Stream(kNoise); });
    ExpectLasts(kTimeout, [&] { ExpectTimesOut(); });
    EXPECT_EQ(reply, TCmdBuffer{});
}

TEST_P(RealTimeTest, AFrameThatNeverEndsDoesNotKeepTheReadBeyondItsDeadlineNorBusy) {
    TCmdBuffer part = kNoise;
    part.front() = 0x02;
    const TSteadySender sender([&] { link->Stream(part); });
    ExpectLasts(kTimeout, [&] { ExpectTimesOut(); });
    ASSERT_GT(reply.size(), part.size());
    EXPECT_EQ(reply.front(), 0x02);
}

TEST_P(RealTimeTest, AnEndBeforeAnyStartEndsTheReadAtOnce) {
    ExpectEndsAtOnce([&] {
        link->Send({0x55, 0x03});
        EXPECT_EQ(Read(TMilliseconds(3000)), kReadWrongAnswer);
        EXPECT_EQ(link->Channel().LastError, link->readFailure + "Wrong answer. No STX byte.");
        EXPECT_EQ(reply, TCmdBuffer{});
    });
}

TEST_P(RealTimeTest, AReplyThatIsThereIsNotWaitedFor) {
    TMilliseconds best{1000};
    for (int i = 0; i < 3; ++i) {
        link->Send({0x02, 0x41, 0x03});
        const TCost cost = Measure([&] { EXPECT_EQ(Read(TMilliseconds(1000)), kReadOk); });
        best = std::min(best, cost.passed);
    }
    EXPECT_LT(best, TMilliseconds(50));
}

const std::vector<TWaitingLinkKind> kLinks = {
    {"Tcp", MakeWaitingTcp},
    {"Udp", MakeWaitingUdp},
#ifndef _WIN32
    {"Serial", MakeWaitingSerial},
#endif
};
const auto kLinkName = [](const auto& kind) { return kind.param.name; };

INSTANTIATE_TEST_SUITE_P(Links, RealTimeTest, testing::ValuesIn(kLinks), kLinkName);

using RealTimeUdpTest = RealTimeTest;

TEST_P(RealTimeUdpTest, EmptyDatagramsDoNotKeepTheReadBeyondItsDeadlineNorBusy) {
    const TSteadySender sender([&] { link->Stream({}); });
    ExpectLasts(kTimeout, [&] { ExpectTimesOut(); });
    EXPECT_EQ(reply, TCmdBuffer{});
}

// The peer's computer reports the port as closed. The read must not take that for an answer, nor
// busily try again.
TEST_P(RealTimeUdpTest, AScalePortThatIsClosedIsWaitedForUntilTheDeadlineAndNotBusily) {
    link->Close();
    ExpectLasts(kTimeout, [&] {
        EXPECT_TRUE(link->Channel().SendData({0x04, 0x41, 0x03})) << link->Channel().LastError;
        ExpectTimesOut();
    });
    EXPECT_EQ(reply, TCmdBuffer{});
}

INSTANTIATE_TEST_SUITE_P(Links, RealTimeUdpTest,
                         testing::Values(TWaitingLinkKind{"Udp", MakeWaitingUdp}), kLinkName);

class RealTimeLossTest : public RealTimeTest {
public:
    // How long a read that has already taken the beginning of a frame goes on after the link is
    // lost.
    TMilliseconds NoticedAfter(const std::function<void()>& lose) {
        link->Send({0x02, 0x41});
        std::promise<void> reading;
        TTimePoint lost{};
        std::thread loser([&] {
            reading.get_future().wait_for(TMilliseconds(5000));
            lost = SystemClock().Now();
            lose();
        });
        // The read begins its third wait only after it has taken both bytes.
        link->clock.onLook = [&reading, looks = 0]() mutable {
            if (++looks == 4) reading.set_value();
        };
        code = Read(TMilliseconds(3000));
        const TTimePoint noticed = SystemClock().Now();
        link->clock.onLook = nullptr;
        loser.join();
        EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x41}));
        return std::chrono::duration_cast<TMilliseconds>(noticed - lost);
    }
    void ExpectNoticedAtOnce(void (TWaitingLink::*lose)(), std::int32_t expectedCode,
                             const std::string& message) {
        TMilliseconds best{3000};
        for (int i = 0; i < 5 && best > kTolerance; ++i) {
            Make();
            best = std::min(best, NoticedAfter([&] { (link.get()->*lose)(); }));
            EXPECT_EQ(code, expectedCode);
            EXPECT_EQ(link->Channel().LastError, link->readFailure + message);
        }
        EXPECT_LE(best, kTolerance);
    }

    std::int32_t code = 0;
};

using RealTimeTcpLossTest = RealTimeLossTest;

TEST_P(RealTimeTcpLossTest, APeerThatClosesInMidFrameIsNoticedWithinATenthOfASecond) {
    ExpectNoticedAtOnce(&TWaitingLink::Close, kReadNotConnected, "Socket is not connected.");
}

TEST_P(RealTimeTcpLossTest, APeerThatResetsInMidFrameIsNoticedWithinATenthOfASecond) {
    ExpectNoticedAtOnce(&TWaitingLink::Reset, kReadNotConnected, "Socket is not connected.");
}

INSTANTIATE_TEST_SUITE_P(Links, RealTimeTcpLossTest,
                         testing::Values(TWaitingLinkKind{"Tcp", MakeWaitingTcp}), kLinkName);

#ifndef _WIN32
using RealTimeSerialLossTest = RealTimeLossTest;

TEST_P(RealTimeSerialLossTest, APortThatVanishesInMidFrameIsNoticedWithinATenthOfASecond) {
    ExpectNoticedAtOnce(&TWaitingLink::Close, kReadOtherFailure, "Input/output error (5)");
}

INSTANTIATE_TEST_SUITE_P(Links, RealTimeSerialLossTest,
                         testing::Values(TWaitingLinkKind{"Serial", MakeWaitingSerial}), kLinkName);
#endif

// Shows that the tests here would notice a busy wait.
TEST(RealTimeCostTest, AThreadThatWorksIsSeenToWork) {
    const TTimePoint limit = SystemClock().Now() + TMilliseconds(10000);
    const TCost cost = Measure([&] {
        const TMilliseconds before = ThreadTime();
        while (ThreadTime() < before + kTolerance && SystemClock().Now() < limit) {
        }
    });
    EXPECT_GE(cost.worked, kTolerance);
}

class RealTimeConnectTest : public testing::Test {
public:
    void Aim(TDevCommTCP& client, const std::string& host, std::uint16_t port) {
        client.SetHost(host);
        client.SetPort(port);
        prefix = "[TCP] Fail open (" + host + ":" + std::to_string(port) + ") - ";
    }

    TDevCommTCP channel{SystemClock()};
    std::string prefix;
};

TEST_F(RealTimeConnectTest, ARefusedConnectionIsReportedAtOnce) {
    TTcpPeer peer;
    Aim(channel, "127.0.0.1", peer.Port());
    peer.StopListening();
    ExpectEndsAtOnce([&] { EXPECT_FALSE(channel.Open()); });
    EXPECT_EQ(channel.LastError, prefix + SystemErrorText(asio::error::connection_refused));
}

#ifdef __linux__
TEST_F(RealTimeConnectTest, AnUnreachableAddressIsReportedAtOnce) {
    Aim(channel, "255.255.255.255", 1001);
    ExpectEndsAtOnce([&] { EXPECT_FALSE(channel.Open()); });
    EXPECT_EQ(channel.LastError, prefix + "Network is unreachable (101)");
}

// The system completes the first connection to a listener that never accepts, and does not answer
// the next one.
TEST_F(RealTimeConnectTest, AConnectThatIsNeverAnsweredEndsAfter3000MsAndIsNotBusy) {
    TTcpPeer deaf(0);
    TDevCommTCP filler(SystemClock());
    Aim(filler, "127.0.0.1", deaf.Port());
    Aim(channel, "127.0.0.1", deaf.Port());
    ASSERT_TRUE(filler.Open()) << filler.LastError;
    ExpectLasts(TMilliseconds(3000), [&] { EXPECT_FALSE(channel.Open()); });
    EXPECT_EQ(channel.LastError, prefix + "Connect timed out.");
}
#endif

}  // namespace
}  // namespace tolvane::test
