#include "simulator/RequestLog.h"

#include <gtest/gtest.h>

#include "Bytes.h"

namespace tolvane::simulator {
namespace {

using std::chrono::milliseconds;

TReplyPlan Reply(const std::string& hex) {
    TReplyPlan plan;
    plan.steps.push_back({milliseconds(0), Bytes(hex)});
    return plan;
}

TRequestLine Describe(const std::string& request, const TReplyPlan& plan) {
    return DescribeExchange(Bytes(request), plan, TCodeTable::Windows);
}

TEST(RequestLogTest, APrice_IsTold) {
    const TRequestLine line =
        Describe("04 0D 14 5E 14 40 15 48 26 14 14 14 14 D1 03", Reply("02 0D 14 5E 14 5E 03"));
    EXPECT_EQ(line.command, "SetPriceWeight");
    EXPECT_EQ(line.subject, "article 300, 12.34");
    EXPECT_EQ(line.reply, "done");
    EXPECT_EQ(line.bytes, "04 0D 14 5E 14 40 15 48 26 14 14 14 14 D1 03");
    EXPECT_EQ(line.replyBytes, "02 0D 14 5E 14 5E 03");
}

// Price 0.05: body 00 49 00 2C 01 05 00 00, checksum 7B.
TEST(RequestLogTest, ASmallPrice_KeepsItsZero) {
    EXPECT_EQ(Describe("04 0D 14 5D 14 40 15 19 14 14 8F 03", {}).subject, "article 300, 0.05");
}

TEST(RequestLogTest, AText_IsTold) {
    const TRequestLine line =
        Describe("04 0D 14 60 14 40 15 19 19 46 46 44 45 46 8E 03", Reply("02 0D 14 60 1B 67 03"));
    EXPECT_EQ(line.command, "SetParam");
    EXPECT_EQ(line.subject, "article 300, text 5: 22012");
    EXPECT_EQ(line.reply, "refused: 7");
}

TEST(RequestLogTest, TheDays_AreBytes) {
    EXPECT_EQ(Describe("04 0D 14 60 14 40 15 18 16 15 32 B2 03", {}).subject,
              "article 300, text 4: 01 1E");
}

TEST(RequestLogTest, AnotherCommand_IsItsCode) {
    EXPECT_EQ(Describe("04 0D 14 64 64 03", {}).command, "0x50");
    EXPECT_EQ(Describe("04 0D 14 5C 5C 03", {}).command, "GetVersion");
    EXPECT_EQ(Describe("04 0D 14 5C 5C 03", {}).subject, "");
}

TEST(RequestLogTest, ABadFrame_SaysWhy) {
    EXPECT_EQ(Describe("04 0D 14 5C 5D 03", {}).command, "wrong checksum");
    EXPECT_EQ(Describe("04 0D 14 03", {}).command, "too short");
    EXPECT_EQ(Describe("04 48 03", {}).command, "wrong stuffing");
}

TEST(RequestLogTest, AReply_SaysWhatAFaultDid) {
    const std::string request = "04 0D 14 5C 5C 03";
    EXPECT_EQ(Describe(request, {}).reply, "none");
    EXPECT_EQ(Describe(request, Reply("")).reply, "empty");
    EXPECT_EQ(Describe(request, Reply("02 0D 14 5C 5C 03")).reply, "without data");
    EXPECT_EQ(Describe(request, Reply("02 0D 14 5C 14 5D 03")).reply, "wrong checksum");
    EXPECT_EQ(Describe(request, Reply("0D 14 5C 14 5C 03")).reply, "wrong frame");
    TReplyPlan late = Reply("02 0D 14 5C 14 5C 03");
    late.steps.front().delay = milliseconds(1500);
    late.ending = TEnding::Close;
    EXPECT_EQ(Describe(request, late).reply, "done, after 1500 ms, closed");
    EXPECT_EQ(Describe(request, {.ending = TEnding::Reset}).reply, "none, reset");
}

TEST(RequestLogTest, TheLatestHundred_AreKeptNewestFirst) {
    std::chrono::steady_clock::time_point now{};
    TRequestLog log(TCodeTable::Windows, [&now] { return now; });
    for (int i = 0; i < 103; ++i) {
        now += milliseconds(10);
        log.Add(Bytes("04 0D 14 5C 5C 03"), {});
    }
    const std::vector<TRequestLine> lines = log.Lines();
    ASSERT_EQ(lines.size(), 100U);
    EXPECT_EQ(lines.front().number, 103);
    EXPECT_EQ(lines.front().at, milliseconds(1030));
    EXPECT_EQ(lines.back().number, 4);
}

}  // namespace
}  // namespace tolvane::simulator
