#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "SessionFixture.h"
#include "config/TypesUnit.h"
#include "tests/support/scales/TestScales.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

using test::Param;
using test::TEvents;

// Article 12 with every text; price 12.34, 5 days, sold by weight.
const std::string kTomatoes = "12|22012|1|0|0|12.34|0|5| Tomatoes |Pink|c1|c2|c3|L-7|0|0|101|";
const std::string kPieces = "7|22007|2|0|0|2.50|0|0|Eggs|Fresh|||||1|0|55|";

class ProcessUploadTest : public test::TSessionTest {
protected:
    static TScaleRec Rec(std::int32_t scaleType) {
        TScaleRec rec = NetworkScale(7, "A");
        rec.ScaleType = scaleType;
        rec.Encoding = 0;
        return rec;
    }
    bool Upload(const TScaleRec& rec, const std::vector<std::string>& lines) {
        EXPECT_TRUE(session_.InitComm(rec));
        events_.clear();
        scale_->requests.clear();
        return session_.ProcessUpload(lines, rec);
    }
    // The requests that write articles, of a pass that succeeds.
    TEvents Written(const TScaleRec& rec, const std::vector<std::string>& lines) {
        EXPECT_TRUE(Upload(rec, lines)) << session_.LastError;
        return test::Filtered(events_, {"49", "4A", "4B", "4C"});
    }
    TEvents Logged() const { return test::Filtered(events_, {"log:"}); }
    TEvents Sent() const { return test::Filtered(events_, {"3", "4"}); }
};

// What every scale gets of the tomatoes: price with a zero weight field, then texts 0, 4, 5.
TEvents TomatoesStart() {
    return {"4A 00 0C 00 34 12 00 00 00 00", Param(12, 0, "Tomatoes", 31),
            "4C 00 0C 00 04 02 01 05", "4C 00 0C 00 05 05 32 32 30 31 32"};
}

TEvents With(TEvents events, const TEvents& more) {
    events.insert(events.end(), more.begin(), more.end());
    return events;
}

const TEvents kTexts1To3 = {Param(12, 1, "Pink", 31), Param(12, 2, "c1", 31),
                            Param(12, 3, "c2", 31)};
const TEvents kTexts6And7 = {Param(12, 6, "c3", 31), Param(12, 7, "L-7", 31)};
const TEvents kCodes = {Param(12, 14, "12", 31), Param(12, 15, "101", 31)};

TEST_F(ProcessUploadTest, WithoutADriverNothingIsSentOrLogged) {
    EXPECT_FALSE(session_.ProcessUpload({kTomatoes}, Rec(kScaleTypeEvl)));
    EXPECT_EQ(events_, TEvents{});
    EXPECT_EQ(session_.LastError, "");
}

TEST_F(ProcessUploadTest, APassIsBracketedByModesAndPauses) {
    ASSERT_TRUE(Upload(Rec(kScaleTypeEvl), {kPieces}));
    EXPECT_EQ(events_, (TEvents{"3C",
                                "wait 500",
                                "36",
                                "wait 800",
                                "48",
                                "log:   Везна EVL - Ver: 1.23; Max.PLU: 3000; Mode: 0",
                                "progress:Запис артикул: 7 Eggs (брой)",
                                "4A 00 07 00 50 02 00 00 00 00",
                                Param(7, 0, "Eggs", 31),
                                "wait 30",
                                "4C 00 07 00 04 02 01 00",
                                "wait 30",
                                "4C 00 07 00 05 05 32 32 30 30 37",
                                "wait 30",
                                Param(7, 1, "Fresh", 31),
                                "wait 30",
                                Param(7, 2, "", 31),
                                "wait 30",
                                Param(7, 3, "", 31),
                                "wait 30",
                                "wait 500",
                                "3C",
                                "log:   Брой записани артикули: 1"}));
}

