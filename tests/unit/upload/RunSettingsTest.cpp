#include "upload/RunSettings.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

TEST(RunSettings, AnEmptyFileGivesTheDefaults) {
    const TRunSettings settings = LoadRunSettings(TIniDocument());
    EXPECT_EQ(settings.choices.price, 0);
    EXPECT_EQ(settings.choices.name1, 1);
    EXPECT_EQ(settings.choices.name2, 2);
    EXPECT_FALSE(settings.place.has_value());
}

TEST(RunSettings, WhatIsSavedIsLoaded) {
    TRunSettings settings;
    settings.choices = {1, 3, 0};
    settings.place = TWindowPlace{-5, 20, 700, 500, true};
    TIniDocument document;
    SaveRunSettings(settings, document);
    const TRunSettings loaded = LoadRunSettings(document);
    EXPECT_EQ(loaded.choices.price, 1);
    EXPECT_EQ(loaded.choices.name1, 3);
    EXPECT_EQ(loaded.choices.name2, 0);
    ASSERT_TRUE(loaded.place.has_value());
    EXPECT_EQ(loaded.place->left, -5);
    EXPECT_EQ(loaded.place->top, 20);
    EXPECT_EQ(loaded.place->width, 700);
    EXPECT_EQ(loaded.place->height, 500);
    EXPECT_TRUE(loaded.place->maximized);
}

TEST(RunSettings, ItemIndexesLieInSectionScaleSettings) {
    TRunSettings settings;
    settings.choices = {1, 3, 0};
    TIniDocument document;
    SaveRunSettings(settings, document);
    EXPECT_EQ(document.ReadText("SCALESETTINGS", "PriceRadio_ItemIndex", ""), "1");
    EXPECT_EQ(document.ReadText("SCALESETTINGS", "cbPluName1_ItemIndex", ""), "3");
    EXPECT_EQ(document.ReadText("SCALESETTINGS", "cbPluName2_ItemIndex", ""), "0");
}

TEST(RunSettings, AChoiceOutOfItsRangeTakesItsDefault) {
    const TRunSettings settings = LoadRunSettings(
        TIniDocument("[SCALESETTINGS]\r\nPriceRadio_ItemIndex=2\r\ncbPluName1_ItemIndex=4\r\n"
                     "cbPluName2_ItemIndex=-1\r\n"));
    EXPECT_EQ(settings.choices.price, 0);
    EXPECT_EQ(settings.choices.name1, 1);
    EXPECT_EQ(settings.choices.name2, 2);
}

TEST(RunSettings, SavingLeavesTheRestOfTheFile) {
    TIniDocument document("; mine\r\n[SCALE1]\r\nScaleName=A\r\n[SCALESETTINGS]\r\nOther=7\r\n");
    SaveRunSettings({}, document);
    EXPECT_EQ(document.ReadText("SCALE1", "ScaleName", ""), "A");
    EXPECT_EQ(document.ReadText("SCALESETTINGS", "Other", ""), "7");
    EXPECT_EQ(document.Bytes().substr(0, 6), "; mine");
}

}  // namespace
}  // namespace tolvane
