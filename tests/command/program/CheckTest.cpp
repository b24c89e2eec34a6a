#include "tests/command/program/ProgramTest.h"

namespace tolvane::test {
namespace {

class CheckTest : public TProgramTest {
protected:
    CheckTest() {
        scale_ = &AddScale(1);
        AddToList(2, TModel::S300, "127.0.0.1", 2002, 1, false);  // which article 4 is meant for
    }
    ~CheckTest() override { EXPECT_EQ(scale_->State().requests.total, 0) << "no scale is touched"; }

    // The only problem after this change of the database.
    nlohmann::json OnlyProblem(const std::string& statement) {
        Sql(statement);
        const TRun run = Run({"check", "--json"});
        EXPECT_EQ(run.exitCode, 6) << run.err;
        const nlohmann::json problems = run.Rows("problems");
        if (problems.size() != 1U) throw std::runtime_error("not one problem: " + run.out);
        return problems.at(0);
    }

    // What the scale would hold of article 1.
    nlohmann::json Shown(int exitCode) {
        const TRun run = Run({"check", "--show", "1", "--json"});
        EXPECT_EQ(run.exitCode, exitCode) << run.err;
        const nlohmann::json rows = run.Rows("texts");
        EXPECT_GT(rows.size(), 2U) << run.out;
        EXPECT_EQ(rows.at(0).at("label"), "price");
        return rows;
    }

