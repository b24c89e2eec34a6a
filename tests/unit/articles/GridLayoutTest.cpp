#include "articles/GridLayout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace tolvane {
namespace {

std::vector<TField> FieldsOf(const TGridLayout& layout) {
    std::vector<TField> fields;
    for (const TColumnLayout& column : layout.columns)
        fields.push_back(column.field);
    return fields;
}

std::vector<TField> FirstOrder() {
    std::vector<TField> fields;
    for (const TGridColumn& column : kGridColumns)
        fields.push_back(column.field);
    return fields;
}

TEST(GridLayout, AnEmptyFileGivesTheFirstOrderAndHidesNothing) {
    const TGridLayout layout = LoadGridLayout(TIniDocument(), 96);
    EXPECT_EQ(FieldsOf(layout), FirstOrder());
    EXPECT_EQ(layout.columns[28].field, TField::LABEL_COMMENT1);
    EXPECT_EQ(layout.columns[28].width, 126);
    EXPECT_EQ(layout.hiddenRows, "");
    EXPECT_FALSE(layout.place.has_value());
}

TEST(GridLayout, FirstWidthsFollowTheResolution) {
    const TGridLayout layout = LoadGridLayout(TIniDocument(), 144);
    EXPECT_EQ(layout.columns[28].width, 189);  // 126 * 1.5
    EXPECT_EQ(layout.columns[29].width, 179);  // 119 * 1.5 = 178.5
}

TEST(GridLayout, WhatIsSavedIsLoaded) {
    TGridLayout layout = LoadGridLayout(TIniDocument(), 96);
    std::reverse(layout.columns.begin(), layout.columns.end());
    layout.columns[3].width = 77;
    layout.hiddenRows = "0101";
    layout.place = TWindowPlace{10, 20, 610, 340, false};
    TIniDocument document;
    SaveGridLayout(layout, 96, document);
    const TGridLayout loaded = LoadGridLayout(document, 96);
    EXPECT_EQ(FieldsOf(loaded), FieldsOf(layout));
    EXPECT_EQ(loaded.columns[3].width, 77);
    EXPECT_EQ(loaded.hiddenRows, "0101");
    ASSERT_TRUE(loaded.place.has_value());
    EXPECT_EQ(loaded.place->width, 610);
}

TEST(GridLayout, LiesInSectionPluGrid) {
    TGridLayout layout = LoadGridLayout(TIniDocument(), 96);
    layout.hiddenRows = "00000000000000000000000000000010";
    TIniDocument document;
    SaveGridLayout(layout, 96, document);
    EXPECT_EQ(document.ReadText("PLUGRID", "HiddenRows", ""), "00000000000000000000000000000010");
    EXPECT_EQ(document.ReadText("PLUGRID", "aDBGrid_PixelsPerInch", ""), "96");
    EXPECT_EQ(document.ReadText("PLUGRID", "aDBGrid_Column1", "").substr(0, 9), "PLU_NUMB,");
    EXPECT_EQ(document.ReadText("PLUGRID", "aDBGrid_Column32", ""), "SHIPMENTNUMB,99");
}

TEST(GridLayout, WidthsOfAnotherResolutionAreConverted) {
    const TIniDocument document(
        "[PLUGRID]\r\naDBGrid_PixelsPerInch=96\r\naDBGrid_Column1=PLU_NAME,200\r\n");
    EXPECT_EQ(LoadGridLayout(document, 144).columns[0].width, 300);
}

TEST(GridLayout, AConvertedWidthIsNoWiderThanOneThatIsLoaded) {
    const TIniDocument document(
        "[PLUGRID]\r\naDBGrid_PixelsPerInch=1\r\naDBGrid_Column1=PLU_NAME,10000\r\n");
    const TGridLayout layout = LoadGridLayout(document, 96);
    EXPECT_EQ(layout.columns[0].field, TField::PLU_NAME);
    EXPECT_EQ(layout.columns[0].width, 10000);
}

TEST(GridLayout, ColumnsThatTheFileLeavesOutComeLastInTheirFirstOrder) {
    const TIniDocument document(
        "[PLUGRID]\r\naDBGrid_Column1=SHIPMENTNUMB,50\r\n"
        "aDBGrid_Column2=PLU_NAME,60\r\n");
    const TGridLayout layout = LoadGridLayout(document, 96);
    std::vector<TField> expected = FirstOrder();
    expected.pop_back();
    expected.erase(std::find(expected.begin(), expected.end(), TField::PLU_NAME));
    expected.insert(expected.begin(), {TField::SHIPMENTNUMB, TField::PLU_NAME});
    EXPECT_EQ(FieldsOf(layout), expected);
    EXPECT_EQ(layout.columns[0].width, 50);
}

TEST(GridLayout, UnknownRepeatedAndColumnlessFieldsAreIgnored) {
    const TIniDocument document(
        "[PLUGRID]\r\naDBGrid_Column1=NOSUCH,50\r\n"
        "aDBGrid_Column2=PR_ID,50\r\naDBGrid_Column3=PLU_NAME,60\r\n"
        "aDBGrid_Column4=PLU_NAME,70\r\naDBGrid_Column5=\r\n");
    const TGridLayout layout = LoadGridLayout(document, 96);
    EXPECT_EQ(layout.columns[0].field, TField::PLU_NAME);
    EXPECT_EQ(layout.columns[0].width, 60);
    EXPECT_EQ(layout.columns[1].field, TField::PLU_NUMB);
    std::vector<TField> fields = FieldsOf(layout);
    std::vector<TField> first = FirstOrder();
    std::sort(fields.begin(), fields.end());
    std::sort(first.begin(), first.end());
    EXPECT_EQ(fields, first);
}

TEST(GridLayout, AWidthThatIsNotANumberTakesTheFirstOne) {
    for (const char* width : {"", "x", "-1", "10001", "12x", "99999999999"}) {
        const TIniDocument document("[PLUGRID]\r\naDBGrid_Column1=SHIPMENTNUMB," +
                                    std::string(width) + "\r\n");
        const TGridLayout layout = LoadGridLayout(document, 96);
        EXPECT_EQ(layout.columns[0].field, TField::SHIPMENTNUMB) << width;
        EXPECT_EQ(layout.columns[0].width, 99) << width;
    }
}

TEST(GridLayout, SavingLeavesTheRestOfTheFile) {
    TIniDocument document("; mine\r\n[SCALE1]\r\nScaleName=A\r\n[PLUGRID]\r\nOther=7\r\n");
    SaveGridLayout(LoadGridLayout(document, 96), 96, document);
    EXPECT_EQ(document.ReadText("PLUGRID", "Other", ""), "7");
    EXPECT_EQ(document.Bytes().rfind("; mine\r\n[SCALE1]\r\nScaleName=A\r\n", 0), 0U);
}

TEST(HiddenRows, AShortTextHidesNothingBeyondItsLength) {
    EXPECT_EQ(IsHidden("01", 0), false);
    EXPECT_EQ(IsHidden("01", 1), true);
    EXPECT_EQ(IsHidden("01", 2), std::nullopt);
    EXPECT_EQ(IsHidden("", 0), std::nullopt);
}

TEST(HiddenRows, AnyOtherCharacterShowsTheColumn) {
    for (const char* text : {"0", "2", "x", " "})
        EXPECT_EQ(IsHidden(text, 0), false) << text;
}

TEST(GridStyle, AMissingFileShowsEverything) {
    const TGridStyle style = LoadGridStyle(TIniDocument());
    EXPECT_TRUE(style.horizontalLines);
    EXPECT_TRUE(style.verticalLines);
    EXPECT_TRUE(style.indicator);
}

TEST(GridStyle, EachKeySwitchesItsOwn) {
    const TGridStyle horizontal =
        LoadGridStyle(TIniDocument("[PLU_LIST_STYLE]\r\nGRID_H_Line=0\r\n"));
    EXPECT_FALSE(horizontal.horizontalLines);
    EXPECT_TRUE(horizontal.verticalLines);
    EXPECT_TRUE(horizontal.indicator);
    const TGridStyle vertical =
        LoadGridStyle(TIniDocument("[plu_list_style]\r\ngrid_v_line=0\r\n"));
    EXPECT_TRUE(vertical.horizontalLines);
    EXPECT_FALSE(vertical.verticalLines);
    const TGridStyle indicator =
        LoadGridStyle(TIniDocument("[PLU_LIST_STYLE]\r\nGRID_Nav=0\r\nGRID_V_Line=1\r\n"));
    EXPECT_FALSE(indicator.indicator);
    EXPECT_TRUE(indicator.verticalLines);
}

}  // namespace
}  // namespace tolvane
