#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "SessionFixture.h"
#include "config/TypesUnit.h"
#include "tests/support/scales/TestScales.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

using test::TEvents;

const std::string kFirst = "12|22012|1|0|0|12.34|0|5|Tomatoes|B|||||0|0|101|";
const std::string kSecond = "7|22007|2|0|0|2.50|0|0|Eggs|B|||||1|0|55|";

class ProcessDeleteTest : public test::TSessionTest {
protected:
    ProcessDeleteTest() { scale_->maxPlu = 3; }

    bool Delete(const std::vector<std::string>& lines) {
        EXPECT_TRUE(session_.InitComm(NetworkScale(7, "A")));
        events_.clear();
        return session_.ProcessDelete(lines);
    }
    void Refuse(std::uint8_t command, std::uint8_t code) {
        scale_->errorCode = [command, code](const test::TRequest& request) -> std::uint8_t {
            return request.command == command ? code : 0;
        };
    }
    TEvents Sent() const { return test::Filtered(events_, {"3", "4"}); }
    // The name write: the character with code 0 and 30 blanks.
    static std::string Cleared(int plu) { return test::Param(plu, 0, std::string(1, '\0'), 31); }
};

TEST_F(ProcessDeleteTest, WithoutADriverNothingIsSentOrLogged) {
    EXPECT_FALSE(session_.ProcessDelete({}));
    EXPECT_EQ(events_, TEvents{});
}

TEST_F(ProcessDeleteTest, WithAnEmptyListAndMaxPlu3ExactlyPlus1To3ArePricedAndNamed) {
    ASSERT_TRUE(Delete({}));
    EXPECT_EQ(events_, (TEvents{"3C",
                                "wait 500",
                                "36",
                                "wait 800",
                                "48",
                                "log:   - Ver: 1.23; Max.PLU: 3; Mode:0",
                                "progress:Изтриване всички артикули.",
                                "progress:Изтриване артикул #1",
                                "4A 00 01 00 00 00 00 00 00 00",
                                Cleared(1),
                                "wait 30",
                                "progress:Изтриване артикул #2",
                                "4A 00 02 00 00 00 00 00 00 00",
                                Cleared(2),
                                "wait 30",
                                "progress:Изтриване артикул #3",
                                "4A 00 03 00 00 00 00 00 00 00",
                                Cleared(3),
                                "wait 30",
                                "wait 500",
                                "3C"}));
}

TEST_F(ProcessDeleteTest, WithAListEachArticleReceivesAPriceWithoutWeightAndAClearedName) {
    scale_->maxPlu = 3000;
    scale_->mode = 2;
    ASSERT_TRUE(Delete({kFirst, kSecond}));
    EXPECT_EQ(events_, (TEvents{"3C", "wait 500", "36", "wait 800", "48",
                                "log:   - Ver: 1.23; Max.PLU: 3000; Mode:2",
                                "progress:Изтриване артикул: 12 Tomatoes", "49 00 0C 00 00 00 00",
                                Cleared(12), "wait 30", "progress:Изтриване артикул: 7 Eggs",
                                "49 00 07 00 00 00 00", Cleared(7), "wait 30", "wait 500", "3C"}));
}

TEST_F(ProcessDeleteTest, AScaleThatRefusesEveryNameStillHasAllPricesCleared) {
    Refuse(0x4C, 5);
    EXPECT_TRUE(Delete({}));
    EXPECT_EQ(test::Filtered(events_, {"4A"}),
              (TEvents{"4A 00 01 00 00 00 00 00 00 00", "4A 00 02 00 00 00 00 00 00 00",
                       "4A 00 03 00 00 00 00 00 00 00"}));
    EXPECT_EQ(session_.LastError, "");
    EXPECT_EQ(events_.back(), "3C");
}

TEST_F(ProcessDeleteTest, ARefusedNameOfAListedArticleIsIgnoredToo) {
    scale_->maxPlu = 3000;
    Refuse(0x4C, 5);
    EXPECT_TRUE(Delete({kFirst, kSecond}));
    EXPECT_EQ(test::Filtered(events_, {"49"}),
              (TEvents{"49 00 0C 00 00 00 00", "49 00 07 00 00 00 00"}));
}

TEST_F(ProcessDeleteTest, ARefusedPriceEndsThePassAndReturnsTheScaleToWeighingMode) {
    Refuse(0x4A, 7);
    EXPECT_FALSE(Delete({}));
    EXPECT_EQ(session_.LastError,
              "ProcessDelete >> [SetPrice] ErrCode: 7, Fail set PLU price: "
              "Scale return Error code: 7");
    EXPECT_EQ(Sent(), (TEvents{"3C", "36", "48", "4A 00 01 00 00 00 00 00 00 00", "3C"}));
    EXPECT_EQ(events_.at(events_.size() - 2), "wait 500");
}

TEST_F(ProcessDeleteTest, ARefusedPriceOfAListedArticleEndsThePassTheSameWay) {
    scale_->maxPlu = 3000;
    Refuse(0x49, 7);
    EXPECT_FALSE(Delete({kFirst, kSecond}));
    EXPECT_EQ(session_.LastError,
              "ProcessDelete >> [SetPrice] ErrCode: 7, Fail set PLU price: "
              "Scale return Error code: 7");
    EXPECT_EQ(Sent(), (TEvents{"3C", "36", "48", "49 00 0C 00 00 00 00", "3C"}));
}

