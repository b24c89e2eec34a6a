#include "simulator/Commands.h"
#include "tests/command/program/ProgramTest.h"

namespace tolvane::test {
namespace {

class WriteTest : public TProgramTest {
protected:
    WriteTest() {
        first_ = &AddScale(1);
        second_ = &AddScale(2);
    }

    TVirtualScale* first_ = nullptr;
    TVirtualScale* second_ = nullptr;
};

TEST_F(WriteTest, EveryScaleGetsItsArticles) {
    const TRun run = Run({"write", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(NumbersOf(*first_), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(NumbersOf(*second_), (std::vector<int>{1, 2, 4}));
    EXPECT_EQ(PriceOf(*first_, 1), 250);
    EXPECT_EQ(PriceOf(*first_, 2), 340);
    EXPECT_EQ(PriceOf(*first_, 3), 410);
    EXPECT_EQ(PriceOf(*second_, 4), 200);
    EXPECT_FALSE(first_->State().programming);
    EXPECT_FALSE(second_->State().programming);
    EXPECT_EQ(run.Scale(1).at("outcome"), "done");
    EXPECT_EQ(run.Scale(1).at("written"), 3);
    EXPECT_EQ(run.Scale(2).at("written"), 3);
    EXPECT_EQ(run.Json().at("command"), "write");
    EXPECT_EQ(run.Json().at("exitCode"), 0);
}

TEST_F(WriteTest, WhatAScaleHoldsIsNotSentAgain) {
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    const int prices = CountOf(*first_, simulator::kSetPriceC) +
                       CountOf(*first_, simulator::kSetPriceWeight) +
                       CountOf(*first_, simulator::kSetPrice);
    const int texts = CountOf(*first_, simulator::kSetParam);
    ASSERT_GT(prices + texts, 0);
    const TRun run = Run({"write", "--changed", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.Scale(1).at("written"), 0);
    EXPECT_EQ(run.Scale(1).at("unchanged"), 3);
    EXPECT_EQ(CountOf(*first_, simulator::kSetPriceC) +
                  CountOf(*first_, simulator::kSetPriceWeight) +
                  CountOf(*first_, simulator::kSetPrice),
              prices);
    EXPECT_EQ(CountOf(*first_, simulator::kSetParam), texts);
}

TEST_F(WriteTest, OnlyAChangedPriceIsSentAndOnlyToItsScale) {
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    Sql("update PLUES set PLU_SELL_PRICE = 4.55 where PLU_NUMB = 103");
    const TRun run = Run({"write", "--changed", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.Scale(1).at("written"), 1);
    EXPECT_EQ(run.Scale(1).at("unchanged"), 2);
    EXPECT_EQ(run.Scale(2).at("written"), 0);
    EXPECT_EQ(PriceOf(*first_, 3), 455);
}

TEST_F(WriteTest, AllWritesEverythingAgain) {
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    const TRun run = Run({"write", "--all", "--json"});
    EXPECT_EQ(run.Scale(1).at("written"), 3);
    EXPECT_EQ(run.Scale(1).at("unchanged"), 0);
}

TEST_F(WriteTest, OnlyTheNamedArticlesAreWritten) {
    const TRun run = Run({"write", "--plu", "2,3", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(NumbersOf(*first_), (std::vector<int>{2, 3}));
    EXPECT_EQ(NumbersOf(*second_), (std::vector<int>{2}));
}

TEST_F(WriteTest, OnlyTheNamedScaleIsWritten) {
    const TRun run = Run({"write", "--scale", "Щанд 2", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(first_->State().requests.total, 0);
    EXPECT_EQ(NumbersOf(*second_), (std::vector<int>{1, 2, 4}));
}

TEST_F(WriteTest, WholesalePricesAndOtherNamesAreChosenByOptions) {
    ASSERT_EQ(Run({"write", "--price", "wholesale", "--name1", "ecr"}).exitCode, 0);
    EXPECT_EQ(PriceOf(*first_, 1), 210);
    EXPECT_EQ(PriceOf(*first_, 2), 300);
    const simulator::TArticle article = first_->State().articles.at(1);
    EXPECT_TRUE(article.Text(0, simulator::TCodeTable::Pc866).starts_with("ЯБЪЛКИ"));
}

TEST_F(WriteTest, TheSecondNameIsChosenByAnOption) {
    ASSERT_EQ(Run({"write", "--name1", "name", "--name2", "ecr"}).exitCode, 0);
    const simulator::TArticle article = first_->State().articles.at(1);
    EXPECT_TRUE(article.Text(1, simulator::TCodeTable::Pc866).starts_with("ЯБЪЛКИ"))
        << article.Text(1, simulator::TCodeTable::Pc866);
}

TEST_F(WriteTest, TheChoicesOfTheWindowAreTheDefault) {
    list_ += "[SCALESETTINGS]\r\nPriceRadio_ItemIndex=1\r\n";
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    EXPECT_EQ(PriceOf(*first_, 1), 210);
    ASSERT_EQ(Run({"write", "--price", "retail"}).exitCode, 0);
    EXPECT_EQ(PriceOf(*first_, 1), 250);
}

TEST_F(WriteTest, OtherChoicesMakeEverythingChanged) {
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    const TRun run = Run({"write", "--changed", "--price", "wholesale", "--json"});
    EXPECT_EQ(run.Scale(1).at("written"), 3);
    EXPECT_NE(run.Scale(1).at("ledger"), "") << "it says why";
}

TEST_F(WriteTest, ADryRunTellsWhatWouldBeSentAndTouchesNoScale) {
    const TRun run = Run({"write", "--dry-run", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.Scale(1).at("pending"), 3);
    EXPECT_EQ(first_->State().requests.total, 0);
    EXPECT_FALSE(std::filesystem::exists(LedgerOf(1)));
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    EXPECT_EQ(Run({"write", "--changed", "--dry-run", "--json"}).Scale(1).at("pending"), 0);
}

TEST_F(WriteTest, WhatHasLeftTheListIsReportedAndDeletedOnRequest) {
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    Sql("update PLUES set PLU_FORSCALES = '2' where PLU_NUMB = 103");
    const TRun told = Run({"write", "--changed", "--json"});
    EXPECT_EQ(told.exitCode, 0) << told.err;
    EXPECT_EQ(NumbersOf(*first_), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(NumbersOf(*second_), (std::vector<int>{1, 2, 3, 4}));
    const auto articles = told.Rows("articles");
    ASSERT_EQ(articles.size(), 1U) << told.out;
    EXPECT_EQ(articles[0].at("scale"), 1);
    EXPECT_EQ(articles[0].at("number"), 3);
    EXPECT_EQ(articles[0].at("state"), "left over");
    const TRun pruned = Run({"write", "--changed", "--prune", "--json"});
    EXPECT_EQ(pruned.exitCode, 0) << pruned.err;
    EXPECT_EQ(pruned.Scale(1).at("deleted"), 1);
    EXPECT_EQ(NumbersOf(*first_), (std::vector<int>{1, 2}));
    EXPECT_EQ(Run({"write", "--changed", "--json"}).Rows("articles").size(), 0U);
}

TEST_F(WriteTest, AnArticleThatNoScaleCanHoldIsToldAndTheOthersAreWritten) {
    Sql("update PLUES set PLU_SELL_PRICE = 10000 where PLU_NUMB = 101");
    const TRun run = Run({"write", "--json"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(NumbersOf(*first_), (std::vector<int>{2, 3}));
    EXPECT_EQ(run.Scale(1).at("refused"), 1);
    const auto articles = run.Rows("articles");
    ASSERT_EQ(articles.size(), 2U);
    EXPECT_EQ(articles[0].at("number"), 1);
    EXPECT_EQ(articles[0].at("state"), "refused");
    EXPECT_NE(articles[0].at("reason"), "");
}

TEST_F(WriteTest, AnArticleThatIsLeftOutIsTold) {
    Sql("update BARCODES set PLU_BARCODE = '123' where PLU_NUMB = 103");
    const TRun run = Run({"write", "--json"});
    EXPECT_EQ(run.exitCode, 0) << "the window leaves it out, too, and ends well";
    const auto articles = run.Rows("articles");
    ASSERT_EQ(articles.size(), 1U);
    EXPECT_EQ(articles[0].at("number"), 3);
    EXPECT_EQ(articles[0].at("name"), "Грозде");
    EXPECT_EQ(articles[0].at("state"), "left out");
    EXPECT_EQ(articles[0].at("reason"), "the barcode is not of exactly 5 characters");
}

TEST_F(WriteTest, OneLinkAfterTheOtherWritesTheSame) {
    const TRun run = Run({"write", "--jobs", "1", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(NumbersOf(*second_), (std::vector<int>{1, 2, 4}));
}

TEST_F(WriteTest, AnArticleThatWasAskedForAndIsLeftOutIsAFailure) {
    Sql("update BARCODES set PLU_BARCODE = '123' where PLU_NUMB = 103");
    EXPECT_EQ(Run({"write", "--plu", "3", "--dry-run"}).exitCode, 3);
    const TRun run = Run({"write", "--plu", "1,3", "--json"});
    EXPECT_EQ(run.exitCode, 3) << run.err;
    EXPECT_EQ(run.Scale(1).at("outcome"), "done");
    EXPECT_EQ(run.Scale(1).at("leftOut"), 1);
    EXPECT_EQ(run.Rows("articles").at(0).at("number"), 3);
    EXPECT_EQ(Run({"write", "--plu", "1"}).exitCode, 0) << "the others are none of its business";
}

TEST_F(WriteTest, ADryRunWithRefusalsIsAFailure) {
    Sql("update PLUES set PLU_SELL_PRICE = 10000 where PLU_NUMB = 103");
    const TRun run = Run({"write", "--dry-run", "--json"});
    EXPECT_EQ(run.exitCode, 3) << run.err;
    EXPECT_EQ(run.Scale(1).at("outcome"), "failed");
    EXPECT_EQ(run.Scale(1).at("refused"), 1);
    EXPECT_EQ(run.Scale(2).at("outcome"), "done");
}

// A whole write would take 40 requests, and so 20 seconds.
TEST_F(WriteTest, ADeadlineEndsTheRunBetweenTwoArticles) {
    for (TVirtualScale* scale : {first_, second_})
        scale->SetFaults({.faults = {simulator::FaultFromText("slow,ms=500")}});
    const TRun run = Run({"write", "--deadline", "10s", "--json"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_NE(run.err.find("The deadline has passed: each scale ends"), std::string::npos)
        << run.err;
    EXPECT_EQ(run.Scale(1).at("outcome"), "stopped");
    EXPECT_FALSE(first_->State().programming);
    for (TVirtualScale* scale : {first_, second_})
        scale->SetFaults({});
    EXPECT_EQ(Run({"write", "--changed"}).exitCode, 0);
    EXPECT_EQ(NumbersOf(*first_), (std::vector<int>{1, 2, 3}));
}

}  // namespace
}  // namespace tolvane::test
