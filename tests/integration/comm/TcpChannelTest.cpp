#include <gtest/gtest.h>

#include "comm/TDevCommTCP.h"
#include "system/SystemError.h"
#include "tests/integration/comm/Descriptors.h"
#include "tests/integration/comm/Frames.h"
#include "tests/integration/comm/TcpPeer.h"

namespace tolvane::test {
namespace {

class TcpChannelTest : public testing::Test {
public:
    TcpChannelTest() { Aim("127.0.0.1", peer.Port()); }

    void Aim(const std::string& host, std::int32_t port) {
        channel.SetHost(host);
        channel.SetPort(port);
        address = "(" + host + ":" + std::to_string(port) + ")";
    }
    void Connect() {
        ASSERT_TRUE(channel.Open()) << channel.LastError;
        peer.Accept();
    }
    // Runs `action` at the `look`-th time that the read looks at the clock.
    void AtLook(int look, std::function<void()> action) {
        clock.onLook = [this, look, action = std::move(action)] {
            if (++looks == look) action();
        };
    }
    std::int32_t Read(std::int32_t timeoutMs = 3000) {
        looks = 0;
        return channel.ReadAnswer(reply, 0x02, 0x03, timeoutMs);
    }
    std::string ReadFailure(const std::string& message) const {
        return "[TCP] Fail read data " + address + " - " + message;
    }
    void ExpectNotConnected() {
        EXPECT_EQ(Read(), kReadNotConnected);
        EXPECT_EQ(channel.LastError, ReadFailure("Socket is not connected."));
        EXPECT_FALSE(channel.IsConnected());
        EXPECT_FALSE(channel.SendData({0x41}));
        EXPECT_EQ(channel.LastError,
                  "[TCP] Fail send data " + address + " - Socket is not connected.");
    }
    // Opens a new connection and makes a whole exchange, in which nothing of the earlier connection
    // may turn up.
    void ExpectOpensAgain() {
        clock.onLook = nullptr;
        Connect();
        EXPECT_TRUE(channel.SendData({0x04, 0x42, 0x03})) << channel.LastError;
        EXPECT_EQ(peer.Receive(3), (TCmdBuffer{0x04, 0x42, 0x03}));
        peer.Send(kFrame);
        EXPECT_EQ(Read(), kReadOk) << channel.LastError;
        EXPECT_EQ(reply, kFrame);
    }
    void ExpectOpenFails(const std::string& message) {
        EXPECT_FALSE(channel.Open());
        EXPECT_FALSE(channel.IsConnected());
        EXPECT_EQ(channel.LastError, "[TCP] Fail open " + address + " - " + message);
    }

