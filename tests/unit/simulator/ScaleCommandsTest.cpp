#include <gtest/gtest.h>

#include "Bytes.h"
#include "simulator/ScaleCore.h"

namespace tolvane::simulator {
namespace {

// One segment in answer to one request, or nothing.
TBytes Ask(TScaleCore& scale, const std::string& request) {
    const TReplyPlan plan = scale.Answer(Bytes(request));
    EXPECT_LE(plan.steps.size(), 1U);
    return plan.steps.empty() ? TBytes() : plan.steps.front().bytes;
}

// An EVL scale in programming mode.
class ScaleCommandsTest : public testing::Test {
protected:
    ScaleCommandsTest() { EXPECT_EQ(Ask(scale_, kAskPrgMode), Bytes(kPrgMode)); }

    // NOLINTNEXTLINE: the fixture's members are its tests' own.
    TScaleCore scale_{TCoreOptions{}};
};

TEST_F(ScaleCommandsTest, ModeCommands_ChangeTheMode) {
    EXPECT_TRUE(scale_.State().programming);
    EXPECT_EQ(Ask(scale_, kAskWeightMode), Bytes(kWeightMode));
    EXPECT_FALSE(scale_.State().programming);
}

TEST_F(ScaleCommandsTest, GetVersion_ReportsVersionCapacityAndLabelMode) {
    EXPECT_EQ(Ask(scale_, kAskVersion), Bytes(kVersion));
}

TEST_F(ScaleCommandsTest, SetPrice_KeepsThePrice) {
    // article 300 at 1.50
    EXPECT_EQ(Ask(scale_, "04 0D 14 5D 14 40 15 64 15 14 DB 03"), Bytes("02 0D 14 5D 14 5D 03"));
    const TArticle article = scale_.State().articles.at(300);
    EXPECT_EQ(article.number, 300);
    EXPECT_EQ(article.price, 150);
    EXPECT_EQ(article.priceWrites, 1);
    EXPECT_FALSE(article.weight);
    EXPECT_FALSE(article.pieces);
    EXPECT_TRUE(article.texts.empty());
}

TEST_F(ScaleCommandsTest, SetPriceWeight_KeepsPriceAndWeightField) {
    // article 7 at 12.34, weight field 0.250
    EXPECT_EQ(Ask(scale_, "04 0D 14 5E 14 1B 14 48 26 14 64 16 14 FD 03"),
              Bytes("02 0D 14 5E 14 5E 03"));
    const TArticle article = scale_.State().articles.at(7);
    EXPECT_EQ(article.price, 1234);
    EXPECT_EQ(article.weight, 250);
}

TEST_F(ScaleCommandsTest, SetPriceC_KeepsPieceFlagTareAndLabel) {
    // article 3 at 9999.99, by the piece, tare 5, label 1
    EXPECT_EQ(Ask(scale_, "04 0D 14 5F 14 17 14 AD AD AD 15 19 15 34 03"),
              Bytes("02 0D 14 5F 14 5F 03"));
    const TArticle article = scale_.State().articles.at(3);
    EXPECT_EQ(article.price, 999999);
    EXPECT_EQ(article.pieces, true);
    EXPECT_EQ(article.tare, 5);
    EXPECT_EQ(article.label, 1);
}

TEST_F(ScaleCommandsTest, SetParam_KeepsTheTextAndCountsTheWrites) {
    // article 7, parameter 0, "Хляб" and 27 blanks in PC-866
    const std::string request =
        "04 0D 14 60 14 1B 14 14 33 A9 BF 0C EF A1" + Repeat(27, "20") + "A2 03";
    EXPECT_EQ(Ask(scale_, request), Bytes("02 0D 14 60 14 60 03"));
    EXPECT_EQ(Ask(scale_, request), Bytes("02 0D 14 60 14 60 03"));
    const TArticle article = scale_.State().articles.at(7);
    EXPECT_EQ(article.texts.at(0).bytes, Bytes("95 AB EF A1" + Repeat(27, "20")));
    EXPECT_EQ(article.texts.at(0).writes, 2);
    EXPECT_EQ(article.Text(0, TCodeTable::Pc866), "Хляб");
    EXPECT_FALSE(article.price);
}

TEST_F(ScaleCommandsTest, SetParam_TakesAFreeLengthForBestBeforeAndBarcode) {
    // article 7, parameter 4: 01 1E (30 days)
    EXPECT_EQ(Ask(scale_, "04 0D 14 60 14 1B 14 18 16 15 32 8C 03"), Bytes("02 0D 14 60 14 60 03"));
    EXPECT_EQ(scale_.State().articles.at(7).BestBefore(), 30);
    // article 7, parameter 5: "1" (00 4C 00 07 00 05 01 31 8A)
    EXPECT_EQ(Ask(scale_, "04 0D 14 60 14 1B 14 19 15 45 9E 03"), Bytes("02 0D 14 60 14 60 03"));
    EXPECT_EQ(scale_.State().articles.at(7).Text(5, TCodeTable::Pc866), "1");
}

TEST_F(ScaleCommandsTest, ADelete_LeavesAClearedArticle) {
    // article 7: price 0 (00 49 00 07 00 00 00 00 50), then 00 and 30 blanks as its name
    // (00 4C 00 07 00 00 1F 00 20.. 32: 4C+07+1F = 72, 30 blanks = 3C0)
    EXPECT_EQ(Ask(scale_, "04 0D 14 5D 14 1B 14 14 14 14 64 03"), Bytes("02 0D 14 5D 14 5D 03"));
    EXPECT_FALSE(scale_.State().articles.at(7).IsCleared());
    EXPECT_EQ(Ask(scale_, "04 0D 14 60 14 1B 14 14 33 14" + Repeat(30, "34") + "46 03"),
              Bytes("02 0D 14 60 14 60 03"));
    EXPECT_TRUE(scale_.State().articles.at(7).IsCleared());
}

struct TRefusalCase {
    const char* name;
    const char* request;
    const char* reply;
};

const TRefusalCase kRefusals[] = {
    {"UnknownCommand", "04 0D 14 64 64 03", "02 0D 14 64 15 65 03"},
    {"ModeCommandWithData", "04 0D 14 4A 15 4B 03", "02 0D 14 4A 16 4C 03"},
    {"PriceTooShort", "04 0D 14 5D 14 15 14 14 14 5E 03", "02 0D 14 5D 16 5F 03"},
    {"FirstByteNotZero", "04 0D 14 5D 15 15 14 14 14 14 5F 03", "02 0D 14 5D 16 5F 03"},
    {"NumberZero", "04 0D 14 5D 14 14 14 64 15 14 AE 03", "02 0D 14 5D 18 61 03"},
    // article 4001 (A1 0F) of 4000: 00 49 00 A1 0F 00 00 00 F9
    {"NumberAboveTheCapacity", "04 0D 14 5D 14 B5 23 14 14 14 0C F9 03", "02 0D 14 5D 18 61 03"},
    {"NotADecimalPrice", "04 0D 14 5D 14 15 14 6E 15 14 B9 03", "02 0D 14 5D 19 62 03"},
    // article 1, price 0, weight field A0 00 00: 00 4A 00 01 00 00 00 00 A0 00 00 EB
    {"NotADecimalWeight", "04 0D 14 5E 14 15 14 14 14 14 B4 14 14 FF 03", "02 0D 14 5E 19 63 03"},
    {"PieceFlagTwo", "04 0D 14 5F 14 15 14 14 14 14 16 14 14 62 03", "02 0D 14 5F 1A 65 03"},
    {"Tare100", "04 0D 14 5F 14 15 14 14 14 14 14 78 14 C4 03", "02 0D 14 5F 1A 65 03"},
    {"Label21", "04 0D 14 5F 14 15 14 14 14 14 14 14 29 75 03", "02 0D 14 5F 1A 65 03"},
    {"Parameter32", "04 0D 14 60 14 15 14 34 14 81 03", "02 0D 14 60 1B 67 03"},
    {"TextTooShort", "04 0D 14 60 14 15 14 14 16 55 56 E6 03", "02 0D 14 60 1C 68 03"},
    {"TextNotAsAnnounced", "04 0D 14 60 14 15 14 19 17 55 56 EC 03", "02 0D 14 60 1C 68 03"},
    // parameter 20 with 63 blanks (an EVL scale takes 31): 00 4C 00 01 00 14 3F 20.. 80
    {"LongTextToAnEvl", nullptr, "02 0D 14 60 1C 68 03"},
};

class RefusalTest : public ScaleCommandsTest, public testing::WithParamInterface<TRefusalCase> {};

TEST_P(RefusalTest, AWrongRequest_IsRefusedAndChangesNothing) {
    const std::string request = GetParam().request != nullptr
                                    ? GetParam().request
                                    : "04 0D 14 60 14 15 14 28 53" + Repeat(63, "34") + "94 03";
    EXPECT_EQ(Ask(scale_, request), Bytes(GetParam().reply));
    EXPECT_TRUE(scale_.State().articles.empty());
    EXPECT_TRUE(scale_.State().programming);
    EXPECT_EQ(scale_.State().requests.refused, 1);
}

INSTANTIATE_TEST_SUITE_P(All, RefusalTest, testing::ValuesIn(kRefusals),
                         [](const auto& entry) { return entry.param.name; });

TEST(ScaleTest, ArticleCommands_AreRefusedInWeighingMode) {
    TScaleCore scale{TCoreOptions{}};
    EXPECT_EQ(Ask(scale, "04 0D 14 5D 14 40 15 64 15 14 DB 03"), Bytes("02 0D 14 5D 17 60 03"));
    EXPECT_TRUE(scale.State().articles.empty());
}

TEST(ScaleTest, GetVersion_DiffersByModel) {
    TCoreOptions options;
    options.scale = DefaultProperties(TModel::Ets);
    TScaleCore scale(options);
    // "2.10", 9999 articles, label mode 2
    EXPECT_EQ(Ask(scale, kAskVersion),
              Bytes("02 0D 14 5C 14 46 42 45 44 14 14 14 14 23 3B 14 14 14 14 14 16 55 03"));
}

TEST(ScaleTest, GetVersion_CanBeCutToElevenBytes) {
    TCoreOptions options;
    options.versionReplyLength = 11;
    TScaleCore scale(options);
    EXPECT_EQ(Ask(scale, kAskVersion), Bytes("02 0D 14 5C 14 45 42 44 48 14 14 14 14 B4 23 CE 03"));
}

TEST(ScaleTest, TheLongTexts_Have63BytesOnAnEts) {
    TCoreOptions options;
    options.scale = DefaultProperties(TModel::Ets);
    TScaleCore scale(options);
    Ask(scale, kAskPrgMode);
    EXPECT_EQ(Ask(scale, "04 0D 14 60 14 15 14 28 53" + Repeat(63, "34") + "94 03"),
              Bytes("02 0D 14 60 14 60 03"));
    EXPECT_EQ(scale.State().articles.at(1).texts.at(20).bytes.size(), 63U);
}

TEST(ScaleTest, AnotherAddress_AnswersFromThere) {
    TCoreOptions options;
    options.scale.address = 5;
    TScaleCore scale(options);
    EXPECT_EQ(Ask(scale, "04 0D 19 4A 4F 03"), Bytes("02 0D 19 4A 14 4F 03"));
    EXPECT_EQ(Ask(scale, kAskPrgMode), TBytes());
    EXPECT_EQ(scale.State().requests.wrongAddress, 1);
}

TEST(ScaleTest, ABadFrame_IsMetWithSilence) {
    TScaleCore scale{TCoreOptions{}};
    EXPECT_EQ(Ask(scale, "04 0D 14 5C 5D 03"), TBytes());
    EXPECT_EQ(Ask(scale, "04 0D 19 5C 61 03"), TBytes());
    EXPECT_EQ(Ask(scale, "04 5C 5C 5C 03"), TBytes());
    const TRequestCounts counts = scale.State().requests;
    EXPECT_EQ(counts.total, 3);
    EXPECT_EQ(counts.badChecksum, 1);
    EXPECT_EQ(counts.wrongAddress, 1);
    EXPECT_EQ(counts.malformed, 1);
    EXPECT_TRUE(counts.byCommand.empty());
}

TEST(ScaleTest, ABadChecksumOrAddress_IsRefusedWhenTheScaleIsSetToThat) {
    TCoreOptions options;
    options.answersBadChecksum = true;
    options.answersWrongAddress = true;
    TScaleCore scale(options);
    EXPECT_EQ(Ask(scale, "04 0D 14 5C 5D 03"), Bytes("02 0D 14 5C 1D 65 03"));
    EXPECT_EQ(Ask(scale, "04 0D 19 5C 61 03"), Bytes("02 0D 14 5C 1E 66 03"));
}

TEST(ScaleTest, Requests_KeepsTheBytesAsTheyCame) {
    TScaleCore scale{TCoreOptions{}};
    Ask(scale, kAskVersion);
    Ask(scale, "04 0D 14 5C 5D 03");
    const std::vector<TRecordedRequest> requests = scale.Requests();
    ASSERT_EQ(requests.size(), 2U);
    EXPECT_EQ(requests[0].frame, Bytes(kAskVersion));
    EXPECT_EQ(requests[0].request.command, 0x48);
    EXPECT_EQ(requests[1].request.defect, TDefect::Checksum);
}

TEST(ScaleTest, OnWeighing_IsCalledOnceAfterProgramming) {
    std::vector<TScaleState> reported;
    TCoreOptions options;
    options.onWeighing = [&](const TScaleState& state) { reported.push_back(state); };
    TScaleCore scale(options);
    Ask(scale, kAskWeightMode);
    Ask(scale, kAskPrgMode);
    Ask(scale, "04 0D 14 5D 14 40 15 64 15 14 DB 03");
    EXPECT_TRUE(reported.empty());
    Ask(scale, kAskWeightMode);
    Ask(scale, kAskWeightMode);
    ASSERT_EQ(reported.size(), 1U);
    EXPECT_EQ(reported[0].articles.at(300).price, 150);
    EXPECT_FALSE(reported[0].programming);
}

}  // namespace
}  // namespace tolvane::simulator
