// Problems of articles, whatever the scale.

#include "command/ArticleProblems.h"

#include <gtest/gtest.h>

#include "tests/support/scales/TestScales.h"
#include "tests/support/upload/UploadFixture.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

// One article, 7 "Eggs", sold for 10 in BGN, the base currency.
struct TOneArticle {
    TOneArticle()
        : reading{.articles = *TableOf({Goods(7, "Eggs")}),
                  .promotions = {},
                  .baseCurrency = "BGN",
                  .baseCurrencyName = "lev"} {
        SetPrices(10, 10, "lev");
        SetWholesale(8, 8);
    }
    TRowId Row() const { return reading.articles.Order().at(0); }
    void SetPrices(double own, double base, std::string_view currency) {
        reading.articles.SetFloat(Row(), TField::PLU_SELL_PRICE, own);
        reading.articles.SetFloat(Row(), TField::PLU_SELL_PRICE_LV, base);
        reading.articles.SetText(Row(), TField::CURR_SELL_NAME, currency);
    }
    void SetWholesale(double own, double base) {
        reading.articles.SetFloat(Row(), TField::PLU_TRADE_PRICE, own);
        reading.articles.SetFloat(Row(), TField::PLU_TRADE_PRICE_LV, base);
    }
    void Promote(bool isPriceChange, const std::string& currency) {
        reading.promotions = {{.row = Row(), .isPriceChange = isPriceChange, .currency = currency}};
        reading.articles.SetBoolean(Row(), TField::HasActivePromotion, true);
    }
    // "error: the problem", or "" without one.
    std::string Problem(int price = kRetailPrice) const {
        const std::vector<TProblem> problems = ProblemsOfArticles(
            reading, price, {{.rec = NetworkScale(1, "Meat")}, {.rec = NetworkScale(7, "Milk")}});
        EXPECT_LE(problems.size(), 1U);
        if (problems.empty()) return {};
        EXPECT_EQ(problems[0].number, 7);
        EXPECT_EQ(problems[0].name, "Eggs");
        EXPECT_EQ(problems[0].scale, 0);
        EXPECT_NE(problems[0].cure, "");
        return (problems[0].severity == TSeverity::Error ? "error: " : "warning: ") +
               problems[0].problem;
    }

    TArticleReading reading;
};

TEST(ArticleProblems, NoneWhereAllIsInTheBaseCurrency) {
    EXPECT_EQ(TOneArticle().Problem(), "");
}

TEST(ArticleProblems, AnotherSellingCurrencyIsConvertedAndTold) {
    TOneArticle article;
    article.SetPrices(10, 19.5583, "euro");
    EXPECT_EQ(article.Problem(), "warning: it is sold in euro; the scale gets the price in BGN");
    EXPECT_EQ(article.Problem(kWholesalePrice),
              "warning: it is sold in euro; the scale gets the price in BGN");
}

// The currencies are compared, not the prices: those may be equal, or zero.
TEST(ArticleProblems, AnotherSellingCurrencyIsToldWhateverItsRate) {
    TOneArticle article;
    article.SetPrices(10, 10, "euro");
    EXPECT_EQ(article.Problem(), "warning: it is sold in euro; the scale gets the price in BGN");
    article.SetPrices(0, 0, "euro");
    EXPECT_EQ(article.Problem(kWholesalePrice),
              "warning: it is sold in euro; the scale gets the price in BGN");
}

TEST(ArticleProblems, ABaseCurrencyWithARateChangesTheChosenPrice) {
    const std::string text =
        "error: it is sold in lev, the base currency, whose rate is not 1; the scale gets another "
        "price";
    TOneArticle retail;
    retail.SetPrices(10, 20, "lev");
    EXPECT_EQ(retail.Problem(), text);
    EXPECT_EQ(retail.Problem(kWholesalePrice), "");
    TOneArticle wholesale;
    wholesale.SetWholesale(8, 16);
    EXPECT_EQ(wholesale.Problem(kWholesalePrice), text);
    EXPECT_EQ(wholesale.Problem(), "");
    wholesale.SetWholesale(8, 8.0049);
    EXPECT_EQ(wholesale.Problem(kWholesalePrice), "") << "the scale gets hundredths";
}

