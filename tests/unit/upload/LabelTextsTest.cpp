#include "upload/LabelTexts.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tolvane {
namespace {

std::vector<std::int32_t> Sent(std::int32_t scaleType, std::int32_t mode) {
    std::vector<std::int32_t> parameters;
    for (const TLabelText& text : LabelTexts()) {
        if (IsSent(text, scaleType, mode)) parameters.push_back(text.parameter);
    }
    return parameters;
}

using TNumbers = std::vector<std::int32_t>;

TEST(LabelTexts, AnEvlScaleInMode0GetsOrders1To6) {
    EXPECT_EQ(Sent(16, 0), (TNumbers{0, 4, 5, 1, 2, 3}));
}

TEST(LabelTexts, AnEvlScaleInMode1Or3GetsOrders1To3) {
    EXPECT_EQ(Sent(16, 1), (TNumbers{0, 4, 5}));
    EXPECT_EQ(Sent(16, 3), (TNumbers{0, 4, 5}));
}

TEST(LabelTexts, AnEvlScaleInMode2GetsOrders1To8) {
    EXPECT_EQ(Sent(16, 2), (TNumbers{0, 4, 5, 1, 2, 3, 6, 7}));
}

TEST(LabelTexts, AnEtsScaleGetsOrders1To10InEveryMode) {
    for (int mode = 0; mode < 4; ++mode)
        EXPECT_EQ(Sent(5000, mode), (TNumbers{0, 4, 5, 1, 2, 3, 6, 7, 14, 15})) << mode;
}

TEST(LabelTexts, AnS300ScaleGetsMoreWithItsMode) {
    EXPECT_EQ(Sent(300, 0), (TNumbers{0, 4, 5}));
    EXPECT_EQ(Sent(300, 1), (TNumbers{0, 4, 5, 1, 2, 3, 6, 7}));
    EXPECT_EQ(Sent(300, 2), (TNumbers{0, 4, 5, 1, 2, 3, 6, 7, 14, 15, 19, 20, 21}));
    EXPECT_EQ(Sent(300, 3), (TNumbers{0, 4, 5, 1, 2, 3, 6, 7, 14, 15}));
}

TEST(LabelTexts, AnUnknownScaleGetsOrders1To3InEveryMode) {
    for (int mode = 0; mode < 4; ++mode)
        EXPECT_EQ(Sent(77, mode), (TNumbers{0, 4, 5})) << mode;
}

TEST(LabelTexts, ValueToBytesText_LeavesLeadingZeroBytesOutButKeepsTheLast) {
    EXPECT_EQ(ValueToBytesText(0), std::string("\x00", 1));
    EXPECT_EQ(ValueToBytesText(5), "\x05");
    EXPECT_EQ(ValueToBytesText(255), "\xFF");
    EXPECT_EQ(ValueToBytesText(256), std::string("\x01\x00", 2));
    EXPECT_EQ(ValueToBytesText(365), "\x01\x6D");
    EXPECT_EQ(ValueToBytesText(65535), "\xFF\xFF");
    EXPECT_EQ(ValueToBytesText(65536), std::string("\x01\x00\x00", 3));
    EXPECT_EQ(ValueToBytesText(-1), "\xFF\xFF\xFF\xFF");
}

TEST(LabelTexts, PluTail_CutsToAsManyDigitsAsTheHighestNumberHas) {
    EXPECT_EQ(PluTail(12345, 3000), 2345);
    EXPECT_EQ(PluTail(7, 3000), 7);
    EXPECT_EQ(PluTail(1234, 999), 234);
    EXPECT_EQ(PluTail(10007, 3000), 7);
    EXPECT_EQ(PluTail(12000, 999), 0);
    EXPECT_EQ(PluTail(15, 0), 5);
    EXPECT_EQ(PluTail(65535, 65535), 65535);
}

TEST(LabelTexts, PluTail_KeepsASignOnlyWhenItFits) {
    EXPECT_EQ(PluTail(-5, 3000), -5);
    EXPECT_EQ(PluTail(-12345, 3000), 2345);
}

}  // namespace
}  // namespace tolvane
