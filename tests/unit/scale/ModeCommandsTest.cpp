#include "scale/DevElicomScaleUnit.h"
#include "tests/unit/scale/ScaleFixture.h"

namespace tolvane::test {
namespace {

TEST(TElicomScaleTest, ANewDriverHasItsDefaults) {
    TRecordingClock clock;
    const TElicomScale scale(std::make_unique<TScriptedChannel>(clock), false, clock);
    EXPECT_EQ(scale.LastError, "");
    EXPECT_EQ(scale.Address, 0);
    EXPECT_EQ(scale.Retries, 3);
    EXPECT_EQ(scale.ScaleType, 0);
}

TEST(TElicomScaleTest, ASerialDriverNamesItsPort) {
    TRecordingClock clock;
    const auto scale = TElicomScale::CreateRS232(12, 38400, clock);
    EXPECT_EQ(scale->Channel->GetDescription(), "RS232 (COM12)");
    EXPECT_FALSE(scale->Channel->IsConnected());
    EXPECT_EQ(scale->Retries, 3);
}

TEST(TElicomScaleTest, ATcpDriverNamesItsHostAndPort) {
    TRecordingClock clock;
    const auto scale = TElicomScale::CreateTCP("10.0.0.5", 100, clock);
    EXPECT_EQ(scale->Channel->GetDescription(), "TCP (10.0.0.5:100)");
    EXPECT_FALSE(scale->Channel->IsConnected());
}

TEST(TElicomScaleTest, AUdpDriverIsAlwaysOnPort1001) {
    TRecordingClock clock;
    const auto scale = TElicomScale::CreateUDP("10.0.0.7", clock);
    EXPECT_EQ(scale->Channel->GetDescription(), "UDP (10.0.0.7:1001)");
    EXPECT_FALSE(scale->Channel->IsConnected());
}

// How long a driver waits for its first answer, over a channel that never answers.
std::int32_t FirstReadTimeout(TElicomScale& scale, TClock& clock) {
    auto owned = std::make_unique<TScriptedChannel>(clock);
    const TScriptedChannel& silent = *owned;
    scale.Channel = std::move(owned);
    EXPECT_TRUE(scale.OpenChannel());
    std::int32_t errCode = 0;
    EXPECT_FALSE(scale.SetWeightMode(errCode));
    EXPECT_EQ(silent.reads.size(), 1U);
    return silent.reads.empty() ? -1 : silent.reads.front().timeoutMs;
}

TEST(TElicomScaleTest, ASerialDriverWaits1000MsForAnAnswerAndTheOthers3000) {
    TRecordingClock clock;
    EXPECT_EQ(FirstReadTimeout(*TElicomScale::CreateRS232(12, 38400, clock), clock), 1000);
    EXPECT_EQ(FirstReadTimeout(*TElicomScale::CreateTCP("10.0.0.5", 100, clock), clock), 3000);
    EXPECT_EQ(FirstReadTimeout(*TElicomScale::CreateUDP("10.0.0.7", clock), clock), 3000);
}

TEST(TElicomScaleTest, TheChannelIsFreedWithTheDriver) {
    TRecordingClock clock;
    bool freed = false;
    auto channel = std::make_unique<TScriptedChannel>(clock);
    channel->freed = &freed;
    {
        const TElicomScale scale(std::move(channel), false, clock);
        EXPECT_FALSE(freed);
    }
    EXPECT_TRUE(freed);
}

TEST(TElicomScaleTest, OpenChannel_ReportsWhyTheChannelDoesNotOpen) {
    TRecordingClock clock;
    auto channel = std::make_unique<TScriptedChannel>(clock);
    channel->openError = "[TCP] Fail open (10.0.0.5:1001) - no";
    TElicomScale scale(std::move(channel), false, clock);
    EXPECT_FALSE(scale.OpenChannel());
    EXPECT_EQ(scale.LastError,
              "Fail init communication interface: [TCP] Fail open (10.0.0.5:1001) - no");
}

using ModeCommandsTest = TScaleTest;

TEST_F(ModeCommandsTest, SetPrgModeAndSetWeightModeSendTheirFrames) {
    channel->script = {Answer(ReplyTo(0x36, {0})), Answer(ReplyTo(0x3C, {0}))};
    EXPECT_TRUE(scale->SetPrgMode(errCode));
    EXPECT_EQ(errCode, 0);
    EXPECT_TRUE(scale->SetWeightMode(errCode));
    EXPECT_EQ(errCode, 0);
    EXPECT_EQ(channel->sent, (std::vector<TCmdBuffer>{{0x04, 0x0D, 0x14, 0x4A, 0x4A, 0x03},
                                                      {0x04, 0x0D, 0x14, 0x50, 0x50, 0x03}}));
    EXPECT_EQ(scale->LastError, "");
}

TEST_F(ModeCommandsTest, AModeCommandThatGetsNoReplyLeavesErrCodeAt1000) {
    constexpr const char* kText =
        "Fail set Weight mode: [ReadResponce][SCRIPT] Fail read data (peer) - Read timeout "
        "occured";
    EXPECT_FALSE(scale->SetPrgMode(errCode));
    EXPECT_EQ(errCode, 1000);
    EXPECT_EQ(scale->LastError, kText);
    errCode = -1;
    EXPECT_FALSE(scale->SetWeightMode(errCode));
    EXPECT_EQ(errCode, 1000);
    EXPECT_EQ(scale->LastError, kText);
}

TEST_F(ModeCommandsTest, ARefusalGivesTheScalesErrorCode) {
    channel->script = {Answer(ReplyTo(0x36, {255})), Answer(ReplyTo(0x3C, {1, 2, 3}))};
    EXPECT_FALSE(scale->SetPrgMode(errCode));
    EXPECT_EQ(errCode, 255);
    EXPECT_EQ(scale->LastError, "Fail set Weight mode: Scale return Error code: 255");
    EXPECT_FALSE(scale->SetWeightMode(errCode));
    EXPECT_EQ(errCode, 1);
    EXPECT_EQ(scale->LastError, "Fail set Weight mode: Scale return Error code: 1");
}

TEST_F(ModeCommandsTest, AReplyWithoutAnErrorCodeFails) {
    channel->script = {Answer(ReplyTo(0x36, {}))};
    EXPECT_FALSE(scale->SetPrgMode(errCode));
    EXPECT_EQ(errCode, 1000);
    EXPECT_EQ(scale->LastError,
              "Fail set Weight mode: Unexpected answer from scale. No error code");
}

class GetVersionTest : public TScaleTest {
public:
    bool Get(const TCmdBuffer& replyData) {
        channel->script = {Answer(ReplyTo(0x48, replyData))};
        return scale->GetVersion(errCode, maxPlu, mode, version);
    }

