#include "simulator/Label.h"

#include <gtest/gtest.h>

#include "Bytes.h"

namespace tolvane::simulator {
namespace {

TBytes Ascii(const std::string& text) {
    return {text.begin(), text.end()};
}

TArticle Cheese() {
    TArticle article;
    article.number = 300;
    article.price = 1234;
    article.texts[0].bytes = Bytes("D1 E8 F0 E5 ED E5 20 20");
    article.texts[4].bytes = Bytes("01 1E");
    article.texts[5].bytes = Ascii("22012");
    return article;
}

TEST(LabelTest, FiveDigits_BecomePrefixCodeGramsAndCheckDigit) {
    const TLabel label = MakeLabel(Cheese(), TCodeTable::Windows, {});
    EXPECT_EQ(label.names, std::vector<std::string>{"Сирене"});
    EXPECT_EQ(label.bestBefore, "30");
    EXPECT_EQ(label.price, "12.34");
    EXPECT_EQ(label.amount, "0.500");
    EXPECT_EQ(label.total, "6.17");
    EXPECT_EQ(label.barcode, "2022012005000");
}

TEST(LabelTest, TheTotal_IsRoundedToHundredths) {
    const TLabel label = MakeLabel(Cheese(), TCodeTable::Windows, {.grams = 1234});
    EXPECT_EQ(label.amount, "1.234");
    EXPECT_EQ(label.total, "15.23");  // 15.22756
    EXPECT_EQ(label.barcode, "2022012012343");
}

TEST(LabelTest, TheMost_FitsIntoPriceAndBarcode) {
    TArticle article = Cheese();
    article.price = 999999;
    const TLabel label =
        MakeLabel(article, TCodeTable::Windows, {.grams = 99999, .barcodePrefix = "29"});
    EXPECT_EQ(label.total, "999989.00");  // 999989.00001
    EXPECT_EQ(label.barcode.substr(0, 12), "292201299999");
}

TEST(LabelTest, APiece_IsOneOfItsPrice) {
    TArticle article = Cheese();
    article.pieces = true;
    const TLabel label = MakeLabel(article, TCodeTable::Windows, {.grams = 1234});
    EXPECT_TRUE(label.pieces);
    EXPECT_EQ(label.amount, "1");
    EXPECT_EQ(label.total, "12.34");
    EXPECT_EQ(label.barcode, "2022012000012");
}

TEST(LabelTest, AnotherTextThanFiveDigits_MakesNoBarcode) {
    for (const std::string text : {"", "2201", "220123", "22o12", "22 12"}) {
        TArticle article = Cheese();
        article.texts[5].bytes = Ascii(text);
        const TLabel label = MakeLabel(article, TCodeTable::Windows, {});
        EXPECT_EQ(label.barcode, "") << text;
        EXPECT_EQ(label.text5, text);
    }
}

TEST(LabelTest, TheLongComment_IsTakenBeforeTheShortOne) {
    TArticle article = Cheese();
    article.texts[1].bytes = Ascii("second");
    article.texts[2].bytes = Ascii("short 1");
    article.texts[3].bytes = Ascii("short 2");
    article.texts[6].bytes = Ascii("short 3");
    article.texts[7].bytes = Ascii("L-17");
    article.texts[20].bytes = Ascii("long 2");
    article.texts[21].bytes = Ascii("   ");
    const TLabel label = MakeLabel(article, TCodeTable::Windows, {});
    EXPECT_EQ(label.names, (std::vector<std::string>{"Сирене", "second"}));
    EXPECT_EQ(label.comments, (std::vector<std::string>{"short 1", "long 2", "short 3"}));
    EXPECT_EQ(label.lot, "L-17");
}

TEST(LabelTest, WhatNobodyHasWritten_IsEmpty) {
    TArticle article;
    article.number = 9;
    const TLabel label = MakeLabel(article, TCodeTable::Windows, {});
    EXPECT_TRUE(label.names.empty());
    EXPECT_EQ(label.price, "");
    EXPECT_EQ(label.total, "");
    EXPECT_EQ(label.bestBefore, "");
    EXPECT_EQ(label.barcode, "");
}

}  // namespace
}  // namespace tolvane::simulator
