#include "articles/Promotion.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

// 6 May 2024 was a Monday.
TLocalDateTime DayAt(int dayOfWeek, TTimeOfDay time = {12, 0, 0, 0}) {
    return {{2024, 5, 5 + dayOfWeek}, time};
}

TRegionalSettings Regional() {
    TRegionalSettings regional;
    regional.longTimePattern = "HH:mm:ss";
    return regional;
}

bool OnDay(std::string_view days, int dayOfWeek) {
    return IsPromotionValid({days, {}, {}}, DayAt(dayOfWeek), Regional());
}

bool AtTime(std::string_view from, std::string_view to, TTimeOfDay now) {
    return IsPromotionValid({"1111111", from, to}, DayAt(1, now), Regional());
}

TEST(Promotion, ANullOrShortDayMaskIsNeverActive) {
    for (int day = 1; day <= 7; ++day)
        EXPECT_FALSE(OnDay("", day));
    EXPECT_TRUE(OnDay("111", 3));
    EXPECT_FALSE(OnDay("111", 4));
    EXPECT_FALSE(OnDay("111111", 7));
}

TEST(Promotion, AMaskOfSevenOnesIsActiveEveryDay) {
    for (int day = 1; day <= 7; ++day)
        EXPECT_TRUE(OnDay("1111111", day));
}

TEST(Promotion, SixZerosFollowedByAOneOnlyOnSundays) {
    for (int day = 1; day <= 6; ++day)
        EXPECT_FALSE(OnDay("0000001", day));
    EXPECT_TRUE(OnDay("0000001", 7));
}

TEST(Promotion, OnlyAOneCountsInTheMask) {
    EXPECT_FALSE(OnDay("2111111", 1));
    EXPECT_FALSE(OnDay(" 111111", 1));
    EXPECT_TRUE(OnDay("11111110", 7));
}

TEST(Promotion, AStartTimeThatEqualsTheCurrentTimeToTheSecondIsNotActive) {
    EXPECT_FALSE(AtTime("10:00:00", "12:00:00", {10, 0, 0, 0}));
    EXPECT_FALSE(AtTime("10:00:00", "12:00:00", {10, 0, 0, 999}));
    EXPECT_TRUE(AtTime("10:00:00", "12:00:00", {10, 0, 1, 0}));
}

TEST(Promotion, TheEndTimeIsExclusive) {
    EXPECT_TRUE(AtTime("10:00:00", "12:00:00", {11, 59, 59, 999}));
    EXPECT_FALSE(AtTime("10:00:00", "12:00:00", {12, 0, 0, 0}));
    EXPECT_FALSE(AtTime("10:00:00", "12:00:00", {9, 59, 59, 0}));
}

TEST(Promotion, AMissingTimeIsAnyTime) {
    EXPECT_TRUE(AtTime("", "", {0, 0, 0, 0}));
    EXPECT_TRUE(AtTime("", "08:00:00", {23, 0, 0, 0}));
    EXPECT_TRUE(AtTime("22:00:00", "", {1, 0, 0, 0}));
}

TEST(Promotion, ATimeThatDoesNotConvertFailsTheTestSilently) {
    EXPECT_FALSE(AtTime("сутрин", "12:00:00", {11, 0, 0, 0}));
    EXPECT_FALSE(AtTime("10:00:00", "25:00:00", {11, 0, 0, 0}));
}

TEST(Promotion, ASpanOverMidnightIsNeverActive) {
    EXPECT_FALSE(AtTime("22:00:00", "06:00:00", {23, 0, 0, 0}));
    EXPECT_FALSE(AtTime("22:00:00", "06:00:00", {1, 0, 0, 0}));
}

TEST(Promotion, TimesFollowTheRegionalSettings) {
    TRegionalSettings regional;
    regional.longTimePattern = "h:mm:ss tt";
    regional.morning = "AM";
    regional.afternoon = "PM";
    EXPECT_TRUE(IsPromotionValid({"1111111", "1:00:00 PM", "3:00:00 PM"}, DayAt(1, {14, 0, 0, 0}),
                                 regional));
    EXPECT_FALSE(IsPromotionValid({"1111111", "1:00:00 AM", "3:00:00 AM"}, DayAt(1, {14, 0, 0, 0}),
                                  regional));
}

TEST(Promotion, PacketTypes1And5AreANewPrice) {
    EXPECT_EQ(PromotionalPrice(1, 5.0, 3.99), 3.99);
    EXPECT_EQ(PromotionalPrice(5, 5.0, 0.0), 0.0);
}

TEST(Promotion, PacketType4AndMinus10OnARetailPriceOf5Gives4And50) {
    EXPECT_EQ(PromotionalPrice(4, 5.0, -10.0), 4.5);
    EXPECT_EQ(PromotionalPrice(4, 5.0, 10.0), 5.5);
    EXPECT_EQ(PromotionalPrice(4, 5.0, -100.0), 0.0);
}

TEST(Promotion, AnyOtherPacketTypeIsNotActive) {
    for (const int type : {-1, 0, 2, 3, 6, 14})
        EXPECT_EQ(PromotionalPrice(type, 5.0, 3.0), std::nullopt);
}

}  // namespace
}  // namespace tolvane