    TTcpPeer peer;
    TRecordingClock clock;
    TDevCommTCP channel{clock};
    std::string address;
    TCmdBuffer reply;
    int looks = 0;
};

TEST_F(TcpChannelTest, Open_ARefusedConnectionFailsWithTheSystemsWordsAndNumber) {
    peer.StopListening();
    ExpectOpenFails(SystemErrorText(asio::error::connection_refused));
#ifndef _WIN32
    EXPECT_TRUE(channel.LastError.ends_with("Connection refused (111)")) << channel.LastError;
#endif
}

#ifdef __linux__
// Nobody can connect to the broadcast address, whatever the routes are.
TEST_F(TcpChannelTest, Open_AnUnreachableAddressFailsAtOnceAndTheChannelOpensAgain) {
    Aim("255.255.255.255", 1001);
    ExpectOpenFails("Network is unreachable (101)");
    EXPECT_EQ(clock.Passed(), TMilliseconds(0));
    Aim("127.0.0.1", peer.Port());
    Connect();
    peer.Send(kFrame);
    EXPECT_EQ(Read(), kReadOk) << channel.LastError;
}

// The peer's computer has lost its power: nothing more comes from it.
TEST_F(TcpChannelTest, AHalfOpenConnectionToADeadPeerTimesOutAndOpensAgain) {
    Connect();
    EXPECT_TRUE(channel.SendData({0x04, 0x41, 0x03}));
    clock.perLook = TMilliseconds(1000);
    EXPECT_EQ(Read(), kReadTimeout);
    EXPECT_EQ(channel.LastError, ReadFailure("Read timeout occured"));
    EXPECT_TRUE(channel.IsConnected());
    clock.perLook = TMilliseconds(0);
    Connect();
    peer.Send(kFrame);
    EXPECT_EQ(Read(), kReadOk) << channel.LastError;
}

// A peer that was restarted answers the next request by a reset. Dropping a socket without a reset
// needs a right that not every user has; without it the peer stays dead.
TEST_F(TcpChannelTest, AHalfOpenConnectionToARestartedPeerIsFoundLostByTheNextExchange) {
    Connect();
    const bool restarted = peer.Vanish();
    EXPECT_TRUE(channel.IsConnected());
    EXPECT_TRUE(channel.SendData({0x04, 0x41, 0x03}));
    clock.perLook = TMilliseconds(1000);
    EXPECT_EQ(Read(), restarted ? kReadNotConnected : kReadTimeout);
    EXPECT_EQ(channel.LastError,
              ReadFailure(restarted ? "Socket is not connected." : "Read timeout occured"));
    clock.perLook = TMilliseconds(0);
    if (!restarted) peer.Reset();
    ExpectNotConnected();
    ExpectOpensAgain();
}
#endif

TEST_F(TcpChannelTest, Open_ARefusedConnectionOpensAgainWhenSomebodyListens) {
    const std::uint16_t port = peer.Port();
    peer.StopListening();
    ExpectOpenFails(SystemErrorText(asio::error::connection_refused));
    peer.ListenAgain(port);
    ExpectOpensAgain();
}

// An open looks at the clock to set its deadline, before it waits for the connection, and once more
// when it has it.
TEST_F(TcpChannelTest, Open_APeerThatHangsUpAtOnceFailsAsNotConnectedAndOpensAgain) {
    AtLook(3, [this] {
        peer.Accept();
        peer.Close();
    });
    ExpectOpenFails("Socket is not connected.");
    EXPECT_GE(looks, 3);
    EXPECT_EQ(clock.Passed(), TMilliseconds(0));
    ExpectOpensAgain();
}

TEST_F(TcpChannelTest, Open_AHostThatIsNoAddressFailsAtOnce) {
    for (const char* host : {"", "localhost", "scale.shop", "10.0.0", "10.0.0.256", "::1"}) {
        Aim(host, 1001);
        ExpectOpenFails(std::string("\"") + host + "\" is not an IP address.");
    }
    EXPECT_EQ(clock.Passed(), TMilliseconds(0));
}

TEST_F(TcpChannelTest, Open_AnAddressWithLeadingZerosIsDecimal) {
    Aim("127.000.000.001", peer.Port());
    Connect();
    EXPECT_EQ(channel.GetDescription(), "TCP " + address);
}

TEST_F(TcpChannelTest, Open_APortOutsideTheRangeFails) {
    for (const std::int32_t port : {0, -1, 65536, 2147483647}) {
        Aim("127.0.0.1", port);
        ExpectOpenFails(std::to_string(port) + " is not a port number.");
    }
}

TEST_F(TcpChannelTest, Open_FailingLeavesAnEarlierConnectionClosed) {
    Connect();
    Aim("nowhere", 1);
    ExpectOpenFails("\"nowhere\" is not an IP address.");
    EXPECT_EQ(peer.Receive(1), TCmdBuffer{});
}

#ifdef __linux__
TEST_F(TcpChannelTest, Open_AConnectThatIsNeverAnsweredFailsAfter3000Ms) {
    // The system completes the first connection to a listener that never accepts, and does not
    // answer the next one.
    TTcpPeer deaf(0);
    Aim("127.0.0.1", deaf.Port());
    TDevCommTCP filler(clock);
    filler.SetHost("127.0.0.1");
    filler.SetPort(deaf.Port());
    ASSERT_TRUE(filler.Open());
    clock.perLook = TMilliseconds(1000);
    const TMilliseconds before = clock.Passed();
    ExpectOpenFails("Connect timed out.");
    EXPECT_GE(clock.Passed() - before, TMilliseconds(3000));
    EXPECT_LE(clock.Passed() - before, TMilliseconds(4000));
    clock.perLook = TMilliseconds(0);
    Aim("127.0.0.1", peer.Port());
    Connect();
    peer.Send(kFrame);
    EXPECT_EQ(Read(), kReadOk) << channel.LastError;
}

TEST_F(TcpChannelTest, OpenAndClose_LeaveNoDescriptorBehind) {
    Connect();
    const std::ptrdiff_t before = OpenDescriptors();
    for (int i = 0; i < 200; ++i) {
        Connect();
        TDevCommTCP refused(clock);
        refused.SetHost("127.0.0.1");
        refused.SetPort(1);
        EXPECT_FALSE(refused.Open());
    }
    EXPECT_EQ(OpenDescriptors(), before);
}
#endif

TEST_F(TcpChannelTest, Close_EndsTheConnectionForThePeerToo) {
    Connect();
    channel.Close();
    EXPECT_FALSE(channel.IsConnected());
    EXPECT_EQ(peer.Receive(1), TCmdBuffer{});
}

TEST_F(TcpChannelTest, ADestroyedChannelEndsItsConnection) {
    auto shortLived = std::make_unique<TDevCommTCP>(clock);
    shortLived->SetHost("127.0.0.1");
    shortLived->SetPort(peer.Port());
    ASSERT_TRUE(shortLived->Open());
    peer.Accept();
    shortLived.reset();
    EXPECT_EQ(peer.Receive(1), TCmdBuffer{});
}

TEST_F(TcpChannelTest, APeerThatClosesBeforeTheReadYieldsCode3) {
    Connect();
    peer.Close();
    ExpectNotConnected();
}

TEST_F(TcpChannelTest, APeerThatClosesDuringTheReadYieldsCode3InTheNextWait) {
    Connect();
    clock.perLook = TMilliseconds(1);
    AtLook(3, [this] { peer.Close(); });
    EXPECT_EQ(Read(), kReadNotConnected);
    EXPECT_LE(looks, 5);
    EXPECT_EQ(channel.LastError, ReadFailure("Socket is not connected."));
    EXPECT_EQ(reply, TCmdBuffer{});
    clock.onLook = nullptr;
    ExpectNotConnected();
    ExpectOpensAgain();
}

TEST_F(TcpChannelTest, APeerThatClosesInMidFrameYieldsCode3AndThePartialReply) {
    Connect();
    AtLook(2, [this] {
        peer.Send({0x02, 0x41});
        peer.Close();
    });
    EXPECT_EQ(Read(), kReadNotConnected);
    EXPECT_EQ(channel.LastError, ReadFailure("Socket is not connected."));
    EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x41}));
    clock.onLook = nullptr;
    ExpectNotConnected();
    ExpectOpensAgain();
}

