#include <gtest/gtest.h>

#include "comm/TDevCommUDP.h"
#include "system/SystemError.h"
#include "tests/integration/comm/Frames.h"
#include "tests/integration/comm/UdpPeer.h"
#include "tests/support/FreeUdpPort.h"

namespace tolvane::test {
namespace {

class UdpChannelTest : public testing::Test {
public:
    UdpChannelTest() {
        channel.SetHost("127.0.0.1");
        channel.SetPort(peer.Port());
        address = "(127.0.0.1:" + std::to_string(peer.Port()) + ")";
    }
    void SetUp() override { ASSERT_TRUE(channel.Open()) << channel.LastError; }
    void PeerSends(const TCmdBuffer& datagram) { peer.Send(datagram, localPort); }
    std::int32_t Read(std::uint8_t endByte = 0x03) {
        return channel.ReadAnswer(reply, 0x02, endByte, 3000);
    }
    // A datagram of this size that begins with a start byte and holds no end byte.
    static TCmdBuffer Datagram(std::size_t size) {
        TCmdBuffer datagram(size, 0x55);
        datagram[0] = 0x02;
        return datagram;
    }

    TUdpPeer peer;
    std::uint16_t localPort = FreeUdpPort();
    TRecordingClock clock;
    TDevCommUDP channel{clock, localPort};
    std::string address;
    TCmdBuffer reply;
};

TEST_F(UdpChannelTest, TheScalesPortAndTheChannelsOwnAre1001) {
    TDevCommUDP usual(clock);
    usual.SetHost("10.0.0.7");
    EXPECT_EQ(usual.GetDescription(), "UDP (10.0.0.7:1001)");
    EXPECT_EQ(kScaleUdpPort, 1001);
}

TEST_F(UdpChannelTest, Open_FailsWhileAnotherChannelHoldsTheLocalPort) {
    TDevCommUDP second(clock, localPort);
    second.SetHost("127.0.0.1");
    second.SetPort(7);
    EXPECT_FALSE(second.Open());
    EXPECT_FALSE(second.IsConnected());
    EXPECT_EQ(second.LastError,
              "[UDP] Fail open (127.0.0.1:7) - " + SystemErrorText(asio::error::address_in_use));
    channel.Close();
    second.SetPort(peer.Port());
    ASSERT_TRUE(second.Open()) << second.LastError;
    EXPECT_TRUE(second.SendData({0x04, 0x42, 0x03})) << second.LastError;
    EXPECT_EQ(peer.Receive(), (TCmdBuffer{0x04, 0x42, 0x03}));
    PeerSends(kFrame);
    EXPECT_EQ(second.ReadAnswer(reply, 0x02, 0x03, 3000), kReadOk) << second.LastError;
    EXPECT_EQ(reply, kFrame);
}

TEST_F(UdpChannelTest, ADestroyedChannelReleasesItsPort) {
    channel.Close();
    {
        TDevCommUDP shortLived(clock, localPort);
        ASSERT_TRUE(shortLived.Open());
    }
    EXPECT_TRUE(channel.Open()) << channel.LastError;
}

TEST_F(UdpChannelTest, SendData_IsOneDatagram) {
    EXPECT_TRUE(channel.SendData({0x04, 0x41, 0x03}));
    EXPECT_TRUE(channel.SendData({0x42}));
    EXPECT_EQ(peer.Receive(), (TCmdBuffer{0x04, 0x41, 0x03}));
    EXPECT_EQ(peer.Receive(), TCmdBuffer{0x42});
}

TEST_F(UdpChannelTest, SendData_ToAHostThatIsNoAddressFails) {
    channel.SetHost("scale.shop");
    channel.SetPort(1001);
    EXPECT_FALSE(channel.SendData({0x41}));
    EXPECT_EQ(channel.LastError,
              "[UDP] Fail send data (scale.shop:1001) - \"scale.shop\" is not "
              "an IP address.");
}

TEST_F(UdpChannelTest, SendData_OfMoreThanADatagramHoldsFailsWithTheSystemsWords) {
    EXPECT_FALSE(channel.SendData(TCmdBuffer(65508, 0x41)));
    EXPECT_EQ(channel.LastError, "[UDP] Fail send data " + address + " - " +
                                     SystemErrorText(asio::error::message_size));
}

TEST_F(UdpChannelTest, ReadAnswer_AStrayDatagramWithoutTheStartByteDoesNotHideTheReply) {
    PeerSends({0x55, 0x56, 0x57});
    PeerSends(kFrame);
    EXPECT_EQ(Read(), kReadOk) << channel.LastError;
    EXPECT_EQ(reply, kFrame);
}

TEST_F(UdpChannelTest, ReadAnswer_ADatagramWithTheEndBeforeAnyStartFailsWithCode1AtOnce) {
    PeerSends({0x55, 0x03, 0x02, 0x41, 0x03});
    EXPECT_EQ(Read(), kReadWrongAnswer);
    EXPECT_EQ(channel.LastError,
              "[UDP] Fail read data " + address + " - Wrong answer. No STX byte.");
    EXPECT_EQ(clock.Passed(), TMilliseconds(0));
}

TEST_F(UdpChannelTest, ReadAnswer_TheRestOfADatagramAfterTheEndIsDropped) {
    PeerSends({0x02, 0x41, 0x03, 0x02, 0x42, 0x03});
    PeerSends({0x02, 0x43, 0x03});
    EXPECT_EQ(Read(), kReadOk);
    EXPECT_EQ(reply, kFrame);
    EXPECT_EQ(Read(), kReadOk);
    EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x43, 0x03}));
}