TEST(ArticleProblems, ADatabaseWithoutABaseCurrencyIsToldOnce) {
    TOneArticle article;
    article.reading.baseCurrencyName = "";
    const auto problems =
        ProblemsOfArticles(article.reading, kRetailPrice, {{.rec = NetworkScale(1, "Meat")}});
    ASSERT_EQ(problems.size(), 1U);
    EXPECT_EQ(problems[0].severity, TSeverity::Warning);
    EXPECT_EQ(problems[0].problem, "no currency is marked as the base currency");
    EXPECT_EQ(problems[0].number, 0);
}

TEST(ArticleProblems, NoSellingCurrencyIsNoPrice) {
    TOneArticle article;
    article.SetPrices(10, 0, "");
    EXPECT_EQ(article.Problem(), "error: it has no selling currency, and so no price in BGN");
}

TEST(ArticleProblems, ANewPriceInAnotherCurrencyReachesTheScaleUnconverted) {
    TOneArticle article;
    article.Promote(false, "EUR");
    EXPECT_EQ(article.Problem(),
              "error: its promotion has a price in EUR; the scale gets the same figure as if it "
              "were BGN");
    article.Promote(false, "BGN");
    EXPECT_EQ(article.Problem(), "");
    article.Promote(false, "");
    EXPECT_EQ(article.Problem(), "");
}

TEST(ArticleProblems, AChangeOfAPriceInAnotherCurrencyIsNotConverted) {
    TOneArticle article;
    article.SetPrices(10, 19.5583, "euro");
    article.Promote(true, "BGN");
    EXPECT_EQ(article.Problem(),
              "error: its promotion is worked out in euro and is not converted into BGN");
    article.SetPrices(10, 10, "lev");
    EXPECT_EQ(article.Problem(), "");
}

// A new price replaces the selling price, whatever that is in.
TEST(ArticleProblems, ANewPriceInTheBaseCurrencyHelpsAnArticleInAnother) {
    TOneArticle article;
    article.SetPrices(10, 19.5583, "euro");
    article.Promote(false, "BGN");
    EXPECT_EQ(article.Problem(), "");
}

TEST(ArticleProblems, APromotionHasNoPartInWholesalePrices) {
    TOneArticle article;
    article.Promote(false, "EUR");
    EXPECT_EQ(article.Problem(kWholesalePrice), "");
}

TEST(ArticleProblems, BestBeforeAbove365DaysIsLost) {
    TOneArticle article;
    article.reading.articles.SetText(article.Row(), TField::LABEL_BESTBEFORE, "365");
    EXPECT_EQ(article.Problem(), "");
    article.reading.articles.SetText(article.Row(), TField::LABEL_BESTBEFORE, "366");
    EXPECT_EQ(article.Problem(), "error: best before 366 days is above 365: the scale gets 0");
    article.reading.articles.SetText(article.Row(), TField::LABEL_BESTBEFORE, "-1");
    EXPECT_EQ(article.Problem(), "error: best before -1 days is below 0");
}

TEST(ArticleProblems, AnArticleForNoScaleIsTold) {
    TOneArticle article;
    article.reading.articles.SetText(article.Row(), TField::PLU_FORSCALES, "");
    EXPECT_EQ(article.Problem(), "error: it is meant for no scale");
    article.reading.articles.SetText(article.Row(), TField::PLU_FORSCALES, "1,x,3");
    EXPECT_EQ(article.Problem(),
              "error: \"x\" among its scales \"1,x,3\" is no number; that and what follows it "
              "count for nothing");
    article.reading.articles.SetText(article.Row(), TField::PLU_FORSCALES, "8,9");
    EXPECT_EQ(article.Problem(), "warning: none of its scales \"8,9\" is in the list");
    for (const char* fine : {"0", "1,3", "1,", "0,x", "9,7"}) {
        article.reading.articles.SetText(article.Row(), TField::PLU_FORSCALES, fine);
        EXPECT_EQ(article.Problem(), "") << fine;
    }
}

}  // namespace
}  // namespace tolvane::test