// The reset may overtake bytes that were sent before it, so what was received is left open.
TEST_F(TcpChannelTest, APeerThatResetsInMidFrameYieldsCode3) {
    Connect();
    AtLook(2, [this] {
        peer.Send({0x02, 0x41});
        peer.Reset();
    });
    EXPECT_EQ(Read(), kReadNotConnected);
    EXPECT_EQ(channel.LastError, ReadFailure("Socket is not connected."));
    clock.onLook = nullptr;
    ExpectNotConnected();
    ExpectOpensAgain();
}

TEST_F(TcpChannelTest, AnAnswerOfAPeerThatClosesAtOnceIsStillRead) {
    Connect();
    peer.Send(kFrame);
    peer.Close();
    EXPECT_TRUE(channel.IsConnected());
    EXPECT_EQ(Read(), kReadOk) << channel.LastError;
    EXPECT_EQ(reply, kFrame);
    ExpectNotConnected();
}

TEST_F(TcpChannelTest, ADroppedChannelCanBeOpenedAgain) {
    Connect();
    peer.Reset();
    ExpectNotConnected();
    ExpectOpensAgain();
}

TEST_F(TcpChannelTest, NoiseOfAnyLengthBeforeTheFrameIsDropped) {
    Connect();
    TCmdBuffer noise(100000, 0x55);
    noise.insert(noise.end(), kFrame.begin(), kFrame.end());
    peer.Send(noise);
    EXPECT_EQ(Read(), kReadOk) << channel.LastError;
    EXPECT_EQ(reply, kFrame);
}

TEST_F(TcpChannelTest, ALongAnswerIsReadWhole) {
    Connect();
    TCmdBuffer answer(100000, 0x55);
    answer.front() = 0x02;
    answer.back() = 0x03;
    peer.Send(answer);
    EXPECT_EQ(Read(), kReadOk) << channel.LastError;
    EXPECT_EQ(reply, answer);
}

TEST_F(TcpChannelTest, SendData_OfNothingSucceeds) {
    Connect();
    EXPECT_TRUE(channel.SendData({}));
    EXPECT_TRUE(channel.SendData({0x42}));
    EXPECT_EQ(peer.Receive(1), TCmdBuffer{0x42});
}

}  // namespace
}  // namespace tolvane::test
