#include "command/WritePlan.h"

#include <gtest/gtest.h>

#include "command/ArticleDigest.h"
#include "command/UnknownNumbers.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/scales/TestScales.h"
#include "tests/support/upload/UploadFixture.h"
#include "tests/unit/command/Shop.h"
#include "upload/ArticleLineBuilder.h"

namespace tolvane::test {
namespace {

using TNumbers = std::vector<std::int32_t>;

const TScaleVersion kPlanVersion = {.maxPlu = 3000, .mode = 1, .text = "1.23"};

class TWritePlanTest : public ::testing::Test {
protected:
    TWritePlan Plan(const std::vector<TArticle>& articles, const TWriteChoice& choice = {}) const {
        const auto table = TableOf(articles);
        return PlanWrite(ArticlesForScale(*table, rec.ScaleNumb, {}, {}), *table, rec, kPlanVersion,
                         ledger, choice);
    }
    static TNumbers Numbers(const TWritePlan& plan) {
        TNumbers numbers;
        for (const TPlannedArticle& article : plan.toWrite)
            numbers.push_back(article.plu.ScaleNumber);
        return numbers;
    }
    static TEvents LeftOut(const TWritePlan& plan) {
        TEvents texts;
        for (const TRefusedArticle& article : plan.leftOut)
            texts.push_back(std::to_string(article.number) + " " + article.name + ": " +
                            article.reason);
        return texts;
    }
    // The ledger claims that the scale holds these.
    void Claim(const TWritePlan& plan) {
        ledger.Confirm({.version = "1.23", .maxPlu = 3000, .labelMode = 1});
        for (const TPlannedArticle& article : plan.toWrite)
            ledger.Claim(article.plu.ScaleNumber, article.digest, kNoon);
    }

