#include "upload/RunProgress.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "text/Cp1251.h"

namespace tolvane {
namespace {

using std::chrono::hours;
using std::chrono::seconds;

class RunProgress : public ::testing::Test {
protected:
    // So many articles, each of which ends so long after the one before.
    void Do(int articles, TMilliseconds each) {
        for (int i = 0; i < articles; ++i) {
            now_ += each;
            progress_.ArticleDone(now_);
        }
    }
    void Start() { progress_.StartArticles(now_); }
    TRunCount Count() const { return progress_.Count(); }

    TRunProgress progress_;
    TTimePoint now_{hours(1)};
};

TEST_F(RunProgress, KnowsNothingBeforeTheFirstScale) {
    EXPECT_EQ(Count(), (TRunCount{.done = 0, .all = 0, .left = {}}));
}

TEST_F(RunProgress, CountsTheArticlesOfAllScales) {
    progress_.NextScale(10, 20);
    EXPECT_EQ(Count(), (TRunCount{.done = 0, .all = 30}));
    Start();
    Do(4, TMilliseconds(1));
    EXPECT_EQ(Count(), (TRunCount{.done = 4, .all = 30}));
}

TEST_F(RunProgress, WhatAScaleDidNotGetIsNoPartOfTheRunAnyMore) {
    progress_.NextScale(10, 20);
    Start();
    Do(4, TMilliseconds(1));
    progress_.NextScale(8, 12);
    EXPECT_EQ(Count(), (TRunCount{.done = 4, .all = 4 + 8 + 12}));
}

TEST_F(RunProgress, CountsNoMoreArticlesThanTheScaleGets) {
    progress_.NextScale(1, 0);
    Start();
    Do(2, seconds(3));
    EXPECT_EQ(Count(), (TRunCount{.done = 1, .all = 1}));
}

TEST_F(RunProgress, TheTimeIsNotKnownBeforeFiveArticles) {
    progress_.NextScale(10, 20);
    Start();
    Do(4, seconds(1));
    EXPECT_EQ(Count().left, std::nullopt);
    Do(1, seconds(1));
    EXPECT_EQ(Count().left, seconds(25));
}

TEST_F(RunProgress, TheTimeIsNotKnownInTheFirstTwoSeconds) {
    progress_.NextScale(100, 0);
    Start();
    Do(19, TMilliseconds(100));
    EXPECT_EQ(Count().left, std::nullopt);
    Do(1, TMilliseconds(100));
    EXPECT_EQ(Count().left, seconds(8));  // 80 articles of 0.1 s
}

TEST_F(RunProgress, PausesBetweenArticlesAreMeasuredWithThem) {
    progress_.NextScale(16, 0);
    Start();
    for (int i = 0; i < 3; ++i) {
        Do(1, TMilliseconds(400));
        Do(1, TMilliseconds(1000));
    }
    // Six articles have taken 4.2 s, 0.7 s each; ten are left.
    EXPECT_EQ(Count().left, seconds(7));
}

TEST_F(RunProgress, WhatHappensBetweenScalesIsNotMeasured) {
    progress_.NextScale(5, 5);
    Start();
    Do(5, seconds(1));
    now_ += seconds(60);
    progress_.NextScale(5, 0);
    Start();
    Do(1, seconds(2));
    // Six articles have taken 7 s; four are left: 4.67 s.
    EXPECT_EQ(Count(), (TRunCount{.done = 6, .all = 10, .left = seconds(5)}));
}

TEST_F(RunProgress, NoTimeIsLeftWhenAllIsDone) {
    progress_.NextScale(5, 0);
    Start();
    Do(5, seconds(1));
    EXPECT_EQ(Count(), (TRunCount{.done = 5, .all = 5}));
}

TEST_F(RunProgress, LaterScalesCountAsLargeAsTheLastOneThatIsKnown) {
    progress_.NextWholeScale(2);
    EXPECT_EQ(Count(), (TRunCount{.done = 0, .all = 0}));
    progress_.WholeScaleHas(100);
    EXPECT_EQ(Count(), (TRunCount{.done = 0, .all = 300}));
    Start();
    Do(100, TMilliseconds(1));
    progress_.NextWholeScale(1);
    EXPECT_EQ(Count(), (TRunCount{.done = 100, .all = 300}));
    progress_.WholeScaleHas(40);
    EXPECT_EQ(Count(), (TRunCount{.done = 100, .all = 100 + 40 + 40}));
}

TEST_F(RunProgress, AVeryLongRunIsNoDifficulty) {
    progress_.NextScale(1'000'005, 0);
    Start();
    Do(5, hours(24));
    EXPECT_EQ(Count().left, hours(24) * 1'000'000);
}

TEST(RunProgressText, TheCountNamesDoneAndAll) {
    EXPECT_EQ(ToUtf8(CountText({.done = 142, .all = 465})), "142 от 465");
}

TEST(RunProgressText, TheTimeLeftIsRoundedUp) {
    struct TCase {
        int seconds;
        const char* text;
    };
    for (const TCase& expected :
         {TCase{1, "още 5 сек"}, TCase{5, "още 5 сек"}, TCase{6, "още 10 сек"},
          TCase{55, "още 55 сек"}, TCase{56, "още 1 мин"}, TCase{60, "още 1 мин"},
          TCase{61, "още 2 мин"}, TCase{3540, "още 59 мин"}, TCase{3541, "още 1 ч"},
          TCase{3600, "още 1 ч"}, TCase{3601, "още 1 ч 1 мин"}, TCase{86340, "още 23 ч 59 мин"}})
        EXPECT_EQ(ToUtf8(TimeLeftText({.left = seconds(expected.seconds)})), expected.text)
            << expected.seconds;
    EXPECT_EQ(TimeLeftText({.done = 1, .all = 2}), "");
}

}  // namespace
}  // namespace tolvane
