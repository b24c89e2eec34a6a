#include "simulator/Fixed.h"

#include <gtest/gtest.h>

namespace tolvane::simulator {
namespace {

TEST(FixedTest, ThePoint_StandsBeforeTheLastDigits) {
    EXPECT_EQ(Fixed(1234, 2), "12.34");
    EXPECT_EQ(Fixed(99999999999, 2), "999999999.99");
}

TEST(FixedTest, ASmallNumber_HasItsZeros) {
    EXPECT_EQ(Fixed(5, 3), "0.005");
    EXPECT_EQ(Fixed(0, 2), "0.00");
    EXPECT_EQ(Fixed(100, 2), "1.00");
}

}  // namespace
}  // namespace tolvane::simulator
