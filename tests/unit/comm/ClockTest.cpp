#include "comm/Clock.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

TEST(SystemClockTest, SleepLastsAtLeastThePauseOfItsOwnTime) {
    TClock& clock = SystemClock();
    const TTimePoint before = clock.Now();
    clock.Sleep(TMilliseconds(2));
    EXPECT_GE(clock.Now() - before, TMilliseconds(2));
}

TEST(SystemClockTest, APauseOfNothingOrLessReturns) {
    SystemClock().Sleep(TMilliseconds(0));
    SystemClock().Sleep(TMilliseconds(-5));
    EXPECT_EQ(&SystemClock(), &SystemClock());
}

}  // namespace
}  // namespace tolvane
