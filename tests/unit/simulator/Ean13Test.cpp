#include "simulator/Ean13.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace tolvane::simulator {
namespace {

TEST(Ean13Test, CheckDigit_WeighsTheDigitsByOneAndThree) {
    EXPECT_EQ(Ean13CheckDigit("400638133393"), '1');  // 89
    EXPECT_EQ(Ean13CheckDigit("202201200500"), '0');  // 30
    EXPECT_EQ(Ean13CheckDigit("202201201234"), '3');  // 37
    EXPECT_EQ(Ean13CheckDigit("000000000000"), '0');
}

TEST(Ean13Test, CheckDigit_IsOnlyForTwelveDigits) {
    EXPECT_FALSE(Ean13CheckDigit(""));
    EXPECT_FALSE(Ean13CheckDigit("40063813339"));
    EXPECT_FALSE(Ean13CheckDigit("4006381333931"));
    EXPECT_FALSE(Ean13CheckDigit("40063813339x"));
}

// The first digit is 4: of the left half the second, fifth and sixth digits are even.
TEST(Ean13Test, Modules_AreGuardsAndSevenForEachDigit) {
    EXPECT_EQ(Ean13Modules("4006381333931"),
              "101"
              "0001101"
              "0100111"
              "0101111"
              "0111101"
              "0001001"
              "0110011"
              "01010"
              "1000010"
              "1000010"
              "1000010"
              "1110100"
              "1000010"
              "1100110"
              "101");
}

// The first digit is 2: the third, fourth and sixth are even.
TEST(Ean13Test, Modules_TakeTheParityOfTheFirstDigit) {
    EXPECT_EQ(Ean13Modules("2022012005000"),
              "101"
              "0001101"
              "0010011"
              "0011011"
              "0100111"
              "0011001"
              "0011011"
              "01010"
              "1110010"
              "1110010"
              "1001110"
              "1110010"
              "1110010"
              "1110010"
              "101");
}

TEST(Ean13Test, Modules_NeedTheRightCheckDigit) {
    EXPECT_FALSE(Ean13Modules(""));
    EXPECT_FALSE(Ean13Modules("4006381333932"));
    EXPECT_FALSE(Ean13Modules("400638133393"));
    EXPECT_FALSE(Ean13Modules("<script>alert"));
}

TEST(Ean13Test, Svg_HasOneRectangleForEachBarBehindElevenQuietModules) {
    const std::string svg = Ean13Svg("4006381333931");
    // The guard 101, then the first digit's 0001101: bars at 0, 2, 6 to 7, 9.
    EXPECT_NE(svg.find("<path d=\"M11 0h1v52h-1zM13 0h1v52h-1zM17 0h2v46h-2zM20 0h1v46h-1z"),
              svg.npos)
        << svg;
    // Three guards of two bars each, and two for each of twelve digits.
    EXPECT_EQ(std::count(svg.begin(), svg.end(), 'z'), 30);
    EXPECT_NE(svg.find("viewBox=\"0 0 113 58\""), svg.npos);
    EXPECT_NE(svg.find(">4</text>"), svg.npos);
    EXPECT_NE(svg.find(">006381</text>"), svg.npos);
    EXPECT_NE(svg.find(">333931</text>"), svg.npos);
    EXPECT_EQ(Ean13Svg("4006381333932"), "");
}

}  // namespace
}  // namespace tolvane::simulator
