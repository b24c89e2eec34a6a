#include "system/LocalTime.h"

#include <gtest/gtest.h>

#include <vector>

namespace tolvane {
namespace {

TEST(DayOfWeek, CountsFromMonday) {
    EXPECT_EQ(DayOfWeek({2024, 1, 1}), 1);   // a Monday
    EXPECT_EQ(DayOfWeek({2024, 1, 7}), 7);   // a Sunday
    EXPECT_EQ(DayOfWeek({2000, 2, 29}), 2);  // a Tuesday
    EXPECT_EQ(DayOfWeek({1878, 3, 3}), 7);   // a Sunday
    EXPECT_EQ(DayOfWeek({2038, 1, 19}), 2);  // a Tuesday
}

// Each is before all that follow it, by every comparison.
template <class Value>
void ExpectInOrder(const std::vector<Value>& values) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        for (std::size_t j = 0; j < values.size(); ++j) {
            const Value& a = values[i];
            const Value& b = values[j];
            EXPECT_EQ(a == b, i == j) << i << " " << j;
            EXPECT_EQ(a < b, i < j) << i << " " << j;
            EXPECT_EQ(a <= b, i <= j) << i << " " << j;
            EXPECT_EQ(a > b, i > j) << i << " " << j;
            EXPECT_EQ(a >= b, i >= j) << i << " " << j;
        }
    }
}

TEST(Date, IsOrderedByYearMonthAndDay) {
    ExpectInOrder<TDate>({{2023, 12, 31}, {2024, 1, 31}, {2024, 2, 1}, {2024, 2, 2}});
}

TEST(TimeOfDay, IsOrderedFromTheHourToTheMillisecond) {
    ExpectInOrder<TTimeOfDay>(
        {{7, 59, 59, 999}, {8, 0, 59, 999}, {8, 1, 0, 999}, {8, 1, 1, 0}, {8, 1, 1, 1}});
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
