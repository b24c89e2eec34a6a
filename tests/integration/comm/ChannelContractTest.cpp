// What every channel promises, whatever its wire.
#include <gtest/gtest.h>

#include <deque>

#include "tests/integration/comm/ChannelLink.h"

namespace tolvane::test {
namespace {

struct TLinkKind {
    const char* name;
    std::unique_ptr<TChannelLink> (*make)();
};

class ChannelContractTest : public testing::TestWithParam<TLinkKind> {
public:
    void SetUp() override {
        link = GetParam().make();
        channel = &link->Channel();
        link->Connect();
        ASSERT_TRUE(channel->IsConnected()) << channel->LastError;
    }
    // Each piece arrives only after the read has looked at the clock again, so that no pass reads
    // two of them.
    void SendsDuringTheRead(std::deque<TCmdBuffer> pieces) {
        // The first look sets the deadline.
        link->clock.onLook = [this, left = std::move(pieces), looks = 0]() mutable {
            if (looks++ == 0 || left.empty()) return;
            link->PeerSends(left.front());
            left.pop_front();
        };
    }
    std::int32_t Read(std::uint8_t startByte = 0x02, std::uint8_t endByte = 0x03,
                      std::int32_t timeoutMs = 3000) {
        const std::int32_t code = channel->ReadAnswer(reply, startByte, endByte, timeoutMs);
        link->clock.onLook = nullptr;
        return code;
    }
    // Lets a silent read time out after a few looks at the clock.
    void HurryClock() { link->clock.perLook = TMilliseconds(1000); }

    std::unique_ptr<TChannelLink> link;
    TDevComm* channel = nullptr;
    TCmdBuffer reply;
};

const TCmdBuffer kWholeFrame = {0x02, 0x0D, 0x14, 0x5C, 0x14, 0x5C, 0x03};

TEST_P(ChannelContractTest, GetDescription_NamesTheTransportAndTheAddress) {
    EXPECT_EQ(channel->GetDescription(), link->description);
}

TEST_P(ChannelContractTest, SendData_DeliversEveryByteValue) {
    TCmdBuffer data;
    for (int byte = 0; byte < 256; ++byte)
        data.push_back(static_cast<std::uint8_t>(byte));
    EXPECT_TRUE(channel->SendData(data));
    EXPECT_EQ(link->PeerReceives(256), data);
}

TEST_P(ChannelContractTest, ReadAnswer_ReturnsAFrameThatIsThereAlready) {
    channel->LastError = "untouched";
    link->PeerSends(kWholeFrame);
    EXPECT_EQ(Read(), kReadOk);
    EXPECT_EQ(reply, kWholeFrame);
    EXPECT_EQ(channel->LastError, "untouched");
}

TEST_P(ChannelContractTest, ReadAnswer_EmptiesTheReplyFirst) {
    reply = {0x41, 0x42};
    link->PeerSends(kWholeFrame);
    EXPECT_EQ(Read(), kReadOk);
    EXPECT_EQ(reply, kWholeFrame);
}

TEST_P(ChannelContractTest, ReadAnswer_AssemblesAFrameSplitAtEveryPosition) {
    for (std::size_t split = 1; split < kWholeFrame.size(); ++split) {
        const auto middle = kWholeFrame.begin() + static_cast<std::ptrdiff_t>(split);
        SendsDuringTheRead({{kWholeFrame.begin(), middle}, {middle, kWholeFrame.end()}});
        EXPECT_EQ(Read(), kReadOk) << split << " " << channel->LastError;
        EXPECT_EQ(reply, kWholeFrame) << split;
    }
}

TEST_P(ChannelContractTest, ReadAnswer_AssemblesAFrameSentByteByByte) {
    std::deque<TCmdBuffer> pieces;
    for (const std::uint8_t byte : kWholeFrame)
        pieces.push_back({byte});
    SendsDuringTheRead(pieces);
    EXPECT_EQ(Read(), kReadOk) << channel->LastError;
    EXPECT_EQ(reply, kWholeFrame);
}

TEST_P(ChannelContractTest, ReadAnswer_OfTwoFramesInOnePieceReturnsTheFirst) {
    link->PeerSends({0x02, 0x41, 0x03, 0x02, 0x42, 0x03});
    EXPECT_EQ(Read(), kReadOk);
    EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x41, 0x03}));
}

