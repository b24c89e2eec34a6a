#include "system/Clock.h"

#include <gtest/gtest.h>

#include <chrono>

namespace tolvane {
namespace {

TEST(SystemClockTest, SleepLastsAtLeastThePauseOfItsOwnTime) {
    TClock& clock = SystemClock();
    const TTimePoint before = clock.Now();
    clock.Sleep(TMilliseconds(2));
    EXPECT_GE(clock.Now() - before, TMilliseconds(2));
}

TEST(SystemClockTest, APauseOfNothingOrLessReturnsAtOnce) {
    TClock& clock = SystemClock();
    const TTimePoint before = clock.Now();
    clock.Sleep(TMilliseconds(0));
    clock.Sleep(TMilliseconds(-60'000));
    EXPECT_LT(clock.Now() - before, TMilliseconds(30'000));
}

// Setting the computer's clock moves no deadline.
TEST(SystemClockTest, RunsOnAClockThatNobodySets) {
    static_assert(TTimePoint::clock::is_steady);
    const auto before = std::chrono::steady_clock::now();
    const TTimePoint now = SystemClock().Now();
    EXPECT_GE(now, before);
    EXPECT_LE(now, std::chrono::steady_clock::now());
}

}  // namespace
}  // namespace tolvane
