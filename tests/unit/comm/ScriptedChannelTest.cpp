#include "tests/support/scales/ScriptedChannel.h"

#include <gtest/gtest.h>

#include "tests/support/RecordingClock.h"

namespace tolvane::test {
namespace {

class ScriptedChannelTest : public testing::Test {
public:
    ScriptedChannelTest() { channel.Open(); }

    TRecordingClock clock;
    TScriptedChannel channel{clock};
    TCmdBuffer reply;
};

TEST_F(ScriptedChannelTest, EachRequestTakesTheNextReply) {
    channel.script = {Answer({0x02, 0x41, 0x03}), Answer({0x02, 0x42, 0x03})};
    for (const std::uint8_t letter : TCmdBuffer{0x41, 0x42}) {
        EXPECT_TRUE(channel.SendData({letter}));
        EXPECT_EQ(channel.ReadAnswer(reply, 0x02, 0x03, 500), kReadOk);
        EXPECT_EQ(reply, (TCmdBuffer{0x02, letter, 0x03}));
    }
    EXPECT_EQ(channel.sent, (std::vector<TCmdBuffer>{{0x41}, {0x42}}));
    EXPECT_EQ(channel.reads.size(), 2U);
    EXPECT_EQ(channel.reads[0].timeoutMs, 500);
}

TEST_F(ScriptedChannelTest, WithoutAReplyThePeerIsSilentForTheWholeTime) {
    EXPECT_TRUE(channel.SendData({0x41}));
    EXPECT_EQ(channel.ReadAnswer(reply, 0x02, 0x03, 3000), kReadTimeout);
    EXPECT_EQ(channel.LastError, "[SCRIPT] Fail read data (peer) - Read timeout occured");
    EXPECT_EQ(clock.Passed(), TMilliseconds(3000));
}

TEST_F(ScriptedChannelTest, AVerbatimResultPassesTheReadingRule) {
    channel.script = {ReadResult(kReadOk, {0x02, 0x55}, ""), ReadResult(4, {0x01}, "broken")};
    channel.SendData({});
    EXPECT_EQ(channel.ReadAnswer(reply, 0x02, 0x03, 500), kReadOk);
    EXPECT_EQ(reply, (TCmdBuffer{0x02, 0x55}));
    channel.SendData({});
    EXPECT_EQ(channel.ReadAnswer(reply, 0x02, 0x03, 500), kReadOtherFailure);
    EXPECT_EQ(channel.LastError, "broken");
}

TEST_F(ScriptedChannelTest, ASendFailureKeepsTheRequestFromGoingOut) {
    channel.script = {SendFailure("no wire")};
    EXPECT_FALSE(channel.SendData({0x41}));
    EXPECT_EQ(channel.LastError, "no wire");
    EXPECT_TRUE(channel.sent.empty());
}

TEST_F(ScriptedChannelTest, ADroppedPeerIsNoticed) {
    channel.dropped = true;
    EXPECT_FALSE(channel.IsConnected());
    EXPECT_FALSE(channel.SendData({0x41}));
    EXPECT_EQ(channel.ReadAnswer(reply, 0x02, 0x03, 500), kReadNotConnected);
}

}  // namespace
}  // namespace tolvane::test