TEST_F(UdpChannelTest, ReadAnswer_AFrameMaySpanSeveralDatagrams) {
    PeerSends({0x02, 0x41});
    PeerSends({0x42});
    PeerSends({0x43, 0x03});
    EXPECT_EQ(Read(), kReadOk) << channel.LastError;
    EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x41, 0x42, 0x43, 0x03}));
}

TEST_F(UdpChannelTest, ReadAnswer_AnEmptyDatagramIsNothing) {
    PeerSends({});
    PeerSends(kFrame);
    EXPECT_EQ(Read(), kReadOk) << channel.LastError;
    EXPECT_EQ(reply, kFrame);
}

TEST_F(UdpChannelTest, ReadAnswer_DatagramsAreCutTo100Bytes) {
    for (const std::size_t size : {1U, 99U, 100U, 101U, 1400U, 65507U}) {
        PeerSends(Datagram(size));
        PeerSends({0x03});
        EXPECT_EQ(Read(), kReadOk) << size << " " << channel.LastError;
        EXPECT_EQ(reply.size(), std::min<std::size_t>(size, 100) + 1) << size;
    }
}

TEST_F(UdpChannelTest, ReadAnswer_AnEndByteBeyondByte100IsCutOff) {
    TCmdBuffer inside = Datagram(100);
    inside[99] = 0x03;
    PeerSends(inside);
    EXPECT_EQ(Read(), kReadOk) << channel.LastError;
    EXPECT_EQ(reply, inside);
    TCmdBuffer outside = Datagram(101);
    outside[100] = 0x03;
    PeerSends(outside);
    clock.perLook = TMilliseconds(1000);
    EXPECT_EQ(Read(), kReadTimeout);
    EXPECT_EQ(reply, TCmdBuffer(outside.begin(), outside.end() - 1));
}

