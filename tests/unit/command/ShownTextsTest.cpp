#include "command/ShownTexts.h"

#include <gtest/gtest.h>

#include "tests/support/scales/TestScales.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

TPLUD Cheese() {
    TPLUD plu;
    plu.ScaleNumber = 2007;
    plu.ArticleNumber = 107;
    plu.Barcode = "22012";
    plu.BestBeforeDays = 30;
    plu.LabelName1 = std::string("Сирене №1"_cp1251);
    return plu;
}

std::vector<TShownText> Shown(const TPLUD& plu, std::int32_t model, std::int32_t mode,
                              std::int32_t encoding = 0) {
    TScaleRec rec = NetworkScale(7, "A");
    rec.ScaleType = model;
    rec.Encoding = encoding;
    return ShownTexts(plu, 12007, rec, {.maxPlu = 3000, .mode = mode, .text = {}});
}

std::vector<int> Parameters(const std::vector<TShownText>& texts) {
    std::vector<int> parameters;
    for (const TShownText& text : texts)
        parameters.push_back(text.parameter);
    return parameters;
}

TEST(ShownTexts, AreThoseThatModelAndModeTake) {
    EXPECT_EQ(Parameters(Shown(Cheese(), kScaleTypeEvl, 1)), (std::vector<int>{0, 4, 5}));
    EXPECT_EQ(Parameters(Shown(Cheese(), kScaleTypeEvl, 2)),
              (std::vector<int>{0, 4, 5, 1, 2, 3, 6, 7}));
    EXPECT_EQ(Parameters(Shown(Cheese(), kScaleTypeEts, 0)),
              (std::vector<int>{0, 4, 5, 1, 2, 3, 6, 7, 14, 15}));
    EXPECT_EQ(Parameters(Shown(Cheese(), kScaleTypeS300, 2)),
              (std::vector<int>{0, 4, 5, 1, 2, 3, 6, 7, 14, 15, 19, 20, 21}));
}

TEST(ShownTexts, ShowDaysAndNumbersAsTheyAre) {
    const std::vector<TShownText> texts = Shown(Cheese(), kScaleTypeEts, 0);
    EXPECT_EQ(texts.at(1).shown, "30");
    EXPECT_EQ(texts.at(2).shown, "22012");
    EXPECT_EQ(texts.at(8).shown, "12007");
    EXPECT_EQ(texts.at(9).shown, "107");
}

TEST(ShownTexts, GoThroughTheCodeTable) {
    EXPECT_EQ(Shown(Cheese(), kScaleTypeEvl, 1).at(0).shown, "Сирене №1"_cp1251);
    EXPECT_EQ(Shown(Cheese(), kScaleTypeEvl, 1).at(0).lost, "");
    const TShownText text = Shown(Cheese(), kScaleTypeEvl, 1, 2).at(0);
    EXPECT_EQ(text.wanted, "Сирене №1"_cp1251);
    EXPECT_EQ(text.shown, "Сирене y1"_cp1251);
    EXPECT_EQ(text.lost, "№"_cp1251);
    EXPECT_FALSE(text.isCut);
}

TEST(ShownTexts, NameALostLetterOnce) {
    TPLUD plu = Cheese();
    plu.LabelName1 = std::string("№№ „"_cp1251);
    EXPECT_EQ(Shown(plu, kScaleTypeEvl, 1, 2).at(0).lost, "№„"_cp1251);
}

TEST(ShownTexts, AreCutToTheLengthOfTheModel) {
    TPLUD plu = Cheese();
    plu.Comment1 = std::string(64, 'c');
    const std::vector<TShownText> s300 = Shown(plu, kScaleTypeS300, 2);
    EXPECT_EQ(s300.at(4).shown, std::string(31, 'c'));
    EXPECT_TRUE(s300.at(4).isCut);
    EXPECT_EQ(s300.at(10).shown, std::string(63, 'c'));
    EXPECT_TRUE(s300.at(10).isCut);
    plu.Comment1 = std::string(63, 'c');
    EXPECT_FALSE(Shown(plu, kScaleTypeS300, 2).at(10).isCut);
}

}  // namespace
}  // namespace tolvane::test