    TVirtualScale* scale_ = nullptr;
};

TEST_F(CheckTest, NothingIsWrongWithAGoodShop) {
    const TRun run = Run({"check", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.Rows("problems").size(), 0U) << run.out;
}

TEST_F(CheckTest, AProblemNamesArticleScaleAndCure) {
    const auto problem =
        OnlyProblem("update BARCODES set PLU_BARCODE = '123' where PLU_NUMB = 103");
    EXPECT_EQ(problem.at("severity"), "error");
    EXPECT_EQ(problem.at("scale"), 1);
    EXPECT_EQ(problem.at("number"), 3);
    EXPECT_EQ(problem.at("name"), "Грозде");
    EXPECT_EQ(problem.at("problem"), "the barcode is not of exactly 5 characters");
    EXPECT_EQ(problem.at("cure"), "give it a barcode of 5 characters without |");
}

TEST_F(CheckTest, APriceThatNoScaleHoldsIsTold) {
    EXPECT_EQ(
        OnlyProblem("update PLUES set PLU_SELL_PRICE = 10000 where PLU_NUMB = 101").at("problem"),
        "the price is above 9999.99, which a scale cannot hold");
}

TEST_F(CheckTest, AnArticleWithoutAPriceIsTold) {
    EXPECT_EQ(OnlyProblem("update PLUES set PLU_SELL_PRICE = 0 where PLU_NUMB = 101").at("problem"),
              "the price is zero");
}

TEST_F(CheckTest, AnArticleForNoScaleIsTold) {
    const auto problem = OnlyProblem("update PLUES set PLU_FORSCALES = '' where PLU_NUMB = 101");
    EXPECT_EQ(problem.at("problem"), "it is meant for no scale");
    EXPECT_EQ(problem.at("name"), "Ябълки");
}

TEST_F(CheckTest, ABestBeforeOverAYearIsTold) {
    EXPECT_EQ(OnlyProblem("update LABEL_PRINTING set LABEL_BESTBEFORE = 366").at("problem"),
              "best before 366 days is above 365: the scale gets 0");
}

TEST_F(CheckTest, OfTwoArticlesWithOneNumberTheOneThatWinsIsTold) {
    const auto problem = OnlyProblem("update PLUES set PLU_SCALE_NUMB = 1 where PLU_NUMB = 102");
    EXPECT_EQ(problem.at("number"), 1);
    EXPECT_EQ(problem.at("name"), "Ябълки");
    EXPECT_EQ(problem.at("problem"),
              "it has the number 1 in the scale, as 1 \"Круши\", which wins");
}

TEST_F(CheckTest, LettersThatTheCodeTableLacksAreTold) {
    const auto problem =
        OnlyProblem("update PLUES set PLU_FOREGHN_NAME = 'Ќифле' where PLU_NUMB = 101");
    EXPECT_EQ(problem.at("severity"), "warning");
    EXPECT_NE(std::string(problem.at("problem")).find("lacks \"Ќ\""), std::string::npos) << problem;
}

TEST_F(CheckTest, ASellingCurrencyThatIsNotTheBaseIsTold) {
    const auto problem = OnlyProblem("update PLUES set PLU_SELLCURR_ID = 2 where PLU_NUMB = 101");
    EXPECT_EQ(problem.at("severity"), "warning");
    EXPECT_NE(std::string(problem.at("problem")).find("Български лев"), std::string::npos)
        << problem;
}

TEST_F(CheckTest, AnotherCurrencyIsToldEvenWhenThePriceIsTheSame) {
    Sql("update N_CURRENCY set CURR_COURCE = 1, CURR_COURCEFOR = 1");
    EXPECT_EQ(
        OnlyProblem("update PLUES set PLU_SELLCURR_ID = 2 where PLU_NUMB = 101").at("problem"),
        "it is sold in Български лев; the scale gets the price in EUR");
}

// The retail price is none of its business then.
TEST_F(CheckTest, AZeroRetailPriceDoesNotHideTheCurrencyOfTheWholesalePrice) {
    Sql("update PLUES set PLU_SELLCURR_ID = 2, PLU_SELL_PRICE = 0 where PLU_NUMB = 101");
    const TRun run = Run({"check", "--price", "wholesale", "--json"});
    EXPECT_EQ(run.exitCode, 6);
    ASSERT_EQ(run.Rows("problems").size(), 1U) << run.out;
    EXPECT_EQ(run.Rows("problems")[0].at("severity"), "warning");
}

TEST_F(CheckTest, WhatIsAssumedOfAScaleThatWasNeverReachedIsTold) {
    const auto assumed = Run({"check", "--json"}).Rows("assumed");
    ASSERT_EQ(assumed.size(), 1U);
    EXPECT_EQ(assumed[0].at("scale"), 1);
    EXPECT_EQ(assumed[0].at("capacity"), 65535);
    EXPECT_EQ(assumed[0].at("labelMode"), 2);
    EXPECT_NE(Run({"check"}).out.find("Not known of these scales, and assumed"), std::string::npos);
    EXPECT_EQ(Run({"check", "--show", "1", "--json"}).Rows("assumed"), assumed);
    const TRun csv = Run({"check", "--csv"});
    EXPECT_EQ(csv.exitCode, 0);
    EXPECT_EQ(csv.err,
              "tolvane: scale 1 Щанд 1 has not told what it holds; assumed: capacity 65535, label "
              "mode 2\n");
    EXPECT_EQ(Run({"check", "--csv", "-q"}).err, "");
}

TEST_F(CheckTest, ALedgerThatCannotBeReadIsAProblemOfItsScaleAlone) {
    std::filesystem::create_directories(LedgerOf(1));
    const TRun run = Run({"check", "--json"});
    EXPECT_EQ(run.exitCode, 6) << run.err;
    const auto problems = run.Rows("problems");
    ASSERT_EQ(problems.size(), 1U) << run.out;
    EXPECT_EQ(problems[0].at("scale"), 1);
    EXPECT_NE(std::string(problems[0].at("problem")).find("cannot be read"), std::string::npos);
}

TEST_F(CheckTest, ATableShowsTheSameToAPerson) {
    Sql("update BARCODES set PLU_BARCODE = '123' where PLU_NUMB = 103");
    const TRun run = Run({"check"});
    EXPECT_EQ(run.exitCode, 6);
    EXPECT_NE(run.out.find("Грозде"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("give it a barcode of 5 characters without |"), std::string::npos);
    EXPECT_EQ(run.out.find('\x1b'), std::string::npos) << "no colours in a file";
}

TEST_F(CheckTest, CommaSeparatedValuesHaveALineOfKeys) {
    Sql("update BARCODES set PLU_BARCODE = '123' where PLU_NUMB = 103");
    const TRun run = Run({"check", "--csv"});
    EXPECT_EQ(run.exitCode, 6);
    EXPECT_EQ(run.out,
              "severity,scale,number,name,problem,cure\n"
              "error,1,3,Грозде,the barcode is not of exactly 5 characters,"
              "give it a barcode of 5 characters without |\n");
}

TEST_F(CheckTest, AnArticleIsShownAsTheScaleWouldHoldIt) {
    const nlohmann::json rows = Shown(0);
    EXPECT_EQ(rows[0].at("shown"), "2.50");
    bool named = false;
    for (const auto& row : rows)
        named = named || row.at("shown") == "Ябълки зелени";
    EXPECT_TRUE(named) << rows;
}

TEST_F(CheckTest, AnArticleThatIsNotWrittenIsShownAsNotHeld) {
    Sql("update PLUES set PLU_SELL_PRICE = 30000000 where PLU_NUMB = 101");
    const nlohmann::json rows = Shown(6);
    EXPECT_EQ(rows[0].at("wanted"), "30000000.00");
    EXPECT_EQ(rows[0].at("note"),
              "not written: the price is above 9999.99, which a scale cannot hold");
    for (const auto& row : rows)
        EXPECT_EQ(row.at("shown"), "") << row;
}

TEST_F(CheckTest, OfTwoArticlesWithOneNumberTheWinnerIsShownAsHeld) {
    Sql("update PLUES set PLU_SCALE_NUMB = 1 where PLU_NUMB = 102");
    std::vector<std::string> prices;
    for (const auto& row : Shown(6))
        if (row.at("label") == "price") prices.push_back(row.at("shown"));
    EXPECT_EQ(prices, (std::vector<std::string>{"", "3.40"}));
}

TEST_F(CheckTest, AnArticleForAScaleThatIsNotInTheListIsTold) {
    const auto problem = OnlyProblem("update PLUES set PLU_FORSCALES = '9' where PLU_NUMB = 101");
    EXPECT_EQ(problem.at("severity"), "warning");
    EXPECT_EQ(problem.at("problem"), "none of its scales \"9\" is in the list");
}

TEST_F(CheckTest, ANumberThatNoScaleGetsCannotBeShown) {
    const TRun run = Run({"check", "--show", "99"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_NE(run.err.find("number 99"), std::string::npos) << run.err;
}

TEST_F(CheckTest, TheIndexIsMadeOnlyWhenItIsAskedFor) {
    EXPECT_EQ(Run({"check"}).exitCode, 0);
    EXPECT_THROW(Sql("drop index SUPPLIES_PLUCONTROL_PLUIDX"), std::exception);
    EXPECT_EQ(Run({"check", "--create-index"}).exitCode, 0);
    EXPECT_EQ(Run({"check", "--create-index"}).exitCode, 0) << "it is there already";
}

}  // namespace
}  // namespace tolvane::test
