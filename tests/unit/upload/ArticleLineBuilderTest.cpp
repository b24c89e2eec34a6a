#include "upload/ArticleLineBuilder.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/upload/UploadFixture.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

using test::TArticle;
using TLines = std::vector<std::string>;

TArticle Tomatoes() {
    TArticle article;
    article.name = "Домати"_cp1251;
    article.ecrName = "ДОМАТИ ККМ"_cp1251;
    article.labelName = "Домати розови"_cp1251;
    article.comment1 = "c1";
    article.comment2 = "c2";
    article.comment3 = "c3";
    article.shipment = "L-7";
    return article;
}

class ArticleLineBuilderTest : public ::testing::Test {
protected:
    // The line of one article for scale 1.
    std::string Line(const TArticle& article) {
        const auto table = test::TableOf({article});
        return Builder(*table).BuildLine(0, 1);
    }
    TArticleLineBuilder Builder(const TArticleTable& table) {
        TRegionalSettings regional;
        regional.decimalSeparator = separator_;
        return {table, choices_, regional,
                [this](std::string_view line) { log_.push_back(ToUtf8(line)); }};
    }

    char separator_ = '.';
    TLineChoices choices_;
    TLines log_;
};

TEST_F(ArticleLineBuilderTest, ALineHolds17FieldsInOrder) {
    EXPECT_EQ(Line(Tomatoes()),
              "12|22012|1|0|0|12.34|0|5|Домати|Домати розови|c1|c2|c3|L-7|0|0|101|"_cp1251);
    EXPECT_EQ(log_, TLines{});
}

TEST_F(ArticleLineBuilderTest, EmptyCommentsAndShipmentAreAllowed) {
    TArticle article = Tomatoes();
    article.comment1 = article.comment2 = article.comment3 = article.shipment = "";
    EXPECT_EQ(Line(article), "12|22012|1|0|0|12.34|0|5|Домати|Домати розови|||||0|0|101|"_cp1251);
}

TEST_F(ArticleLineBuilderTest, AnArticleOfAnotherScaleIsLeftOutSilently) {
    TArticle article = Tomatoes();
    article.forScales = "2,5";
    article.barcode = "1";  // not even looked at
    EXPECT_EQ(Line(article), "");
    EXPECT_EQ(log_, TLines{});
}

TEST_F(ArticleLineBuilderTest, ForScalesOf2And5YieldsLinesForThoseScalesOnly) {
    TArticle article = Tomatoes();
    article.forScales = "2,5";
    const auto table = test::TableOf({article});
    for (int scale = 1; scale <= 6; ++scale)
        EXPECT_EQ(Builder(*table).BuildLine(0, scale).empty(), scale != 2 && scale != 5) << scale;
}

TEST_F(ArticleLineBuilderTest, ABarcodeOf4Or6CharactersSkipsTheArticle) {
    for (const char* barcode : {"2201", "220123", ""}) {
        log_.clear();
        TArticle article = Tomatoes();
        article.barcode = barcode;
        EXPECT_EQ(Line(article), "");
        EXPECT_EQ(log_, (TLines{"  Артикул \"Домати\" няма коректен баркод",
                                "  ->> и ще бъде игнориран"}));
    }
}

TEST_F(ArticleLineBuilderTest, AZeroRetailPriceSkipsTheArticle) {
    TArticle article = Tomatoes();
    article.retail = 0;
    EXPECT_EQ(Line(article), "");
    EXPECT_EQ(log_, (TLines{"  Артикул \"Домати\" има нулева ПРОДАЖНА ЦЕНА ДРЕБНО (ЛВ)",
                            "  ->> и няма да може да бъде маркиран от везната"}));
}

TEST_F(ArticleLineBuilderTest, AZeroWholesalePriceSkipsTheArticle) {
    choices_.price = 1;
    TArticle article = Tomatoes();
    article.wholesale = 0;
    EXPECT_EQ(Line(article), "");
    EXPECT_EQ(log_, (TLines{"  Артикул \"Домати\" има нулева ПРОДАЖНА ЦЕНА ЕДРО (ЛВ)",
                            "  ->> и няма да може да бъде маркиран от везната"}));
}

TEST_F(ArticleLineBuilderTest, AnUnknownChoiceHasNoCaption) {
    for (const int choice : {-1, 2}) {
        log_.clear();
        choices_.price = choice;
        EXPECT_EQ(Line(Tomatoes()), "");
        EXPECT_EQ(log_.front(), "  Артикул \"Домати\" има нулева ");
    }
    choices_.price = 0;
    for (const int choice : {-1, 4}) {
        log_.clear();
        choices_.name2 = choice;
        EXPECT_EQ(Line(Tomatoes()), "");
        EXPECT_EQ(log_,
                  (TLines{"  Артикул \"Домати\" няма коректно ", "  ->> и ще бъде игнориран"}));
    }
}