TEST_P(ChannelContractTest, ReadAnswer_AfterTheNextRequestTheSecondFrameIsGone) {
    link->PeerSends({0x02, 0x41, 0x03, 0x02, 0x42, 0x03});
    EXPECT_EQ(Read(), kReadOk);
    EXPECT_TRUE(channel->SendData({0x04}));
    link->PeerSends({0x02, 0x43, 0x03});
    EXPECT_EQ(Read(), kReadOk);
    EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x43, 0x03}));
}

TEST_P(ChannelContractTest, ReadAnswer_WithoutARequestOnlyASerialLineStillHasTheSecondFrame) {
    link->PeerSends({0x02, 0x41, 0x03, 0x02, 0x42, 0x03});
    EXPECT_EQ(Read(), kReadOk);
    if (link->keepsBytesAfterTheEnd) {
        EXPECT_EQ(Read(), kReadOk);
        EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x42, 0x03}));
    } else {
        HurryClock();
        EXPECT_EQ(Read(), kReadTimeout);
        EXPECT_TRUE(reply.empty());
    }
}

TEST_P(ChannelContractTest, ReadAnswer_DropsNoiseBeforeTheStartByte) {
    SendsDuringTheRead({{0xFF}, {0x00, 0x04, 0x55, 0x02, 0x41}, {0x03}});
    EXPECT_EQ(Read(), kReadOk) << channel->LastError;
    EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x41, 0x03}));
}

TEST_P(ChannelContractTest, ReadAnswer_NoiseAfterAFrameNeverReachesTheNextReply) {
    link->PeerSends({0x02, 0x41, 0x03, 0x55, 0x03, 0x02});
    EXPECT_EQ(Read(), kReadOk) << channel->LastError;
    EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x41, 0x03}));
    EXPECT_TRUE(channel->SendData({0x04}));
    link->PeerSends({0x02, 0x42, 0x03});
    EXPECT_EQ(Read(), kReadOk) << channel->LastError;
    EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x42, 0x03}));
}

// A late reply to the same command looks like the right one. This is what each wire does with it.
TEST_P(ChannelContractTest, ALateReply_BeforeTheNextRequestOnlyASerialLineThrowsAway) {
    HurryClock();
    EXPECT_EQ(Read(), kReadTimeout);
    link->clock.perLook = TMilliseconds(0);
    link->PeerSends({0x02, 0x4C, 0x03});
    EXPECT_TRUE(channel->SendData({0x04}));
    SendsDuringTheRead({{0x02, 0x52, 0x03}});
    EXPECT_EQ(Read(), kReadOk) << channel->LastError;
    const std::uint8_t taken = link->purgesBeforeARequest ? 0x52 : 0x4C;
    EXPECT_EQ(reply, (TCmdBuffer{0x02, taken, 0x03}));
}

TEST_P(ChannelContractTest, ALateReply_AfterTheNextRequestIsTakenForItsAnswer) {
    HurryClock();
    EXPECT_EQ(Read(), kReadTimeout);
    link->clock.perLook = TMilliseconds(0);
    EXPECT_TRUE(channel->SendData({0x04}));
    link->PeerSends({0x02, 0x4C, 0x03});
    EXPECT_EQ(Read(), kReadOk) << channel->LastError;
    EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x4C, 0x03}));
}

