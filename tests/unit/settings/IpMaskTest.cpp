#include "settings/IpMask.h"

#include <gtest/gtest.h>

namespace tolvane::test {
namespace {

TIpMask MaskOf(std::string_view text) {
    TIpMask mask;
    mask.SetText(text);
    return mask;
}

// Types one character after another. Returns the caret's final position.
int TypeAll(TIpMask& mask, std::string_view keys, int caret = 0) {
    for (const char key : keys) {
        const auto next = mask.Type(key, {caret, caret});
        if (next) caret = *next;
    }
    return caret;
}

}  // namespace

TEST(IpMaskTest, StartsWithBlanksBetweenFixedDots) {
    EXPECT_EQ(TIpMask().Text(), "   .   .   .   ");
}

TEST(IpMaskTest, SetText_PutsEachGroupIntoItsThreePlaces) {
    EXPECT_EQ(MaskOf("192.168.1.10").Text(), "192.168.1  .10 ");
    EXPECT_EQ(MaskOf("192.168.001.010").Text(), "192.168.001.010");
    EXPECT_EQ(MaskOf("192.168.1  .10 ").Text(), "192.168.1  .10 ");
    EXPECT_EQ(MaskOf("").Text(), "   .   .   .   ");
}

TEST(IpMaskTest, SetText_DropsWhatHasNoPlace) {
    EXPECT_EQ(MaskOf("COM5").Text(), "5  .   .   .   ");
    EXPECT_EQ(MaskOf("1234.5.6.7.8").Text(), "123.5  .6  .7  ");
}

TEST(IpMaskTest, SetText_ReplacesWhatWasThere) {
    TIpMask mask = MaskOf("192.168.111.222");
    mask.SetText("1.2.3.4");
    EXPECT_EQ(mask.Text(), "1  .2  .3  .4  ");
}

TEST(IpMaskTest, Type_MovesOnOverTheDots) {
    TIpMask mask;
    EXPECT_EQ(TypeAll(mask, "192168001010"), 15);
    EXPECT_EQ(mask.Text(), "192.168.001.010");
}

TEST(IpMaskTest, Type_DotGoesToTheNextGroup) {
    TIpMask mask;
    EXPECT_EQ(TypeAll(mask, "10.0.0.7"), 13);
    EXPECT_EQ(mask.Text(), "10 .0  .0  .7  ");
}

TEST(IpMaskTest, Type_DotAtTheVeryStartGoesToTheSecondGroup) {
    TIpMask mask;
    EXPECT_EQ(mask.Type('.', {0, 0}), 4);
}

TEST(IpMaskTest, Type_DotAfterAFullGroupDoesNotSkipTheNextOne) {
    TIpMask mask;
    EXPECT_EQ(TypeAll(mask, "192.168.1.10"), 14);
    EXPECT_EQ(mask.Text(), "192.168.1  .10 ");
}

TEST(IpMaskTest, Type_DotOverASelectedGroupGoesToTheNextOne) {
    TIpMask mask = MaskOf("1.2.3.4");
    EXPECT_EQ(mask.Type('.', {4, 7}), 8);
}

TEST(IpMaskTest, Type_CommaOfTheNumberPadIsADot) {
    TIpMask mask;
    TypeAll(mask, "10,0,0,7");
    EXPECT_EQ(mask.Text(), "10 .0  .0  .7  ");
}

TEST(IpMaskTest, Type_TakesDigitsOnly) {
    TIpMask mask = MaskOf("1.2.3.4");
    for (const char key : {'a', '-', ' ', '/', ':', '\xE0'})
        EXPECT_EQ(mask.Type(key, {0, 15}), std::nullopt);
    EXPECT_EQ(mask.Text(), "1  .2  .3  .4  ");
}

TEST(IpMaskTest, Type_BeforeADotWritesAfterIt) {
    TIpMask mask = MaskOf("1.2.3.4");
    EXPECT_EQ(mask.Type('9', {3, 3}), 5);
    EXPECT_EQ(mask.Text(), "1  .9  .3  .4  ");
}

TEST(IpMaskTest, Type_BlanksTheSelectionFirstButNoDot) {
    TIpMask mask = MaskOf("192.168.1.10");
    EXPECT_EQ(mask.Type('7', {0, 15}), 1);
    EXPECT_EQ(mask.Text(), "7  .   .   .   ");
    mask = MaskOf("192.168.1.10");
    EXPECT_EQ(mask.Type('7', {5, 9}), 6);
    EXPECT_EQ(mask.Text(), "192.17 .   .10 ");
}

TEST(IpMaskTest, Type_TakesNothingAfterTheLastPosition) {
    TIpMask mask = MaskOf("192.168.001.010");
    EXPECT_EQ(mask.Type('7', {15, 15}), std::nullopt);
    EXPECT_EQ(mask.Type('.', {12, 15}), std::nullopt);
    EXPECT_EQ(mask.Text(), "192.168.001.010");
}

TEST(IpMaskTest, Paste_AnAddressReplacesEverything) {
    TIpMask mask = MaskOf("192.168.1.10");
    EXPECT_EQ(mask.Paste(" 10.0.0.7\r\n", {6, 6}), 15);
    EXPECT_EQ(mask.Text(), "10 .0  .0  .7  ");
    EXPECT_EQ(mask.Paste("192.168.  1.10 ", {0, 0}), 15);
    EXPECT_EQ(mask.Text(), "192.168.1  .10 ");
}

TEST(IpMaskTest, Paste_DigitsAreTypedFromTheSelectionsStart) {
    TIpMask mask = MaskOf("192.168.1.10");
    EXPECT_EQ(mask.Paste("25", {8, 11}), 10);
    EXPECT_EQ(mask.Text(), "192.168.25 .10 ");
}

TEST(IpMaskTest, Paste_RefusesWhatIsNoAddress) {
    TIpMask mask = MaskOf("192.168.1.10");
    for (const char* text : {"", "scale", "1.2.3", "1.2.3.4.5", "1921.1.1.1", "1.2.3.x", "-1",
                             "http://1.2.3.4", "1 2", "1.1 1.1.1"})
        EXPECT_EQ(mask.Paste(text, {0, 15}), std::nullopt) << text;
    EXPECT_EQ(mask.Text(), "192.168.1  .10 ");
}

TEST(IpMaskTest, Paste_RefusesMoreDigitsThanThereArePlaces) {
    TIpMask mask = MaskOf("192.168.1.10");
    EXPECT_EQ(mask.Paste("1234", {12, 12}), std::nullopt);
    EXPECT_EQ(mask.Text(), "192.168.1  .10 ");
}

TEST(IpMaskTest, Backspace_BlanksThePlaceBeforeTheCaretAndStepsOverDots) {
    TIpMask mask = MaskOf("192.168.1.10");
    EXPECT_EQ(mask.Backspace({14, 14}), 13);
    EXPECT_EQ(mask.Text(), "192.168.1  .1  ");
    EXPECT_EQ(mask.Backspace({4, 4}), 2);
    EXPECT_EQ(mask.Text(), "19 .168.1  .1  ");
    EXPECT_EQ(mask.Backspace({0, 0}), 0);
    EXPECT_EQ(mask.Text(), "19 .168.1  .1  ");
}

TEST(IpMaskTest, Backspace_BlanksTheSelection) {
    TIpMask mask = MaskOf("192.168.1.10");
    EXPECT_EQ(mask.Backspace({4, 9}), 4);
    EXPECT_EQ(mask.Text(), "192.   .   .10 ");
}

TEST(IpMaskTest, Delete_BlanksThePlaceAtTheCaretOrTheSelection) {
    TIpMask mask = MaskOf("192.168.1.10");
    EXPECT_EQ(mask.Delete({3, 3}), 4);
    EXPECT_EQ(mask.Text(), "192. 68.1  .10 ");
    EXPECT_EQ(mask.Delete({0, 15}), 0);
    EXPECT_EQ(mask.Text(), "   .   .   .   ");
    EXPECT_EQ(mask.Delete({15, 15}), 15);
    EXPECT_EQ(mask.Text(), "   .   .   .   ");
}

}  // namespace tolvane::test