TEST_F(ProcessUploadTest, AnEvlScaleInMode0GetsOrders1To6) {
    EXPECT_EQ(Written(Rec(kScaleTypeEvl), {kTomatoes}), With(TomatoesStart(), kTexts1To3));
}

TEST_F(ProcessUploadTest, AnEvlScaleInMode1Or3GetsOrders1To3Only) {
    for (const int mode : {1, 3}) {
        scale_->mode = mode;
        EXPECT_EQ(Written(Rec(kScaleTypeEvl), {kTomatoes}), TomatoesStart());
    }
}

TEST_F(ProcessUploadTest, AnEvlScaleInMode2GetsOrders1To8) {
    scale_->mode = 2;
    EXPECT_EQ(Written(Rec(kScaleTypeEvl), {kTomatoes}),
              With(With(TomatoesStart(), kTexts1To3), kTexts6And7));
}

TEST_F(ProcessUploadTest, AnEtsScaleGetsOrders1To10InEveryMode) {
    for (int mode = 0; mode < 4; ++mode) {
        scale_->mode = mode;
        EXPECT_EQ(Written(Rec(kScaleTypeEts), {kTomatoes}),
                  With(With(With(TomatoesStart(), kTexts1To3), kTexts6And7), kCodes))
            << mode;
    }
}

TEST_F(ProcessUploadTest, AnS300ScaleReportingMode0GetsOnlyNameBestBeforeBarcodeAndPrice) {
    EXPECT_EQ(Written(Rec(kScaleTypeS300), {kTomatoes}), TomatoesStart());
}

TEST_F(ProcessUploadTest, AnS300ScaleInMode1GetsOrders1To8) {
    scale_->mode = 1;
    EXPECT_EQ(Written(Rec(kScaleTypeS300), {kTomatoes}),
              With(With(TomatoesStart(), kTexts1To3), kTexts6And7));
}

TEST_F(ProcessUploadTest, AnS300ScaleInMode2GetsAllTextsTheLastThreeLong) {
    scale_->mode = 2;
    EXPECT_EQ(Written(Rec(kScaleTypeS300), {kTomatoes}),
              With(With(With(With(TomatoesStart(), kTexts1To3), kTexts6And7), kCodes),
                   {Param(12, 19, "c1", 63), Param(12, 20, "c2", 63), Param(12, 21, "c3", 63)}));
}

TEST_F(ProcessUploadTest, AnS300ScaleInMode3GetsOrders1To10) {
    scale_->mode = 3;
    EXPECT_EQ(Written(Rec(kScaleTypeS300), {kTomatoes}),
              With(With(With(TomatoesStart(), kTexts1To3), kTexts6And7), kCodes));
}

TEST_F(ProcessUploadTest, AScaleOfAnUnknownTypeGetsOrders1To3InEveryMode) {
    for (int mode = 0; mode < 4; ++mode) {
        scale_->mode = mode;
        EXPECT_EQ(Written(Rec(77), {kTomatoes}), TomatoesStart()) << mode;
    }
}

TEST_F(ProcessUploadTest, AWholeUnitsArticleOnS300GoesThroughSetPriceCWithLabel1) {
    // price 2.50, pieces 1, tare 0, label 1
    EXPECT_EQ(Written(Rec(kScaleTypeS300), {kPieces}).front(), "4B 00 07 00 50 02 00 01 00 01");
}

TEST_F(ProcessUploadTest, AWholeUnitsArticleOnAnyOtherScaleGoesThroughSetPrice) {
    for (const std::int32_t type : {kScaleTypeEvl, kScaleTypeEts, 77})
        EXPECT_EQ(Written(Rec(type), {kPieces}).front(), "4A 00 07 00 50 02 00 00 00 00") << type;
}