TEST_F(ArticleLineBuilderTest, TheWholesaleChoiceTakesTheWholesalePriceWhateverThePromotion) {
    choices_.price = 1;
    TArticle article = Tomatoes();
    article.promotion = true;
    article.promotionPrice = 1.11;
    EXPECT_EQ(Line(article),
              "12|22012|1|0|0|10.50|0|5|Домати|Домати розови|c1|c2|c3|L-7|0|0|101|"_cp1251);
}

TEST_F(ArticleLineBuilderTest, AnActivePromotionGivesItsPriceAlsoWhenTheRetailPriceIs0) {
    TArticle article = Tomatoes();
    article.retail = 0;
    article.promotion = true;
    article.promotionPrice = 2.5;
    EXPECT_EQ(Line(article),
              "12|22012|1|0|0|2.50|0|5|Домати|Домати розови|c1|c2|c3|L-7|0|0|101|"_cp1251);
    separator_ = ',';
    EXPECT_EQ(Line(article),
              "12|22012|1|0|0|2,50|0|5|Домати|Домати розови|c1|c2|c3|L-7|0|0|101|"_cp1251);
}

TEST_F(ArticleLineBuilderTest, APromotionThatIsNotActiveGivesTheRetailPrice) {
    TArticle article = Tomatoes();
    article.promotionPrice = 2.5;
    EXPECT_EQ(Line(article).substr(0, 20), "12|22012|1|0|0|12.34");
}

TEST_F(ArticleLineBuilderTest, ANegativePriceIsNotRejected) {
    TArticle article = Tomatoes();
    article.retail = -1.5;
    EXPECT_EQ(Line(article),
              "12|22012|1|0|0|-1.50|0|5|Домати|Домати розови|c1|c2|c3|L-7|0|0|101|"_cp1251);
}

TEST_F(ArticleLineBuilderTest, ABestBeforeAbove365IsWrittenAs0) {
    TArticle article = Tomatoes();
    article.bestBefore = "400";
    EXPECT_EQ(Line(article).substr(0, 24), "12|22012|1|0|0|12.34|0|0");
    article.bestBefore = "366";
    EXPECT_EQ(Line(article).substr(0, 24), "12|22012|1|0|0|12.34|0|0");
    article.bestBefore = "365";
    EXPECT_EQ(Line(article).substr(0, 27), "12|22012|1|0|0|12.34|0|365|");
}

TEST_F(ArticleLineBuilderTest, AWholeUnitsArticleHasUnitCode2AndFlag1) {
    TArticle article = Tomatoes();
    article.onlyWhole = "1";
    EXPECT_EQ(Line(article),
              "12|22012|2|0|0|12.34|0|5|Домати|Домати розови|c1|c2|c3|L-7|1|0|101|"_cp1251);
}

TEST_F(ArticleLineBuilderTest, ANegativeWholeUnitsValueHasUnitCode1AndFlag0) {
    TArticle article = Tomatoes();
    article.onlyWhole = "-3";
    EXPECT_EQ(Line(article),
              "12|22012|1|0|0|12.34|0|5|Домати|Домати розови|c1|c2|c3|L-7|0|0|101|"_cp1251);
}

TEST_F(ArticleLineBuilderTest, AnArticleWithoutAUnitIsSoldByWeight) {
    TArticle article = Tomatoes();
    article.onlyWhole = "";
    EXPECT_EQ(Line(article),
              "12|22012|1|0|0|12.34|0|5|Домати|Домати розови|c1|c2|c3|L-7|0|0|101|"_cp1251);
}

TEST_F(ArticleLineBuilderTest, EachNameChoiceTakesItsField) {
    const auto names = [this](int name1, int name2) {
        choices_.name1 = name1;
        choices_.name2 = name2;
        return ToUtf8(Line(Tomatoes()).substr(25));
    };
    EXPECT_EQ(names(0, 1), "ДОМАТИ ККМ|Домати|c1|c2|c3|L-7|0|0|101|");
    EXPECT_EQ(names(2, 3), "Домати розови|101|c1|c2|c3|L-7|0|0|101|");
}

TEST_F(ArticleLineBuilderTest, AnEmptyName1OrName2SkipsTheArticleWithItsChoice) {
    TArticle article = Tomatoes();
    article.ecrName = "";
    article.labelName = "";
    choices_.name1 = 0;
    EXPECT_EQ(Line(article), "");
    EXPECT_EQ(log_, (TLines{"  Артикул \"Домати\" няма коректно КАСОВО ИМЕ",
                            "  ->> и ще бъде игнориран"}));
    log_.clear();
    choices_.name1 = 1;
    choices_.name2 = 2;
    EXPECT_EQ(Line(article), "");
    EXPECT_EQ(log_, (TLines{"  Артикул \"Домати\" няма коректно ЕТИКЕТНО ИМЕ",
                            "  ->> и ще бъде игнориран"}));
    log_.clear();
    article.name = "";
    EXPECT_EQ(Line(article), "");
    EXPECT_EQ(log_.front(), "  Артикул \"\" няма коректно ИМЕ");
}