// The second reply arrives after the read has ended, and answers no request.
TEST_P(ChannelContractTest, ALateReply_ThatComesTwiceShiftsTheNextReplyExceptOnASerialLine) {
    EXPECT_TRUE(channel->SendData({0x04}));
    link->PeerSends({0x02, 0x4C, 0x03});
    EXPECT_EQ(Read(), kReadOk) << channel->LastError;
    link->PeerSends({0x02, 0x4C, 0x03});
    EXPECT_TRUE(channel->SendData({0x04}));
    SendsDuringTheRead({{0x02, 0x52, 0x03}});
    EXPECT_EQ(Read(), kReadOk) << channel->LastError;
    const std::uint8_t taken = link->purgesBeforeARequest ? 0x52 : 0x4C;
    EXPECT_EQ(reply, (TCmdBuffer{0x02, taken, 0x03}));
}

TEST_P(ChannelContractTest, ALateReply_IsForgottenWhenTheChannelIsOpenedAgain) {
    HurryClock();
    EXPECT_EQ(Read(), kReadTimeout);
    link->clock.perLook = TMilliseconds(0);
    link->PeerSends({0x02, 0x4C, 0x03});
    link->Connect();
    ASSERT_TRUE(channel->IsConnected()) << channel->LastError;
    SendsDuringTheRead({{0x02, 0x52, 0x03}});
    EXPECT_EQ(Read(), kReadOk) << channel->LastError;
    EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x52, 0x03}));
}

TEST_P(ChannelContractTest, ReadAnswer_AnEndByteBeforeAnyStartByteFailsAtOnceWithCode1) {
    link->PeerSends({0x55, 0x03});
    EXPECT_EQ(Read(), kReadWrongAnswer);
    EXPECT_EQ(channel->LastError, link->readFailure + "Wrong answer. No STX byte.");
    EXPECT_EQ(link->clock.Passed(), TMilliseconds(0));
}

TEST_P(ChannelContractTest, ReadAnswer_AfterAWrongAnswerOnlyASerialLineStillHasTheRest) {
    link->PeerSends({0x55, 0x03, 0x02, 0x41, 0x03});
    EXPECT_EQ(Read(), kReadWrongAnswer);
    if (link->keepsBytesAfterTheEnd) {
        EXPECT_EQ(Read(), kReadOk);
        EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x41, 0x03}));
    } else {
        HurryClock();
        EXPECT_EQ(Read(), kReadTimeout);
    }
}

TEST_P(ChannelContractTest, ReadAnswer_WithoutAnEndByteCollectsUntilTheDeadline) {
    link->clock.perLook = TMilliseconds(100);
    SendsDuringTheRead({{0x02, 0x41, 0x03}, {0x03}});
    const TMilliseconds before = link->clock.Passed();
    EXPECT_EQ(Read(0x02, 0, 1000), kReadOk) << channel->LastError;
    EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x41, 0x03, 0x03}));
    EXPECT_GE(link->clock.Passed() - before, TMilliseconds(1000));
}

TEST_P(ChannelContractTest, ReadAnswer_WithoutAnEndByteAndWithNothingReceivedTimesOut) {
    HurryClock();
    EXPECT_EQ(Read(0x02, 0), kReadTimeout);
    EXPECT_EQ(channel->LastError, link->readFailure + link->timeoutText);
}

TEST_P(ChannelContractTest, ReadAnswer_WithoutAStartByteKeepsEveryByteFromTheFirst) {
    link->PeerSends({0x55, 0x41, 0x03});
    EXPECT_EQ(Read(0, 0x03), kReadOk);
    EXPECT_EQ(reply, (TCmdBuffer{0x55, 0x41, 0x03}));
}

TEST_P(ChannelContractTest, ReadAnswer_WithNothingReceivedLastsTheWholeTime) {
    HurryClock();
    const TMilliseconds before = link->clock.Passed();
    EXPECT_EQ(Read(), kReadTimeout);
    EXPECT_GE(link->clock.Passed() - before, TMilliseconds(3000));
    EXPECT_EQ(channel->LastError, link->readFailure + link->timeoutText);
    EXPECT_TRUE(reply.empty());
}

TEST_P(ChannelContractTest, ReadAnswer_LeavesThePartialReplyAfterATimeout) {
    HurryClock();
    SendsDuringTheRead({{0x02, 0x41}});
    EXPECT_EQ(Read(), kReadTimeout);
    EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x41}));
}