TEST_F(ProcessUploadTest, Field7IsTheWeightFieldOrTheTareNumber) {
    const std::string byWeight = "7|22007|1|0|0|2.50|250|0|A|B|||||0|0|55|";
    const std::string byPiece = "7|22007|2|0|0|2.50|25|0|A|B|||||1|0|55|";
    EXPECT_EQ(Written(Rec(kScaleTypeS300), {byWeight}).front(), "4A 00 07 00 50 02 00 50 02 00");
    EXPECT_EQ(Written(Rec(kScaleTypeS300), {byPiece}).front(), "4B 00 07 00 50 02 00 01 19 01");
}

TEST_F(ProcessUploadTest, TheVersionLineNamesTheModel) {
    const std::pair<std::int32_t, const char*> models[] = {
        {kScaleTypeEvl, "log:   Везна EVL - Ver: 1.23; Max.PLU: 3000; Mode: 2"},
        {kScaleTypeEts, "log:   Везна ETS - Ver: 1.23; Max.PLU: 3000; Mode: 2"},
        {kScaleTypeS300, "log:   Везна S300 - Ver: 1.23; Max.PLU: 3000; Mode: 2"}};
    scale_->mode = 2;
    for (const auto& [type, line] : models) {
        ASSERT_TRUE(Upload(Rec(type), {}));
        EXPECT_EQ(Logged(), (TEvents{line, "log:   Брой записани артикули: 0"}));
    }
}

TEST_F(ProcessUploadTest, AnUnknownTypeHasNoVersionLine) {
    ASSERT_TRUE(Upload(Rec(77), {}));
    EXPECT_EQ(Logged(), (TEvents{"log:   Брой записани артикули: 0"}));
}

TEST_F(ProcessUploadTest, WithMaxPlu999Number1234IsWrittenAs234AndText14CarriesTheWholeNumber) {
    scale_->maxPlu = 999;
    const TEvents written =
        Written(Rec(kScaleTypeEts), {"1234|22012|1|0|0|1.00|0|0|A|B|||||0|0|9|"});
    ASSERT_EQ(written.size(), 11U);
    EXPECT_EQ(written[0], "4A 00 EA 00 00 01 00 00 00 00");
    EXPECT_EQ(written[9], Param(234, 14, "1234", 31));
    EXPECT_EQ(written[10], Param(234, 15, "9", 31));
    EXPECT_EQ(test::Filtered(events_, {"progress:"}), (TEvents{"progress:Запис артикул: 234 A"}));
}

TEST_F(ProcessUploadTest, AnArticleWithPrice0IsSkippedSilentlyAndNotCounted) {
    ASSERT_TRUE(Upload(Rec(kScaleTypeEvl), {"5|22005|1|0|0|0.00|0|0|A|B|||||0|0|9|",
                                            "6|22006|1|0|0|-1.00|0|0|C|D|||||0|0|9|"}));
    EXPECT_EQ(events_, (TEvents{"3C", "wait 500", "36", "wait 800", "48",
                                "log:   Везна EVL - Ver: 1.23; Max.PLU: 3000; Mode: 0",
                                "progress:Запис артикул: 5 A", "progress:Запис артикул: 6 C",
                                "wait 500", "3C", "log:   Брой записани артикули: 0"}));
}

TEST_F(ProcessUploadTest, ALineWithoutAllFieldsIsSkipped) {
    EXPECT_EQ(Written(Rec(77), {"5|22005|1|0|0|1.00|0|0|A|B|||||0|0|9", kTomatoes}),
              TomatoesStart());
    EXPECT_EQ(Logged(), (TEvents{"log:   Брой записани артикули: 1"}));
}

TEST_F(ProcessUploadTest, ANumberThatIs0OrAboveMaxPluIsSkippedWithoutProgress) {
    scale_->maxPlu = 3000;
    ASSERT_TRUE(Upload(Rec(77), {"0|22005|1|0|0|1.00|0|0|A|B|||||0|0|9|",
                                 "3001|22005|1|0|0|1.00|0|0|A|B|||||0|0|9|",
                                 "20000|22005|1|0|0|1.00|0|0|A|B|||||0|0|9|"}));
    EXPECT_EQ(Sent(), (TEvents{"3C", "36", "48", "3C"}));
    EXPECT_EQ(test::Filtered(events_, {"progress:"}), TEvents{});
}