    TScratchFolder folder;
    TScaleRec rec = NetworkScale(7, "A");
    TLedger ledger = LoadAt(folder.Path(), kNoon, rec);
};

TEST_F(TWritePlanTest, KeepsTheOrderOfTheArticles) {
    const TWritePlan plan = Plan({Goods(12, "Tomatoes"), Goods(7, "Eggs"), Goods(9, "Milk")});
    EXPECT_EQ(Numbers(plan), (TNumbers{12, 7, 9}));
    EXPECT_EQ(plan.unchanged, 0U);
    EXPECT_TRUE(plan.leftOut.empty() && plan.refused.empty() && plan.strays.empty());
}

TEST_F(TWritePlanTest, CountsWhatIsUnchangedAndPlansOnlyTheRest) {
    const std::vector<TArticle> articles = {Goods(12, "Tomatoes"), Goods(7, "Eggs")};
    Claim(Plan(articles));
    EXPECT_EQ(Numbers(Plan(articles)), (TNumbers{12, 7}));
    const TWritePlan same = Plan(articles, {.changedOnly = true});
    EXPECT_EQ(Numbers(same), TNumbers{});
    EXPECT_EQ(same.unchanged, 2U);
    EXPECT_EQ(Numbers(Plan({articles[0], Goods(7, "Big eggs")}, {.changedOnly = true})),
              TNumbers{7});
}

TEST_F(TWritePlanTest, CutsNumbersAndRemembersThemUncut) {
    const TWritePlan plan = Plan({Goods(12007, "Eggs")});
    ASSERT_EQ(plan.toWrite.size(), 1U);
    EXPECT_EQ(plan.toWrite[0].plu.ScaleNumber, 2007);
    EXPECT_EQ(plan.toWrite[0].uncutNumber, 12007);
}

TEST_F(TWritePlanTest, ChoosesByTheNumberInTheDatabase) {
    const std::vector<TArticle> articles = {Goods(2007, "Eggs"), Goods(12, "Milk")};
    EXPECT_EQ(Numbers(Plan(articles, {.numbers = {{12007}}})), TNumbers{});
    EXPECT_EQ(Numbers(Plan(articles, {.numbers = {{2007}}})), TNumbers{2007});
}

// The scale would not have the chosen one in the end if the window wrote all.
TEST_F(TWritePlanTest, AChosenArticleThatAnotherOneOverwritesIsLeftOut) {
    EXPECT_EQ(LeftOut(Plan({Goods(2007, "Eggs"), Goods(12007, "Milk")}, {.numbers = {{2007}}})),
              TEvents{"2007 Eggs: another article has the number 2007 in this scale, too"});
}

TEST_F(TWritePlanTest, TellsWhyArticlesAreLeftOut) {
    TArticle barcode = Goods(1, "A");
    barcode.barcode = "1";
    TArticle free = Goods(2, "B");
    free.retail = 0;
    TArticle label = Goods(3, "C");
    label.labelName = "";
    TArticle negative = Goods(4, "D");
    negative.retail = -1;
    TArticle tiny = Goods(5, "E");
    tiny.retail = 0.004;
    EXPECT_EQ(LeftOut(Plan({barcode, free, label, negative, tiny, Goods(10000, "F")})),
              (TEvents{"1 A: the barcode is not of exactly 5 characters", "2 B: the price is zero",
                       "3 C: label name 2 is empty", "4 D: the price is below zero",
                       "5 E: the price is below 0.005, which is zero",
                       "10000 F: the scale has no such number: it has 1 to 3000"}));
    EXPECT_EQ(LeftOut(Plan({barcode, free}, {.numbers = {{2}}})),
              TEvents{"2 B: the price is zero"});
}

// The window's run ends at the first one; above 21 million it takes the price for zero.
TEST_F(TWritePlanTest, RefusesPricesThatNoScaleCanHold) {
    TArticle dear = Goods(6, "Saffron");
    for (const double price : {10000.0, 21474836.48}) {
        dear.retail = price;
        const TWritePlan plan = Plan({dear});
        ASSERT_EQ(plan.refused.size(), 1U) << price;
        EXPECT_EQ(plan.refused[0].number, 6);
        EXPECT_EQ(plan.refused[0].name, "Saffron");
        EXPECT_EQ(plan.refused[0].reason, "the price is above 9999.99, which a scale cannot hold");
        EXPECT_TRUE(plan.toWrite.empty() && plan.leftOut.empty());
    }
}

TEST_F(TWritePlanTest, AnArticleWithoutAPriceDoesNotKeepAnotherFromItsNumber) {
    TArticle negative = Goods(12007, "Milk");
    negative.retail = -1;
    EXPECT_EQ(Numbers(Plan({Goods(2007, "Eggs"), negative})), TNumbers{2007});
}

TEST_F(TWritePlanTest, FindsWhatHasLeftTheList) {
    Claim(Plan({Goods(12, "Tomatoes"), Goods(7, "Eggs")}));
    EXPECT_EQ(Plan({Goods(12, "Tomatoes")}).strays, TNumbers{7});
    TArticle elsewhere = Goods(7, "Eggs");
    elsewhere.forScales = "8";
    EXPECT_EQ(Plan({Goods(12, "Tomatoes"), elsewhere}).strays, TNumbers{7});
}

TEST(ScaleArticles, AreTheLinesOfTheWindowsRun) {
    std::vector<TArticle> articles = ManyGoods(6);
    articles[0].forScales = "1";
    articles[1].forScales = "2,3";
    articles[2].barcode = "1";
    articles[3].bestBefore = "400";
    articles[4].comment1 = "a|b";
    articles[5].onlyWhole = "1";
    const auto table = TableOf(articles);
    for (const int price : {kRetailPrice, kWholesalePrice})
        for (std::int32_t scale = 1; scale <= 3; ++scale) {
            const TLineChoices choices = {.price = price, .name1 = 1, .name2 = 3};
            std::vector<std::string> lines;
            const TArticleLineBuilder builder(*table, choices, {}, [](std::string_view) {});
            builder.Build(table->Order(), scale, lines);
            const TScaleArticles found = ArticlesForScale(*table, scale, choices, {});
            ASSERT_EQ(found.articles.size(), lines.size());
            EXPECT_EQ(found.leftOut.size(), 1U);
            TArticleDigest digests(NetworkScale(scale, "A"),
                                   {.maxPlu = 3000, .mode = 2, .text = {}});
            for (std::size_t i = 0; i < lines.size(); ++i) {
                TPLUD plu;
                ASSERT_TRUE(ParseArticleLine(lines[i], ',', plu));
                EXPECT_EQ(digests.Of(found.articles[i].plu, plu.ScaleNumber),
                          digests.Of(plu, plu.ScaleNumber));
                EXPECT_EQ(found.articles[i].plu.ArticleNumber, plu.ArticleNumber);
            }
        }
}

TEST(UnknownNumbers, AreThoseThatNoArticleOrNoneOfTheseScalesHas) {
    TArticle elsewhere = Goods(9, "Milk");
    elsewhere.forScales = "8";
    TArticle broken = Goods(12, "Tomatoes");
    broken.barcode = "";
    const auto table = TableOf({Goods(7, "Eggs"), elsewhere, broken});
    const auto unknown =
        UnknownNumbers({5, 7, 9, 12}, *table, {NetworkScale(6, "A"), NetworkScale(7, "B")});
    ASSERT_EQ(unknown.size(), 2U);
    EXPECT_EQ(unknown[0].number, 5);
    EXPECT_EQ(unknown[0].reason, "no article has this number");
    EXPECT_EQ(unknown[1].number, 9);
    EXPECT_EQ(unknown[1].reason, "no article of these scales has this number");
    EXPECT_TRUE(UnknownNumbers({9}, *table, {NetworkScale(6, "A"), NetworkScale(8, "C")}).empty());
}

}  // namespace
}  // namespace tolvane::test
