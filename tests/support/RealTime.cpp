#include "tests/support/RealTime.h"

#include <gtest/gtest.h>

namespace tolvane::test {
namespace {

constexpr int kTries = 5;

TCost BestOf(TMilliseconds limit, const std::function<void()>& action) {
    TCost cost = Measure(action);
    for (int i = 1; i < kTries && cost.passed > limit; ++i)
        cost = Measure(action);
    return cost;
}

}  // namespace

TCost Measure(const std::function<void()>& action) {
    const TMilliseconds worked = ThreadTime();
    const TTimePoint started = SystemClock().Now();
    action();
    return {std::chrono::duration_cast<TMilliseconds>(SystemClock().Now() - started),
            ThreadTime() - worked};
}

void ExpectLasts(TMilliseconds expected, const std::function<void()>& action) {
    const TCost cost = BestOf(expected + kTolerance, action);
    testing::Test::RecordProperty("passedMs", static_cast<int>(cost.passed.count()));
    testing::Test::RecordProperty("workedMs", static_cast<int>(cost.worked.count()));
    EXPECT_GE(cost.passed, expected);
    EXPECT_LE(cost.passed, expected + kTolerance);
    EXPECT_LT(cost.worked, expected / 20) << "busy while it waits";
}

void ExpectEndsAtOnce(const std::function<void()>& action) {
    EXPECT_LE(BestOf(kTolerance, action).passed, kTolerance);
}

}  // namespace tolvane::test