TEST_F(ProcessUploadTest, NumberMaxPluItselfIsWritten) {
    EXPECT_EQ(Written(Rec(77), {"3000|22005|1|0|0|1.00|0|0|A|B|||||0|0|9|"}).front(),
              "4A 00 B8 0B 00 01 00 00 00 00");
}

TEST_F(ProcessUploadTest, TextsGoThroughTheScalesCodeTableButBestBeforeDoesNot) {
    TScaleRec rec = Rec(77);
    const std::vector<std::string> lines = {
        std::string("12|22012|1|0|0|1.00|0|200|Маря|Б|||||0|0|101|"_cp1251)};
    rec.Encoding = 2;
    // М CC-40, а E0-40, р F0-40+30, я FF-40+30
    EXPECT_EQ(Written(rec, lines)[1], Param(12, 0, "\x8C\xA0\xE0\xEF", 31));
    EXPECT_EQ(Written(rec, lines)[2], "4C 00 0C 00 04 02 01 C8");
    rec.Encoding = 1;
    EXPECT_EQ(Written(rec, lines)[1], Param(12, 0, "\x8C\xA0\xB0\xBF", 31));
    rec.Encoding = 0;
    EXPECT_EQ(Written(rec, lines)[1], Param(12, 0, "\xCC\xE0\xF0\xFF", 31));
}

TEST_F(ProcessUploadTest, BestBeforeAbove255DaysTakesTwoBytes) {
    EXPECT_EQ(Written(Rec(77), {"12|22012|1|0|0|1.00|0|365|A|B|||||0|0|101|"})[2],
              "4C 00 0C 00 04 03 01 01 6D");
}

TEST_F(ProcessUploadTest, ABarcodeIsTrimmedAndCutTo8Characters) {
    EXPECT_EQ(Written(Rec(77), {"12|  1234567890|1|0|0|1.00|0|0|A|B|||||0|0|101|"})[3],
              "4C 00 0C 00 05 08 31 32 33 34 35 36 37 38");
}

TEST_F(ProcessUploadTest, ARefusedProgrammingModeEndsThePass) {
    scale_->errorCode = [](const test::TRequest& request) -> std::uint8_t {
        return request.command == 0x36 ? 9 : 0;
    };
    EXPECT_FALSE(Upload(Rec(kScaleTypeEvl), {kTomatoes}));
    EXPECT_EQ(session_.LastError,
              "Fail! Plu: 0 \"\" [SetPrgMode] ErrCode: 9, Fail set Weight mode: "
              "Scale return Error code: 9");
    EXPECT_EQ(events_, (TEvents{"3C", "wait 500", "36"}));
}

TEST_F(ProcessUploadTest, ARefusedFirstWeighingModeIsIgnored) {
    scale_->errorCode = [](const test::TRequest& request) -> std::uint8_t {
        return request.command == 0x3C ? 9 : 0;
    };
    EXPECT_TRUE(Upload(Rec(kScaleTypeEvl), {}));
    EXPECT_EQ(Sent(), (TEvents{"3C", "36", "48", "3C"}));
}

TEST_F(ProcessUploadTest, AModeCommandWithoutAReplyShowsErrCode1000) {
    ASSERT_TRUE(session_.InitComm(Rec(kScaleTypeEvl)));
    scale_->wrongAnswers = true;
    EXPECT_FALSE(session_.ProcessUpload({}, Rec(kScaleTypeEvl)));
    EXPECT_EQ(session_.LastError,
              "Fail! Plu: 0 \"\" [SetPrgMode] ErrCode: 1000, Fail set Weight mode: "
              "[ReadResponce]wrong");
}

