#include "config/WindowPlace.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

TEST(WindowPlace, LiesUnderTheWindowsName) {
    TIniDocument document;
    SaveWindowPlace({-5, 20, 700, 500, true}, "PLUGRID", "List", document);
    EXPECT_EQ(document.ReadText("PLUGRID", "List_Left", ""), "-5");
    EXPECT_EQ(document.ReadText("PLUGRID", "List_Top", ""), "20");
    EXPECT_EQ(document.ReadText("PLUGRID", "List_Width", ""), "700");
    EXPECT_EQ(document.ReadText("PLUGRID", "List_Height", ""), "500");
    EXPECT_EQ(document.ReadText("PLUGRID", "List_Maximized", ""), "1");
}

TEST(WindowPlace, WithoutASizeThereIsNone) {
    EXPECT_FALSE(LoadWindowPlace(TIniDocument(), "PLUGRID", "List").has_value());
    EXPECT_FALSE(LoadWindowPlace(TIniDocument("[PLUGRID]\r\nList_Left=4\r\nList_Width=300\r\n"
                                              "List_Height=-1\r\n"),
                                 "PLUGRID", "List")
                     .has_value());
}

TEST(WindowPlace, TwoWindowsOfOneSectionKeepTheirOwn) {
    TIniDocument document;
    SaveWindowPlace({1, 2, 300, 400, false}, "A", "One", document);
    SaveWindowPlace({5, 6, 700, 800, true}, "A", "Two", document);
    const auto one = LoadWindowPlace(document, "A", "One");
    ASSERT_TRUE(one.has_value());
    EXPECT_EQ(one->left, 1);
    EXPECT_EQ(one->height, 400);
    EXPECT_FALSE(one->maximized);
    const auto two = LoadWindowPlace(document, "A", "Two");
    ASSERT_TRUE(two.has_value());
    EXPECT_EQ(two->top, 6);
    EXPECT_TRUE(two->maximized);
}

}  // namespace
}  // namespace tolvane