// A socket layer that returns the length of the whole datagram, not how much of it is in the
// buffer.
TEST_F(UdpChannelTest, ReadAnswer_AReportedLengthAbove100FailsWithCode1AtOnce) {
    channel.Close();
    std::size_t reported = 0;
    const auto receive = [&](std::uintptr_t socket, std::span<std::uint8_t> buffer,
                             std::error_code& error) {
        EXPECT_EQ(buffer.size(), 100U);
        ReceiveDatagram(socket, buffer, error);
        EXPECT_FALSE(error) << error.message();
        return TReceived{reported};
    };
    TDevCommUDP reader(clock, localPort, receive);
    reader.SetHost("127.0.0.1");
    reader.SetPort(peer.Port());
    ASSERT_TRUE(reader.Open()) << reader.LastError;
    TCmdBuffer frame = Datagram(100);
    frame[99] = 0x03;
    reported = 100;
    PeerSends(frame);
    EXPECT_EQ(reader.ReadAnswer(reply, 0x02, 0x03, 3000), kReadOk) << reader.LastError;
    EXPECT_EQ(reply, frame);
    reported = 101;
    PeerSends(frame);
    EXPECT_EQ(reader.ReadAnswer(reply, 0x02, 0x03, 3000), kReadWrongAnswer);
    EXPECT_EQ(reader.LastError, "[UDP] Fail read data " + address + " - Wrong answer. Too long.");
    EXPECT_EQ(reply, TCmdBuffer{});
    EXPECT_EQ(clock.Passed(), TMilliseconds(0));
}

TEST_F(UdpChannelTest, ReadAnswer_DatagramsFromAnySenderAreTaken) {
    TUdpPeer stranger;
    stranger.Send(kFrame, localPort);
    EXPECT_EQ(Read(), kReadOk) << channel.LastError;
    EXPECT_EQ(reply, kFrame);
}

// A socket may send to the broadcast address only if it has asked for that.
#ifdef __linux__
TEST_F(UdpChannelTest, SendData_ThatTheSystemRefusesFailsWithItsWordsAndTheChannelGoesOn) {
    channel.SetHost("127.255.255.255");
    EXPECT_FALSE(channel.SendData({0x41}));
    EXPECT_EQ(channel.LastError, "[UDP] Fail send data (127.255.255.255:" +
                                     std::to_string(peer.Port()) + ") - Permission denied (13)");
    channel.SetHost("127.0.0.1");
    EXPECT_TRUE(channel.SendData({0x41}));
    PeerSends(kFrame);
    EXPECT_EQ(Read(), kReadOk) << channel.LastError;
}
#endif

// The scale is switched off. Nothing tells the sender so, and the read lasts for its whole
// time-out.
TEST_F(UdpChannelTest, ReadAnswer_FromAScaleThatIsNotThereTimesOutAndTheChannelOpensAgain) {
    peer.Close();
    EXPECT_TRUE(channel.SendData({0x41}));
    clock.perLook = TMilliseconds(1000);
    EXPECT_EQ(Read(), kReadTimeout);
    EXPECT_EQ(channel.LastError, "[UDP] Fail read data " + address + " - Read timeout occured");
    clock.perLook = TMilliseconds(0);
    ASSERT_TRUE(channel.Open()) << channel.LastError;
    TUdpPeer other;
    other.Send(kFrame, localPort);
    EXPECT_EQ(Read(), kReadOk) << channel.LastError;
}

TEST_F(UdpChannelTest, ReadAnswer_TakesALateReplyOfAnotherScaleForTheAnswer) {
    TUdpPeer earlier;
    EXPECT_TRUE(channel.SendData({0x41}));
    earlier.Send({0x02, 0x4C, 0x03}, localPort);
    PeerSends(kFrame);
    EXPECT_EQ(Read(), kReadOk);
    EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x4C, 0x03}));
    EXPECT_TRUE(channel.SendData({0x41}));
    EXPECT_EQ(Read(), kReadOk);
    EXPECT_EQ(reply, kFrame);
}

TEST_F(UdpChannelTest, ReadAnswer_AnUnreachablePortDoesNotEndTheRead) {
    peer.Close();
    EXPECT_TRUE(channel.SendData({0x41}));
    EXPECT_TRUE(channel.SendData({0x42}));
    TUdpPeer other;
    other.Send(kFrame, localPort);
    EXPECT_EQ(Read(), kReadOk) << channel.LastError;
    EXPECT_EQ(reply, kFrame);
}

}  // namespace
}  // namespace tolvane::test