TEST_F(ProcessUploadTest, ARefusedVersionEndsThePass) {
    scale_->errorCode = [](const test::TRequest& request) -> std::uint8_t {
        return request.command == 0x48 ? 3 : 0;
    };
    EXPECT_FALSE(Upload(Rec(kScaleTypeEvl), {kTomatoes}));
    EXPECT_EQ(session_.LastError,
              "Fail! Plu: 0 \"\" [GetVersion] ErrCode: 3, Fail get version: "
              "Scale return Error code: 3");
    EXPECT_EQ(Sent(), (TEvents{"3C", "36", "48"}));
    EXPECT_EQ(Logged(), TEvents{});
}

TEST_F(ProcessUploadTest, ARefusedPriceNamesTheArticleAndLeavesTheScaleInProgrammingMode) {
    scale_->errorCode = [](const test::TRequest& request) -> std::uint8_t {
        return request.command == 0x4A ? 7 : 0;
    };
    EXPECT_FALSE(Upload(Rec(kScaleTypeEvl), {kTomatoes, kPieces}));
    // the name stands as the line has it, not trimmed
    EXPECT_EQ(session_.LastError,
              "Fail! Plu: 12 \" Tomatoes \" [SetPrice] ErrCode: 7, Fail set PLU price: "
              "Scale return Error code: 7");
    EXPECT_EQ(Sent(), (TEvents{"3C", "36", "48", "4A 00 0C 00 34 12 00 00 00 00"}));
    EXPECT_EQ(events_.back(), "4A 00 0C 00 34 12 00 00 00 00");
}

TEST_F(ProcessUploadTest, ARefusedPiecePriceIsNamedSetPriceC) {
    scale_->errorCode = [](const test::TRequest& request) -> std::uint8_t {
        return request.command == 0x4B ? 8 : 0;
    };
    EXPECT_FALSE(Upload(Rec(kScaleTypeS300), {kPieces}));
    EXPECT_EQ(session_.LastError,
              "Fail! Plu: 7 \"Eggs\" [SetPriceC] ErrCode: 8, Fail set PLU price: "
              "Scale return Error code: 8");
}

TEST_F(ProcessUploadTest, AFailureNamesTheNumberAsItWasCut) {
    scale_->errorCode = [](const test::TRequest& request) -> std::uint8_t {
        return request.command == 0x4A ? 7 : 0;
    };
    EXPECT_FALSE(Upload(Rec(77), {"52345|22005|1|0|0|1.00|0|0|A|B|||||0|0|9|"}));
    EXPECT_EQ(session_.LastError,
              "Fail! Plu: 2345 \"A\" [SetPrice] ErrCode: 7, Fail set PLU price: "
              "Scale return Error code: 7");
}

TEST_F(ProcessUploadTest, APriceOf10000FailsBeforeItIsSent) {
    EXPECT_FALSE(Upload(Rec(77), {"12|22005|1|0|0|10000.00|0|0|A|B|||||0|0|9|"}));
    EXPECT_EQ(session_.LastError,
              "Fail! Plu: 12 \"A\" [SetPrice] ErrCode: 0, Fail set PLU price: "
              "10000 does not fit in six digits.");
    EXPECT_EQ(Sent(), (TEvents{"3C", "36", "48"}));
}

// The bytes of 0 and 256 days contain a zero byte, and the failure quotes them whole.
TEST_F(ProcessUploadTest, ARefusedBestBeforeIsNamedWithItsZeroByte) {
    scale_->errorCode = [](const test::TRequest& request) -> std::uint8_t {
        return request.command == 0x4C && request.data.at(3) == 4 ? 5 : 0;
    };
    const std::pair<std::string_view, std::string> days[] = {
        {"0", std::string("\x01\x00", 2)}, {"256", std::string("\x01\x01\x00", 3)}};
    for (const auto& [text, bytes] : days) {
        std::string line = "12|22012|1|0|0|12.34|0|";
        line += text;
        line += "|Tomatoes|Pink|c1|c2|c3|L-7|0|0|101|";
        EXPECT_FALSE(Upload(Rec(kScaleTypeEvl), {line}));
        std::string expected = "Fail! Plu: 12 \"Tomatoes\" [SetParam:4][";
        expected += "Годност"_cp1251;
        expected += "] ErrCode: 5, Fail set parameter: Plu:12 ParN:4 ParT:\"";
        expected += bytes + "\"\r\nScale return Error code: 5";
        EXPECT_EQ(session_.LastError, expected) << text;
    }
}