TEST_F(ProcessDeleteTest, ARefusedProgrammingModeIsReportedAndTheScaleReturnedToWeighingMode) {
    Refuse(0x36, 9);
    EXPECT_FALSE(Delete({}));
    EXPECT_EQ(session_.LastError,
              "ProcessDelete >> [SetPrgMode] ErrCode: 9, Fail set Weight mode: "
              "Scale return Error code: 9");
    EXPECT_EQ(events_, (TEvents{"3C", "wait 500", "36", "wait 500", "3C"}));
}

TEST_F(ProcessDeleteTest, ARefusedVersionIsReportedAndTheScaleReturnedToWeighingMode) {
    Refuse(0x48, 3);
    EXPECT_FALSE(Delete({}));
    EXPECT_EQ(session_.LastError,
              "ProcessDelete >> [GetVersion] ErrCode: 3, Fail get version: "
              "Scale return Error code: 3");
    EXPECT_EQ(Sent(), (TEvents{"3C", "36", "48", "3C"}));
}

TEST_F(ProcessDeleteTest, AStopDuringDeleteEverythingSendsNoClosingWeighingMode) {
    scale_->errorCode = [this](const test::TRequest& request) -> std::uint8_t {
        if (request.command == 0x4C && request.plu == 2) stop_.Stop();
        return 0;
    };
    EXPECT_FALSE(Delete({}));
    EXPECT_EQ(session_.LastError, "Операцията прекратена от потребителя."_cp1251);
    EXPECT_EQ(Sent().back(), Cleared(2));
    EXPECT_EQ(events_.back(), "wait 30");
}

TEST_F(ProcessDeleteTest, AStopBetweenListedArticlesSendsNoClosingWeighingMode) {
    scale_->maxPlu = 3000;
    scale_->errorCode = [this](const test::TRequest& request) -> std::uint8_t {
        if (request.command == 0x49) stop_.Stop();
        return 0;
    };
    EXPECT_FALSE(Delete({kFirst, kSecond}));
    EXPECT_EQ(session_.LastError, "Операцията прекратена от потребителя."_cp1251);
    EXPECT_EQ(Sent().back(), Cleared(12));
}

// Between the answer to the version and the first article.
TEST_F(ProcessDeleteTest, AnErrorRaisedInThePassIsItsFailureAndTheScaleReturnsToWeighingMode) {
    view_.onLog = [](const std::string&) { throw std::runtime_error("no view"); };
    const TEvents expected = {"3C",       "wait 500", "36",
                              "wait 800", "48",       "log:   - Ver: 1.23; Max.PLU: 3; Mode:0",
                              "wait 500", "3C"};
    EXPECT_FALSE(Delete({}));
    EXPECT_EQ(session_.LastError, "ProcessDelete >> no view");
    EXPECT_EQ(events_, expected);
    EXPECT_FALSE(Delete({"1|22001|1|0|0|1.00|0|0|A|B|||||0|0|1|"}));
    EXPECT_EQ(session_.LastError, "ProcessDelete >> no view");
    EXPECT_EQ(events_, expected);
}

TEST_F(ProcessDeleteTest, AnErrorRaisedAtAnArticleOfEverythingIsThePassesFailure) {
    view_.onProgress = [](const std::string& progress) {
        if (progress == "progress:Изтриване артикул #2") throw std::runtime_error("no label");
    };
    EXPECT_FALSE(Delete({}));
    EXPECT_EQ(session_.LastError, "ProcessDelete >> no label");
    EXPECT_EQ(Sent(),
              (TEvents{"3C", "36", "48", "4A 00 01 00 00 00 00 00 00 00", Cleared(1), "3C"}));
    EXPECT_EQ(events_.at(events_.size() - 2), "wait 500");
}

TEST_F(ProcessDeleteTest, AnErrorRaisedAtAListedArticleIsThePassesFailure) {
    scale_->maxPlu = 3000;
    view_.onProgress = [](const std::string& progress) {
        if (progress == "progress:Изтриване артикул: 7 Eggs") throw std::runtime_error("no label");
    };
    EXPECT_FALSE(Delete({kFirst, kSecond}));
    EXPECT_EQ(session_.LastError, "ProcessDelete >> no label");
    EXPECT_EQ(Sent(), (TEvents{"3C", "36", "48", "49 00 0C 00 00 00 00", Cleared(12), "3C"}));
    EXPECT_EQ(events_.at(events_.size() - 2), "wait 500");
}

TEST_F(ProcessDeleteTest, AListedArticleAboveMaxPluAfterCuttingIsSkippedWithoutAnyCommand) {
    scale_->maxPlu = 300;
    EXPECT_TRUE(Delete({"1301|22012|1|0|0|1.00|0|0|A|B|||||0|0|1|",
                        "5000|22012|1|0|0|1.00|0|0|A|B|||||0|0|1|",
                        "1300|22012|1|0|0|1.00|0|0|C|B|||||0|0|1|"}));
    // 301 is above 300, 000 is no number; 300 is the last one
    EXPECT_EQ(Sent(), (TEvents{"3C", "36", "48", "49 00 2C 01 00 00 00", Cleared(300), "3C"}));
    EXPECT_EQ(test::Filtered(events_, {"progress:"}),
              (TEvents{"progress:Изтриване артикул: 300 C"}));
}

TEST_F(ProcessDeleteTest, ALineWithoutAllFieldsIsSkipped) {
    EXPECT_TRUE(Delete({"1|22012|1|0|0|1.00|0|0|A|B|||||0|0|1"}));
    EXPECT_EQ(Sent(), (TEvents{"3C", "36", "48", "3C"}));
}

}  // namespace
}  // namespace tolvane