TEST_P(ChannelContractTest, ReadAnswer_GoesOnAfterATimeout) {
    HurryClock();
    EXPECT_EQ(Read(), kReadTimeout);
    link->clock.perLook = TMilliseconds(0);
    link->PeerSends(kWholeFrame);
    EXPECT_EQ(Read(), kReadOk) << channel->LastError;
    EXPECT_EQ(reply, kWholeFrame);
}

TEST_P(ChannelContractTest, ReadAnswer_OnAClosedChannelReturns3WithoutWaiting) {
    channel->Close();
    const TMilliseconds before = link->clock.Passed();
    EXPECT_EQ(Read(), kReadNotConnected);
    EXPECT_EQ(channel->LastError, link->readFailure + link->notConnectedText);
    EXPECT_EQ(link->clock.Passed(), before);
}

TEST_P(ChannelContractTest, SendData_OnAClosedChannelFails) {
    channel->Close();
    EXPECT_FALSE(channel->SendData({0x41}));
    EXPECT_EQ(channel->LastError, link->sendFailure + link->notConnectedText);
}

TEST_P(ChannelContractTest, LastError_OutlivesASuccessfulOpenSendDataAndReadAnswer) {
    channel->Close();
    EXPECT_FALSE(channel->SendData({0x41}));
    const std::string failure = link->sendFailure + link->notConnectedText;
    EXPECT_EQ(channel->LastError, failure);
    link->Connect();
    ASSERT_TRUE(channel->IsConnected());
    EXPECT_EQ(channel->LastError, failure);
    EXPECT_TRUE(channel->SendData({0x41}));
    EXPECT_EQ(channel->LastError, failure);
    link->PeerSends(kWholeFrame);
    EXPECT_EQ(Read(), kReadOk);
    EXPECT_EQ(channel->LastError, failure);
}

TEST_P(ChannelContractTest, Close_CanBeRepeated) {
    channel->Close();
    EXPECT_FALSE(channel->IsConnected());
    channel->Close();
    EXPECT_FALSE(channel->IsConnected());
}

TEST_P(ChannelContractTest, Open_ClosesFirstAndTheChannelWorksAgain) {
    for (int i = 0; i < 3; ++i) {
        link->Connect();
        EXPECT_TRUE(channel->IsConnected()) << channel->LastError;
        EXPECT_TRUE(channel->SendData({0x41}));
        EXPECT_EQ(link->PeerReceives(1), TCmdBuffer{0x41});
        link->PeerSends(kWholeFrame);
        EXPECT_EQ(Read(), kReadOk);
    }
    channel->Close();
    link->Connect();
    EXPECT_TRUE(channel->IsConnected()) << channel->LastError;
}

TEST_P(ChannelContractTest, ManyExchangesFollowEachOther) {
    for (int i = 0; i < 500; ++i) {
        const auto byte = static_cast<std::uint8_t>(0x20 + i % 200);
        ASSERT_TRUE(channel->SendData({0x04, byte, 0x03}));
        ASSERT_EQ(link->PeerReceives(3), (TCmdBuffer{0x04, byte, 0x03}));
        link->PeerSends({0x02, byte, 0x03});
        ASSERT_EQ(Read(), kReadOk) << channel->LastError;
        ASSERT_EQ(reply, (TCmdBuffer{0x02, byte, 0x03}));
    }
}

INSTANTIATE_TEST_SUITE_P(Channels, ChannelContractTest,
                         testing::Values(TLinkKind{"Tcp", MakeTcpLink},
                                         TLinkKind{"Udp", MakeUdpLink},
#ifndef _WIN32
                                         TLinkKind{"Serial", MakeSerialLink},
#endif
                                         TLinkKind{"Scripted", MakeScriptedLink}),
                         [](const auto& kind) { return kind.param.name; });

}  // namespace
}  // namespace tolvane::test