TEST_F(ProcessUploadTest, AStopDuringTheThirdArticleFailsThePassAtTheFourth) {
    const auto line = [](const std::string& number, std::string_view name) {
        return number + "|22012|1|0|0|1.00|0|0|" + std::string(name) + "|B|||||0|0|" + number + "|";
    };
    scale_->errorCode = [this](const test::TRequest& request) -> std::uint8_t {
        if (request.command == 0x4A && request.plu == 3) stop_.Stop();
        return 0;
    };
    EXPECT_FALSE(Upload(Rec(77), {line("1", "Първи"_cp1251), line("2", "Втори"_cp1251),
                                  line("3", "Трети"_cp1251), line("4", "Четвърти"_cp1251)}));
    EXPECT_EQ(session_.LastError,
              "Fail! Plu: 3 \"Трети\" Операцията прекратена от петребителя."_cp1251);
    // the third article was finished, and the scale is left in programming mode
    const TEvents sent = Sent();
    EXPECT_EQ(sent.size(), 3U + 3U * 4U);
    EXPECT_EQ(sent.back(), "4C 00 03 00 05 05 32 32 30 31 32");
    EXPECT_EQ(events_.back(), "wait 30");
}

TEST_F(ProcessUploadTest, AStopBeforeTheFirstArticleNamesArticle0) {
    stop_.Stop();
    EXPECT_FALSE(Upload(Rec(77), {kTomatoes}));
    EXPECT_EQ(session_.LastError, "Fail! Plu: 0 \"\" Операцията прекратена от петребителя."_cp1251);
    EXPECT_EQ(Sent(), (TEvents{"3C", "36", "48"}));
}

TEST_F(ProcessUploadTest, AnErrorRaisedInThePassIsItsFailure) {
    view_.onLog = [](const std::string&) { throw std::runtime_error("no view"); };
    EXPECT_FALSE(Upload(Rec(kScaleTypeEvl), {kTomatoes}));
    EXPECT_EQ(session_.LastError, "Fail! Plu: 0 \"\" no view");
    EXPECT_EQ(Sent(), (TEvents{"3C", "36", "48"}));
}

TEST_F(ProcessUploadTest, AnErrorRaisedAtAnArticleNamesItAndSendsNothingMore) {
    view_.onProgress = [](const std::string& progress) {
        if (progress == "progress:Запис артикул: 7 Eggs (брой)")
            throw std::runtime_error("no label");
    };
    EXPECT_FALSE(Upload(Rec(77), {kTomatoes, kPieces}));
    EXPECT_EQ(session_.LastError, "Fail! Plu: 7 \"Eggs\" no label");
    EXPECT_EQ(Sent(), With({"3C", "36", "48"}, TomatoesStart()));
    EXPECT_EQ(events_.back(), "progress:Запис артикул: 7 Eggs (брой)");
}

TEST_F(ProcessUploadTest, TheDecimalSeparatorIsTheSystems) {
    TScaleSession session(factory_, clock_, view_, stop_, ',');
    ASSERT_TRUE(session.InitComm(Rec(77)));
    events_.clear();
    ASSERT_TRUE(session.ProcessUpload({"12|22012|1|0|0|12,34|0|0|A|B|||||0|0|101|"}, Rec(77)));
    EXPECT_EQ(test::Filtered(events_, {"4A"}), (TEvents{"4A 00 0C 00 34 12 00 00 00 00"}));
}

}  // namespace
}  // namespace tolvane
