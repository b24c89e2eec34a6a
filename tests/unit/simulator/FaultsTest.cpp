#include "simulator/Faults.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "Bytes.h"
#include "simulator/Commands.h"
#include "simulator/ScaleCore.h"

namespace tolvane::simulator {
namespace {

using std::chrono::milliseconds;

TCoreOptions Options(TFaultScript script) {
    TCoreOptions options;
    options.faults = std::move(script);
    return options;
}

TScaleCore Scale(TFaultScript script) {
    return TScaleCore(Options(std::move(script)));
}

// All bytes of the plan, whatever its pauses.
TBytes Sent(const TReplyPlan& plan) {
    TBytes bytes;
    for (const TSendStep& step : plan.steps)
        bytes.insert(bytes.end(), step.bytes.begin(), step.bytes.end());
    return bytes;
}

struct TReplyFaultCase {
    const char* name;
    const char* fault;
    std::string reply;  // to SetPrgMode, in one segment
};

const TReplyFaultCase kReplyFaults[] = {
    {"Error", "error,code=7", "02 0D 14 4A 1B 51 03"},
    {"Empty", "empty", "02 0D 14 4A 4A 03"},
    {"WrongAddress", "wrong-address", "02 0D 15 4A 14 4B 03"},
    {"WrongCommand", "wrong-command", "02 0D 14 4B 14 4B 03"},
    {"BadChecksum", "bad-checksum", "02 0D 14 4A 14 4B 03"},
    {"NoStx", "no-stx", "0D 14 4A 14 4A 03"},
    {"BadEtx", "bad-etx", "02 0D 14 4A 14 4A 55"},
    {"BadEtxOfChoice", "bad-etx,bytes=7F", "02 0D 14 4A 14 4A 7F"},
    {"Truncated", "truncated", "02 0D 14 4A 14"},
    {"TruncatedByOne", "truncated,count=1", "02 0D 14 4A 14 4A"},
    {"TruncatedByAll", "truncated,count=100", ""},
    {"Raw", "raw,bytes=020D03", "02 0D 03"},
    {"EtxFirst", "etx-first", "03 02 0D 14 4A 14 4A 03"},
    {"NoiseBefore", "noise-before", "55 AA 55 02 0D 14 4A 14 4A 03"},
    {"NoiseBeforeOfChoice", "noise-before,bytes=00FF,count=2", "00 FF 00 FF 02 0D 14 4A 14 4A 03"},
    {"NoiseAfter", "noise-after,bytes=AA", "02 0D 14 4A 14 4A 03 AA"},
    {"Double", "double", "02 0D 14 4A 14 4A 03 02 0D 14 4A 14 4A 03"},
};

class ReplyFaultTest : public testing::TestWithParam<TReplyFaultCase> {};

TEST_P(ReplyFaultTest, AReplyFault_ChangesJustTheseBytes) {
    TScaleCore scale = Scale({.faults = {FaultFromText(GetParam().fault)}});
    const TReplyPlan plan = scale.Answer(Bytes(kAskPrgMode));
    ASSERT_EQ(plan.steps.size(), 1U);
    EXPECT_EQ(plan.steps[0].bytes, Bytes(GetParam().reply));
    EXPECT_EQ(plan.steps[0].delay, milliseconds(0));
    EXPECT_EQ(plan.ending, TEnding::Keep);
    EXPECT_FALSE(plan.detached);
    // Only a refusal keeps the scale from obeying.
    EXPECT_EQ(scale.State().programming, std::string(GetParam().name) != "Error");
}

INSTANTIATE_TEST_SUITE_P(All, ReplyFaultTest, testing::ValuesIn(kReplyFaults),
                         [](const auto& entry) { return entry.param.name; });

TEST(FaultsTest, ErrorForTheVersion_StillReportsTheVersion) {
    TScaleCore scale = Scale({.faults = {{.kind = TFaultKind::Error, .code = 3}}});
    EXPECT_EQ(Sent(scale.Answer(Bytes(kAskVersion))),
              Bytes("02 0D 14 5C 17 45 42 44 48 14 14 14 14 B4 23 14 14 14 14 14 16 D3 03"));
}

TEST(FaultsTest, Slow_DelaysTheReply) {
    TScaleCore scale = Scale({.faults = {{.kind = TFaultKind::Slow, .ms = milliseconds(700)}}});
    const TReplyPlan plan = scale.Answer(Bytes(kAskPrgMode));
    ASSERT_EQ(plan.steps.size(), 1U);
    EXPECT_EQ(plan.steps[0].delay, milliseconds(700));
    EXPECT_FALSE(plan.detached);
}

TEST(FaultsTest, Late_RepliesSoManyTimesBesideLaterRequests) {
    TScaleCore scale =
        Scale({.faults = {{.kind = TFaultKind::Late, .ms = milliseconds(1500), .times = 2}}});
    const TReplyPlan plan = scale.Answer(Bytes(kAskPrgMode));
    ASSERT_EQ(plan.steps.size(), 2U);
    EXPECT_TRUE(plan.detached);
    EXPECT_EQ(plan.steps[0].delay, milliseconds(1500));
    EXPECT_EQ(plan.steps[1].delay, milliseconds(0));
    EXPECT_EQ(plan.steps[0].bytes, Bytes(kPrgMode));
    EXPECT_EQ(plan.steps[1].bytes, Bytes(kPrgMode));
}

TEST(FaultsTest, Held_RepliesJustBeforeTheNextReply) {
    TScaleCore scale = Scale({.faults = {{.kind = TFaultKind::Held, .request = 1}}});
    EXPECT_TRUE(scale.Answer(Bytes(kAskPrgMode)).steps.empty());
    const TReplyPlan plan = scale.Answer(Bytes(kAskWeightMode));
    ASSERT_EQ(plan.steps.size(), 2U);
    EXPECT_EQ(plan.steps[0].bytes, Bytes(kPrgMode));
    EXPECT_EQ(plan.steps[1].bytes, Bytes(kWeightMode));
}

TEST(FaultsTest, Split_SendsByteByByte) {
    TScaleCore scale = Scale({.faults = {{.kind = TFaultKind::Split, .ms = milliseconds(5)}}});
    const TReplyPlan plan = scale.Answer(Bytes(kAskPrgMode));
    ASSERT_EQ(plan.steps.size(), 7U);
    EXPECT_EQ(plan.steps[0].delay, milliseconds(0));
    EXPECT_EQ(plan.steps[0].bytes, Bytes("02"));
    EXPECT_EQ(plan.steps[6].delay, milliseconds(5));
    EXPECT_EQ(Sent(plan), Bytes(kPrgMode));
}

TEST(FaultsTest, SplitAt_SendsTwoParts) {
    TScaleCore scale = Scale({.faults = {{.kind = TFaultKind::SplitAt, .count = 3}}});
    const TReplyPlan plan = scale.Answer(Bytes(kAskPrgMode));
    ASSERT_EQ(plan.steps.size(), 2U);
    EXPECT_EQ(plan.steps[0].bytes, Bytes("02 0D 14"));
    EXPECT_EQ(plan.steps[1].bytes, Bytes("4A 14 4A 03"));
    EXPECT_EQ(plan.steps[1].delay, milliseconds(20));
}

TEST(FaultsTest, Stray_IsSentFirstFromElsewhere) {
    TScaleCore scale = Scale({.faults = {{.kind = TFaultKind::Stray, .bytes = Bytes("AA")}}});
    const TReplyPlan plan = scale.Answer(Bytes(kAskPrgMode));
    ASSERT_EQ(plan.steps.size(), 2U);
    EXPECT_TRUE(plan.steps[0].stray);
    EXPECT_EQ(plan.steps[0].bytes, Bytes("AA"));
    EXPECT_FALSE(plan.steps[1].stray);
}

struct TEndingCase {
    TFaultKind kind;
    TEnding ending;
    const char* reply;
};

class EndingFaultTest : public testing::TestWithParam<TEndingCase> {};

TEST_P(EndingFaultTest, AnEndingFault_ObeysAndEndsTheConnection) {
    TScaleCore scale = Scale({.faults = {{.kind = GetParam().kind}}});
    const TReplyPlan plan = scale.Answer(Bytes(kAskPrgMode));
    EXPECT_EQ(plan.ending, GetParam().ending);
    EXPECT_EQ(Sent(plan), Bytes(GetParam().reply));
    EXPECT_TRUE(scale.State().programming);
}

INSTANTIATE_TEST_SUITE_P(
    All, EndingFaultTest,
    testing::Values(TEndingCase{TFaultKind::Disconnect, TEnding::Close, "02 0D 14 4A 14 4A 03"},
                    TEndingCase{TFaultKind::Drop, TEnding::Close, ""},
                    TEndingCase{TFaultKind::Cut, TEnding::Close, "02 0D 14"},
                    TEndingCase{TFaultKind::HalfClose, TEnding::HalfClose, "02 0D 14 4A 14 4A 03"},
                    TEndingCase{TFaultKind::Reset, TEnding::Reset, ""}),
    [](const auto& entry) {
        std::string name(FaultName(entry.param.kind));
        std::erase(name, '-');
        return name;
    });

TEST(FaultsTest, NoReply_NeitherAnswersNorObeysThisRequest) {
    TScaleCore scale = Scale({.faults = {{.kind = TFaultKind::NoReply, .request = 1}}});
    EXPECT_TRUE(scale.Answer(Bytes(kAskPrgMode)).steps.empty());
    EXPECT_FALSE(scale.State().programming);
    EXPECT_EQ(Sent(scale.Answer(Bytes(kAskPrgMode))), Bytes(kPrgMode));
}

TEST(FaultsTest, SilentWithoutATime_IsSilentUntilTheFaultsAreSetAgain) {
    TScaleCore scale = Scale({.faults = {{.kind = TFaultKind::Silent, .request = 2}}});
    EXPECT_EQ(Sent(scale.Answer(Bytes(kAskVersion))), Bytes(kVersion));
    for (int i = 0; i < 10; ++i)
        EXPECT_TRUE(scale.Answer(Bytes(kAskPrgMode)).steps.empty());
    EXPECT_FALSE(scale.State().programming);
    EXPECT_EQ(scale.State().requests.ignored, 9);
    scale.SetFaults({});
    EXPECT_EQ(Sent(scale.Answer(Bytes(kAskPrgMode))), Bytes(kPrgMode));
}

// "for the 3rd request answer with a bad checksum, then fall silent for 4 s, then answer late and
// twice"
TEST(FaultsTest, AScript_DoesOneFaultAfterTheOther) {
    std::chrono::steady_clock::time_point now{};
    const auto script = nlohmann::json::parse(R"([
        {"request": 3, "fault": "bad-checksum"},
        {"request": 4, "fault": "silent", "ms": 4000},
        {"request": 5, "fault": "late", "ms": 1500, "times": 2}])");
    TScaleCore scale(Options(FaultsFromJson(script)), [&] { return now; });
    for (int i = 1; i <= 2; ++i)
        EXPECT_EQ(Sent(scale.Answer(Bytes(kAskPrgMode))), Bytes(kPrgMode));
    EXPECT_EQ(Sent(scale.Answer(Bytes(kAskPrgMode))), Bytes("02 0D 14 4A 14 4B 03"));
    EXPECT_TRUE(scale.Answer(Bytes(kAskPrgMode)).steps.empty());
    now += milliseconds(3999);
    EXPECT_TRUE(scale.Answer(Bytes(kAskPrgMode)).steps.empty());
    now += milliseconds(1);
    // Requests that came during the silence are not counted.
    const TReplyPlan late = scale.Answer(Bytes(kAskPrgMode));
    EXPECT_TRUE(late.detached);
    EXPECT_EQ(late.steps.size(), 2U);
    EXPECT_EQ(Sent(scale.Answer(Bytes(kAskPrgMode))), Bytes(kPrgMode));
}

TEST(FaultsTest, ACommandFilter_CountsTheRequestsOfThatCommand) {
    TScaleCore scale = Scale({.faults = {FaultFromText("error,command=SetPrgMode,from=2,to=3")}});
    const std::vector<std::string> expected = {kPrgMode, "02 0D 14 4A 15 4B 03",
                                               "02 0D 14 4A 15 4B 03", kPrgMode};
    for (const std::string& reply : expected) {
        EXPECT_EQ(Sent(scale.Answer(Bytes(kAskWeightMode))), Bytes(kWeightMode));
        EXPECT_EQ(Sent(scale.Answer(Bytes(kAskPrgMode))), Bytes(reply));
    }
}

TEST(FaultsTest, SeveralFaults_MeetInOneReply) {
    TScaleCore scale =
        Scale({.faults = {FaultFromText("bad-checksum"), FaultFromText("noise-before,bytes=AA"),
                          FaultFromText("disconnect")}});
    const TReplyPlan plan = scale.Answer(Bytes(kAskPrgMode));
    EXPECT_EQ(Sent(plan), Bytes("AA 02 0D 14 4A 14 4B 03"));
    EXPECT_EQ(plan.ending, TEnding::Close);
}

std::vector<bool> Damaged(std::uint32_t seed) {
    TScaleCore scale =
        Scale({.faults = {{.kind = TFaultKind::BadChecksum, .percent = 5}}, .seed = seed});
    std::vector<bool> damaged(10'000);
    for (auto&& entry : damaged)
        entry = Sent(scale.Answer(Bytes(kAskPrgMode))) != Bytes(kPrgMode);
    return damaged;
}

TEST(FaultsTest, ByChance_HitsAboutThatShareAndRepeatsWithTheSeed) {
    const std::vector<bool> damaged = Damaged(7);
    const auto count = std::count(damaged.begin(), damaged.end(), true);
    EXPECT_GT(count, 400);
    EXPECT_LT(count, 600);
    EXPECT_EQ(Damaged(7), damaged);
    EXPECT_NE(Damaged(8), damaged);
}

TEST(FaultsTest, FaultsFromJson_ReadsEveryKey) {
    const TFaultScript script = FaultsFromJson(nlohmann::json::parse(R"({"seed": 9, "faults": [
        {"fault": "noise-after", "from": 2, "to": 8, "command": "0x4C", "percent": 12.5,
         "code": 4, "ms": 30, "count": 6, "times": 3, "bytes": "0A 0b"}]})"));
    EXPECT_EQ(script.seed, 9U);
    ASSERT_EQ(script.faults.size(), 1U);
    const TFault& fault = script.faults[0];
    EXPECT_EQ(fault.kind, TFaultKind::NoiseAfter);
    EXPECT_EQ(fault.from, 2);
    EXPECT_EQ(fault.to, 8);
    EXPECT_EQ(fault.command, kSetParam);
    EXPECT_EQ(fault.percent, 12.5);
    EXPECT_EQ(fault.code, 4);
    EXPECT_EQ(fault.ms, milliseconds(30));
    EXPECT_EQ(fault.count, 6);
    EXPECT_EQ(fault.times, 3);
    EXPECT_EQ(fault.bytes, Bytes("0A 0B"));
}

std::string WhyNot(const std::string& json) {
    try {
        FaultsFromJson(nlohmann::json::parse(json));
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "accepted";
}

TEST(FaultsTest, FaultsFromJson_SaysWhatIsWrong) {
    EXPECT_EQ(WhyNot(R"({"seed": 1})"), "bad fault: the script has no \"faults\"");
    EXPECT_EQ(WhyNot(R"(7)"), "bad fault: the script is not a list");
    EXPECT_EQ(WhyNot(R"([{"request": 1}])"), "bad fault: no \"fault\" in {\"request\":1}");
    EXPECT_EQ(WhyNot(R"([{"fault": "lazy"}])"), "bad fault: unknown kind \"lazy\"");
    EXPECT_EQ(WhyNot(R"([{"fault": "slow", "mss": 1}])"), "bad fault: unknown key \"mss\"");
    EXPECT_EQ(WhyNot(R"([{"fault": "error", "code": 256}])"),
              "bad fault: \"code\" must be 0 to 255");
    EXPECT_EQ(WhyNot(R"([{"fault": "error", "request": 0}])"),
              "bad fault: \"request\" must be 1 to 1000000000");
    EXPECT_EQ(WhyNot(R"([{"fault": "error", "command": "Fly"}])"),
              "bad fault: unknown command \"Fly\"");
    EXPECT_EQ(WhyNot(R"([{"fault": "raw", "bytes": "0"}])"),
              "bad fault: \"bytes\" must be pairs of hexadecimal digits");
    EXPECT_EQ(WhyNot(R"([{"fault": "slow", "percent": 101}])"),
              "bad fault: \"percent\" must be 0 to 100");
    EXPECT_EQ(WhyNot(R"([{"fault": "slow", "request": 1, "to": 3}])"),
              "bad fault: \"request\" excludes \"from\" and \"to\"");
}

TEST(FaultsTest, EveryKind_HasItsOwnName) {
    for (int i = 0; i <= static_cast<int>(TFaultKind::Reset); ++i) {
        const auto kind = static_cast<TFaultKind>(i);
        EXPECT_EQ(FaultFromText(FaultName(kind)).kind, kind);
    }
}

}  // namespace
}  // namespace tolvane::simulator