TEST_F(ArticleLineBuilderTest, ASeparatorInATextNeverShiftsTheFields) {
    TArticle article = Tomatoes();
    article.name = "A|B";
    article.labelName = "|";
    article.comment1 = "1|";
    article.shipment = "||9";
    EXPECT_EQ(Line(article), "12|22012|1|0|0|12.34|0|5|A/B|/|1/|c2|c3|//9|0|0|101|");
}

TEST_F(ArticleLineBuilderTest, ABarcodeWithASeparatorIsNoCorrectBarcode) {
    TArticle article = Tomatoes();
    // If they split the field, these characters would be read as a price of 9.00.
    article.barcode = "||||9";
    EXPECT_EQ(Line(article), "");
    EXPECT_EQ(log_,
              (TLines{"  Артикул \"Домати\" няма коректен баркод", "  ->> и ще бъде игнориран"}));
}

TEST_F(ArticleLineBuilderTest, AValueThatIsNoIntegerEndsTheBuilding) {
    TArticle article = Tomatoes();
    article.bestBefore = "5 дни"_cp1251;
    try {
        Line(article);
        FAIL() << "no error";
    } catch (const std::runtime_error& error) {
        EXPECT_EQ(ToUtf8(error.what()),
                  "Артикул \"Домати\": стойността \"5 дни\" на поле LABEL_BESTBEFORE не е цяло "
                  "число.");
    }
    article = Tomatoes();
    article.onlyWhole = "x";
    EXPECT_THROW(Line(article), std::runtime_error);
}

TEST_F(ArticleLineBuilderTest, Build_ClearsTheListKeepsTheOrderAndLogsTheSummary) {
    TArticle second = Tomatoes();
    second.scaleNumber = 13;
    TArticle bad = Tomatoes();
    bad.barcode = "1";
    const auto table = test::TableOf({Tomatoes(), bad, second});
    TLines lines{"old"};
    Builder(*table).Build({2, 1, 0}, 1, lines);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].substr(0, 9), "13|22012|");
    EXPECT_EQ(lines[1].substr(0, 9), "12|22012|");
    EXPECT_EQ(log_,
              (TLines{"  Артикул \"Домати\" няма коректен баркод", "  ->> и ще бъде игнориран",
                      "Обработени 3 артикула.", "Валидни са 2 артикула.",
                      "Ще бъдат записани само валидните артикули"}));
}

TEST_F(ArticleLineBuilderTest, LinesAreCountedForAllScalesTogetherWithoutALog) {
    TArticle forTwo = Tomatoes();
    forTwo.forScales = "2,5";
    TArticle bad = Tomatoes();
    bad.barcode = "1";
    TArticle unreadable = Tomatoes();
    unreadable.bestBefore = "x";
    TArticle forNone = Tomatoes();
    forNone.forScales = "";
    const auto table = test::TableOf({Tomatoes(), forTwo, bad, forTwo, unreadable, forNone});
    const TArticleLineBuilder builder = Builder(*table);
    EXPECT_EQ(builder.CountLines(table->Order(), {1}), 1U);
    EXPECT_EQ(builder.CountLines(table->Order(), {1, 2, 5}), 3U + 2U + 2U);
    EXPECT_EQ(builder.CountLines(table->Order(), {}), 0U);
    EXPECT_EQ(log_, TLines{});
}

TEST(RowsOfRun, AllRowsComeInTheTablesOrder) {
    const auto table = test::TableOf({TArticle{}, TArticle{}, TArticle{}});
    EXPECT_EQ(RowsOfRun(*table, false, {2, 0}, 1), (std::vector<TRowId>{0, 1, 2}));
}

TEST(RowsOfRun, MarkedRowsComeInTheOrderOfMarking) {
    const auto table = test::TableOf({TArticle{}, TArticle{}, TArticle{}});
    EXPECT_EQ(RowsOfRun(*table, true, {2, 0}, 1), (std::vector<TRowId>{2, 0}));
}

TEST(RowsOfRun, WithNothingMarkedTheCurrentRowIsTaken) {
    const auto table = test::TableOf({TArticle{}, TArticle{}, TArticle{}});
    EXPECT_EQ(RowsOfRun(*table, true, {}, 1), (std::vector<TRowId>{1}));
    EXPECT_EQ(RowsOfRun(*table, true, {}, {}), (std::vector<TRowId>{}));
}

}  // namespace
}  // namespace tolvane
