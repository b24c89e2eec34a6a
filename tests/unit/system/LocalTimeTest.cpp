#include "system/LocalTime.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

TEST(DayOfWeek, CountsFromMonday) {
    EXPECT_EQ(DayOfWeek({2024, 1, 1}), 1);   // a Monday
    EXPECT_EQ(DayOfWeek({2024, 1, 7}), 7);   // a Sunday
    EXPECT_EQ(DayOfWeek({2000, 2, 29}), 2);  // a Tuesday
    EXPECT_EQ(DayOfWeek({1878, 3, 3}), 7);   // a Sunday
    EXPECT_EQ(DayOfWeek({2038, 1, 19}), 2);  // a Tuesday
}

TEST(LocalDateTime, IsOrderedByDateAndThenByTime) {
    const TLocalDateTime noon{{2024, 5, 1}, {12, 0, 0, 0}};
    EXPECT_LT(noon, (TLocalDateTime{{2024, 5, 1}, {12, 0, 0, 1}}));
    EXPECT_LT(noon, (TLocalDateTime{{2024, 5, 2}, {0, 0, 0, 0}}));
    EXPECT_EQ(noon, (TLocalDateTime{{2024, 5, 1}, {12, 0, 0, 0}}));
}

TEST(SystemLocalClock, ShowsAPossibleDateAndTime) {
    const TLocalDateTime first = SystemLocalClock().Now();
    EXPECT_GE(first.date.year, 2024);
    EXPECT_TRUE(first.date.month >= 1 && first.date.month <= 12);
    EXPECT_TRUE(first.date.day >= 1 && first.date.day <= 31);
    EXPECT_TRUE(first.time.hour >= 0 && first.time.hour < 24);
    EXPECT_TRUE(first.time.minute >= 0 && first.time.minute < 60);
    EXPECT_TRUE(first.time.millisecond >= 0 && first.time.millisecond < 1000);
}

}  // namespace
}  // namespace tolvane
