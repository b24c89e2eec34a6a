#include "upload/ArticleLine.h"

#include <gtest/gtest.h>

#include <string>

#include "text/Cp1251.h"

namespace tolvane {
namespace {

constexpr std::string_view kWholeLine =
    "12|22012|2|4|5|12.34|7|30|Име|Второ|a|b|c|L-7|1|16|101|"_cp1251;

TEST(ArticleLine, IsForScale_AListNamesTheScalesItHolds) {
    EXPECT_TRUE(IsForScale("2,5", 2));
    EXPECT_TRUE(IsForScale("2,5", 5));
    EXPECT_FALSE(IsForScale("2,5", 1));
    EXPECT_FALSE(IsForScale("2,5", 25));
}

TEST(ArticleLine, IsForScale_ZeroMeansEveryScale) {
    EXPECT_TRUE(IsForScale("0", 1));
    EXPECT_TRUE(IsForScale("0", 60));
    EXPECT_TRUE(IsForScale("7,0", 3));
}

TEST(ArticleLine, IsForScale_ABadPartRejectsBeforeALaterZeroIsReached) {
    EXPECT_TRUE(IsForScale("3,x,0", 3));
    EXPECT_FALSE(IsForScale("3,x,0", 4));
    EXPECT_FALSE(IsForScale("3,,0", 4));
    EXPECT_FALSE(IsForScale(",3", 3));
}

TEST(ArticleLine, IsForScale_AnEmptyListGoesToNoScale) {
    EXPECT_FALSE(IsForScale("", 0));
    EXPECT_FALSE(IsForScale("", 1));
}

TEST(ArticleLine, IsForScale_ATrailingCommaEndsTheList) {
    EXPECT_TRUE(IsForScale("4,", 4));
    EXPECT_FALSE(IsForScale("4,", 5));
}

TEST(ArticleLine, Parse_FillsEveryField) {
    TPLUD plu;
    ASSERT_TRUE(ParseArticleLine(kWholeLine, '.', plu));
    EXPECT_EQ(plu.ScaleNumber, 12);
    EXPECT_EQ(plu.Barcode, "22012");
    EXPECT_EQ(plu.UnitCode, 2);
    EXPECT_EQ(plu.Reserved4, 4);
    EXPECT_EQ(plu.Reserved5, 5);
    EXPECT_EQ(plu.PriceHundredths, 1234);
    EXPECT_EQ(plu.Reserved7, 7);
    EXPECT_EQ(plu.BestBeforeDays, 30);
    EXPECT_EQ(plu.LabelName1, "Име"_cp1251);
    EXPECT_EQ(plu.LabelName2, "Второ"_cp1251);
    EXPECT_EQ(plu.Comment1, "a");
    EXPECT_EQ(plu.Comment2, "b");
    EXPECT_EQ(plu.Comment3, "c");
    EXPECT_EQ(plu.ShipmentNumber, "L-7");
    EXPECT_TRUE(plu.WholeUnits);
    EXPECT_EQ(plu.Reserved16, 16);
    EXPECT_EQ(plu.ArticleNumber, 101);
}

TEST(ArticleLine, Parse_ALineWith16SeparatorsIsNotWhole) {
    TPLUD plu;
    EXPECT_FALSE(ParseArticleLine("12|22012|1|0|0|1.00|0|0|A|B|||||0|0|101", '.', plu));
    EXPECT_EQ(plu.ScaleNumber, 12);
    EXPECT_EQ(plu.PriceHundredths, 100);
    EXPECT_EQ(plu.LabelName2, "B");
    EXPECT_EQ(plu.ArticleNumber, 0);
}

TEST(ArticleLine, Parse_TextAfterThe17thSeparatorIsIgnored) {
    TPLUD plu;
    EXPECT_TRUE(ParseArticleLine("12|22012|1|0|0|1.00|0|0|A|B|||||0|0|101|999|x", '.', plu));
    EXPECT_EQ(plu.ArticleNumber, 101);
}

TEST(ArticleLine, Parse_AFieldThatIsNoNumberTakesItsDefault) {
    TPLUD plu;
    ASSERT_TRUE(ParseArticleLine("x|b|x|x|x|x|x|x|A|B|||||x|x|x|", '.', plu));
    EXPECT_EQ(plu.ScaleNumber, 0);
    EXPECT_EQ(plu.UnitCode, 1);
    EXPECT_EQ(plu.Reserved4, 0);
    EXPECT_EQ(plu.Reserved5, 0);
    EXPECT_EQ(plu.PriceHundredths, 0);
    EXPECT_EQ(plu.Reserved7, 0);
    EXPECT_EQ(plu.BestBeforeDays, 0);
    EXPECT_FALSE(plu.WholeUnits);
    EXPECT_EQ(plu.Reserved16, 0);
    EXPECT_EQ(plu.ArticleNumber, 0);
}

struct TPriceCase {
    const char* text;
    char separator;
    std::int32_t hundredths;
};

void PrintTo(const TPriceCase& price, std::ostream* out) {
    *out << price.text;
}

class TPriceTest : public ::testing::TestWithParam<TPriceCase> {};

TEST_P(TPriceTest, Parse_ReadsThePriceInHundredths) {
    TPLUD plu;
    const std::string line = std::string("1|b|1|0|0|") + GetParam().text + "|0|0|A|B|||||0|0|1|";
    ASSERT_TRUE(ParseArticleLine(line, GetParam().separator, plu));
    EXPECT_EQ(plu.PriceHundredths, GetParam().hundredths);
}

INSTANTIATE_TEST_SUITE_P(Prices, TPriceTest,
                         ::testing::Values(TPriceCase{"12.5", '.', 1250},
                                           TPriceCase{"12,50", ',', 1250},
                                           TPriceCase{"0.05", '.', 5}, TPriceCase{"0", '.', 0},
                                           TPriceCase{"9999.99", '.', 999999},
                                           TPriceCase{"10000.00", '.', 1000000},
                                           TPriceCase{"-1.50", '.', -150},
                                           // the other separator makes it no number
                                           TPriceCase{"12,50", '.', 0},
                                           // beyond a 32-bit integer
                                           TPriceCase{"99999999999.00", '.', 0}));

TEST(ArticleLine, Parse_EmptiesTheTextsOfTheArticleBefore) {
    TPLUD plu;
    ASSERT_TRUE(ParseArticleLine(kWholeLine, '.', plu));
    EXPECT_FALSE(ParseArticleLine("13|", '.', plu));
    EXPECT_EQ(plu.ScaleNumber, 13);
    EXPECT_EQ(plu.LabelName1, "");
    EXPECT_EQ(plu.ShipmentNumber, "");
    EXPECT_EQ(plu.ArticleNumber, 101);
}

}  // namespace
}  // namespace tolvane