    std::int32_t maxPlu = -1;
    std::int32_t mode = -1;
    std::string version = "old";
};

TEST_F(GetVersionTest, SendsTheVersionFrameAndReadsEveryField) {
    EXPECT_TRUE(Get({0, '1', '.', '0', '5', 9, 9, 9, 9, 0xB8, 0x0B, 9, 9, 9, 9, 9, 0x01}));
    EXPECT_EQ(channel->sent, (std::vector<TCmdBuffer>{{0x04, 0x0D, 0x14, 0x5C, 0x5C, 0x03}}));
    EXPECT_EQ(errCode, 0);
    EXPECT_EQ(version, "1.05");
    EXPECT_EQ(maxPlu, 3000);
    EXPECT_EQ(mode, 1);
}

TEST_F(GetVersionTest, AReplyWith11DataBytesYieldsMode0) {
    EXPECT_TRUE(Get({0, '2', '.', '1', '0', 0, 0, 0, 0, 0xE7, 0x03}));
    EXPECT_EQ(mode, 0);
    EXPECT_EQ(maxPlu, 999);
}

TEST_F(GetVersionTest, AReplyWith17BytesAndByte16Of06YieldsMode2) {
    EXPECT_TRUE(Get({0, '2', '.', '1', '0', 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0x06}));
    EXPECT_EQ(mode, 2);
}

TEST_F(GetVersionTest, AReplyWith16BytesHasNoMode) {
    EXPECT_TRUE(Get({0, '2', '.', '1', '0', 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0xFF}));
    EXPECT_EQ(mode, 0);
}

TEST_F(GetVersionTest, AReplyWithErrorCode3StillFillsTheFieldsAndFails) {
    EXPECT_FALSE(Get({3, '1', '.', '0', '5', 0, 0, 0, 0, 0xFF, 0xFF}));
    EXPECT_EQ(errCode, 3);
    EXPECT_EQ(version, "1.05");
    EXPECT_EQ(maxPlu, 65535);
    EXPECT_EQ(scale->LastError, "Fail get version: Scale return Error code: 3");
}

TEST_F(GetVersionTest, ZeroBytesOfTheVersionAreDroppedAndMissingBytesSkipped) {
    EXPECT_TRUE(Get({0, 'A', 0, 'B', 0, 0, 0, 0, 0, 7, 0}));
    EXPECT_EQ(version, "AB");
    EXPECT_TRUE(Get({0, 'X', 'Y'}));
    EXPECT_EQ(version, "XY");
    EXPECT_EQ(maxPlu, 0);
    EXPECT_TRUE(Get({0, '1', '2', '3', '4', 0, 0, 0, 0, 0xB8}));
    EXPECT_EQ(maxPlu, 184);
}

TEST_F(GetVersionTest, TheVersionKeepsTheScalesBytesAsTheyAre) {
    EXPECT_TRUE(Get({0, 0xC2, 0x82, 0xFF, '1', 0, 0, 0, 0, 7, 0}));
    EXPECT_EQ(version, "\xC2\x82\xFF\x31");
}

TEST_F(GetVersionTest, AFailedExchangeClearsTheFieldsAndKeepsItsText) {
    channel->script = {Answer(Wire({0x00, 0x48, 0x14, 0x5D}))};
    EXPECT_FALSE(scale->GetVersion(errCode, maxPlu, mode, version));
    EXPECT_EQ(errCode, 0);
    EXPECT_EQ(maxPlu, 0);
    EXPECT_EQ(mode, 0);
    EXPECT_EQ(version, "");
    EXPECT_EQ(scale->LastError,
              "Fail get version: Unexpected answer from scale. Invalid Checksum. Exp:5C Rec:5D)");
}

TEST_F(GetVersionTest, AReplyWithoutAnErrorCodeFails) {
    EXPECT_FALSE(Get({}));
    EXPECT_EQ(errCode, 0);
    EXPECT_EQ(scale->LastError, "Fail get version: Unexpected answer from scale. No error code");
}

}  // namespace
}  // namespace tolvane::test
