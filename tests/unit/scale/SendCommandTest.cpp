#include "scale/DevElicomScaleUnit.h"
#include "tests/unit/scale/ScaleFixture.h"

namespace tolvane::test {
namespace {

constexpr std::uint8_t kVersion = 0x48;
const TCmdBuffer kRequest = {0x04, 0x0D, 0x14, 0x5C, 0x5C, 0x03};
const TCmdBuffer kGoodReply = {0x02, 0x0D, 0x14, 0x5C, 0x14, 0x5C, 0x03};
const TCmdBuffer kEndBeforeStart = {0x55, 0x03};
constexpr const char* kWrongAnswer =
    "[ReadResponce][SCRIPT] Fail read data (peer) - Wrong answer. No STX byte.";

std::vector<TMilliseconds> Pauses(std::initializer_list<int> milliseconds) {
    std::vector<TMilliseconds> pauses;
    for (const int pause : milliseconds)
        pauses.emplace_back(pause);
    return pauses;
}

class SendCommandTest : public TScaleTest {
public:
    void WrongAnswers(std::size_t count) { channel->script.assign(count, Answer(kEndBeforeStart)); }
    bool Send() { return scale->SendCommand(kVersion, data); }

    TCmdBuffer data;
};

TEST_F(SendCommandTest, SendsOneFrameAndReturnsTheReplysData) {
    channel->script = {Answer(kGoodReply)};
    scale->LastError = "untouched";
    EXPECT_TRUE(Send());
    EXPECT_EQ(data, TCmdBuffer{0x00});
    EXPECT_EQ(channel->sent, std::vector<TCmdBuffer>{kRequest});
    EXPECT_EQ(scale->LastError, "untouched");
    EXPECT_TRUE(clock.pauses.empty());
}

TEST_F(SendCommandTest, AReplyWithoutDataEmptiesTheData) {
    data = {0x41};
    channel->script = {Answer({0x02, 0x0D, 0x14, 0x5C, 0x5C, 0x03})};
    EXPECT_TRUE(Send());
    EXPECT_TRUE(data.empty());
}

TEST_F(SendCommandTest, SendsTheAddressAndExpectsItBack) {
    scale->Address = 0x05;
    channel->script = {Answer(Wire({0x05, 0x48, 0x00, 0x4D}))};
    EXPECT_TRUE(Send());
    // 00 05 48 4D in the offset state
    EXPECT_EQ(channel->sent[0], (TCmdBuffer{0x04, 0x0D, 0x19, 0x5C, 0x61, 0x03}));
}

TEST_F(SendCommandTest, ANetworkScaleHas3000MsForItsReplyAndASerialOne1000Ms) {
    channel->script = {Answer(kGoodReply)};
    Send();
    ASSERT_EQ(channel->reads.size(), 1U);
    EXPECT_EQ(channel->reads[0].timeoutMs, 3000);
    EXPECT_EQ(channel->reads[0].startByte, 0x02);
    EXPECT_EQ(channel->reads[0].endByte, 0x03);
    MakeDriver(true);
    channel->script = {Answer(kGoodReply)};
    Send();
    EXPECT_EQ(channel->reads.at(0).timeoutMs, 1000);
}

TEST_F(SendCommandTest, RepeatsAWrongAnswerUpToRetries) {
    WrongAnswers(10);
    EXPECT_FALSE(Send());
    EXPECT_EQ(channel->sent, std::vector<TCmdBuffer>(4, kRequest));
    EXPECT_EQ(scale->LastError, kWrongAnswer);
    EXPECT_EQ(clock.pauses, Pauses({10, 100}));
}

TEST_F(SendCommandTest, WaitsNothing10And100AndThen200MsBeforeEachRepeat) {
    scale->Retries = 10;
    WrongAnswers(20);
    EXPECT_FALSE(Send());
    EXPECT_EQ(channel->sent.size(), 11U);
    EXPECT_EQ(clock.pauses, Pauses({10, 100, 200, 200, 200, 200, 200, 200, 200}));
}

TEST_F(SendCommandTest, TheFirstRepeatFollowsWithoutAWait) {
    channel->script = {Answer(kEndBeforeStart), Answer(kGoodReply)};
    EXPECT_TRUE(Send());
    EXPECT_EQ(data, TCmdBuffer{0x00});
    EXPECT_EQ(channel->sent.size(), 2U);
    EXPECT_TRUE(clock.pauses.empty());
}

TEST_F(SendCommandTest, TheLastAllowedRepeatStillCounts) {
    WrongAnswers(3);
    channel->script.push_back(Answer(kGoodReply));
    EXPECT_TRUE(Send());
    EXPECT_EQ(channel->sent.size(), 4U);
    EXPECT_EQ(clock.pauses, Pauses({10, 100}));
}

TEST_F(SendCommandTest, WithoutRetriesAWrongAnswerIsFinal) {
    scale->Retries = 0;
    WrongAnswers(5);
    EXPECT_FALSE(Send());
    EXPECT_EQ(channel->sent.size(), 1U);
    EXPECT_EQ(scale->LastError, kWrongAnswer);
}

TEST_F(SendCommandTest, TheLargestRetriesEndToo) {
    scale->Retries = 255;
    WrongAnswers(300);
    EXPECT_FALSE(Send());
    EXPECT_EQ(channel->sent.size(), 256U);
    EXPECT_EQ(clock.pauses.size(), 254U);
}

TEST_F(SendCommandTest, ATimeoutOnTheFirstAttemptFailsAtOnceAndIsNotRepeated) {
    EXPECT_FALSE(Send());
    EXPECT_EQ(channel->sent.size(), 1U);
    EXPECT_EQ(scale->LastError,
              "[ReadResponce][SCRIPT] Fail read data (peer) - Read timeout occured");
}

TEST_F(SendCommandTest, ATimeoutAfterAWrongAnswerIsNotRepeatedEither) {
    WrongAnswers(1);
    EXPECT_FALSE(Send());
    EXPECT_EQ(channel->sent.size(), 2U);
    EXPECT_EQ(scale->LastError,
              "[ReadResponce][SCRIPT] Fail read data (peer) - Read timeout occured");
}

TEST_F(SendCommandTest, ALostLinkAndAnyOtherFailureAreNotRepeated) {
    for (const std::int32_t code : {kReadNotConnected, kReadOtherFailure, 99}) {
        channel->sent.clear();
        channel->script = {ReadResult(code, {0x02}, "the channel's words")};
        EXPECT_FALSE(Send()) << code;
        EXPECT_EQ(channel->sent.size(), 1U) << code;
        EXPECT_EQ(scale->LastError, "[ReadResponce]the channel's words") << code;
    }
}

TEST_F(SendCommandTest, AFailedSendIsReportedWithTheChannelsWords) {
    channel->script = {SendFailure("no wire")};
    data = {0x41};
    EXPECT_FALSE(Send());
    EXPECT_EQ(scale->LastError, "[SendData]no wire");
    EXPECT_TRUE(channel->reads.empty());
    EXPECT_TRUE(data.empty());
}

TEST_F(SendCommandTest, AFailedSendOfARepeatIsReported) {
    channel->script = {Answer(kEndBeforeStart), SendFailure("no wire")};
    EXPECT_FALSE(Send());
    EXPECT_EQ(scale->LastError, "[SendData]no wire");
}

TEST_F(SendCommandTest, AnInvalidReplyIsNotRepeated) {
    channel->script = {Answer(Wire({0x05, 0x48, 0x00, 0x4D})), Answer(kGoodReply)};
    EXPECT_FALSE(Send());
    EXPECT_EQ(channel->sent.size(), 1U);
    EXPECT_EQ(scale->LastError,
              "Unexpected answer from scale. Scale address does not match.Exp:00 Rec:05)");
}

TEST_F(SendCommandTest, EachInvalidReplyGivesItsText) {
    const std::vector<std::pair<TCmdBuffer, std::string>> replies = {
        {{0x02, 0x0D, 0x03}, "Answer is too short."},
        {{}, "Answer is too short."},
        {{0x07, 0x0D, 0x14, 0x5C, 0x5C, 0x03}, "Error STX byte (Exp:02 Rec:07)"},
        {{0x02, 0x0D, 0x14, 0x5C, 0x14, 0x5C, 0x55}, "Error ETX byte (Exp:02 Rec:55)"},
        {{0x02, 0x0D, 0x14, 0x5C, 0x03}, "Answer is too short."},
        {Wire({0x00, 0x36, 0x00, 0x36}), "Command does not match.Exp:48 Rec:36)"},
        {Wire({0x00, 0x48, 0x00, 0x47}), "Invalid Checksum. Exp:48 Rec:47)"},
    };
    for (const auto& [reply, text] : replies) {
        channel->script = {ReadResult(kReadOk, reply, "")};
        EXPECT_FALSE(Send());
        EXPECT_EQ(scale->LastError, "Unexpected answer from scale. " + text);
        data.clear();
    }
}

TEST_F(SendCommandTest, NoiseBeforeTheReplyDoesNoHarm) {
    channel->script = {{{{0xFF, 0x04}, {}, {0x02, 0x0D, 0x14, 0x5C}, {0x14, 0x5C, 0x03}}, {}, {}}};
    EXPECT_TRUE(Send());
    EXPECT_EQ(data, TCmdBuffer{0x00});
}

}  // namespace
}  // namespace tolvane::test
