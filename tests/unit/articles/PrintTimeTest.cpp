#include "articles/PrintTime.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

TEST(PrintTime, IsDayMonthYearAndTimeWithPoints) {
    EXPECT_EQ(PrintTime({{2024, 5, 3}, {7, 8, 9, 0}}), "03.05.2024 - 07.08.09");
    EXPECT_EQ(PrintTime({{2031, 12, 28}, {23, 59, 58, 999}}), "28.12.2031 - 23.59.58");
}

}  // namespace
}  // namespace tolvane
