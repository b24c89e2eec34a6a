#include <gtest/gtest.h>

#include "tests/unit/command/JobFixture.h"

namespace tolvane::test {
namespace {

using TDeleteJobTest = TJobTest;
using TPruneTest = TJobTest;
using enum TScaleOutcome;
using simulator::TFaultKind;

TEST_F(TDeleteJobTest, ClearsPriceAndNameOfTheNamedArticles) {
    Write(kThree);
    view.events.clear();
    const TScaleResult result = Delete({{12, 7}});
    EXPECT_EQ(Commands(), "3C 3C 36 48 49:7 4C:7.0 49:12 4C:12.0 3C");
    EXPECT_EQ(Held(7), "cleared");
    EXPECT_EQ(Held(12), "cleared");
    EXPECT_EQ(Held(9), "1234 Milk");
    EXPECT_EQ(result.outcome, Done);
    EXPECT_EQ(result.deleted, 2U);
    EXPECT_EQ(Claimed(), "9");
    EXPECT_EQ(view.events, (TEvents{"begins 2", "deleted 7", "1 done", "deleted 12", "2 done"}));
}

TEST_F(TDeleteJobTest, AnArticleThatComesBackIsWrittenAgain) {
    Write(kThree);
    Delete({{7}});
    const TScaleResult result = WriteChanged(kThree);
    EXPECT_EQ(result.written, 1U);
    EXPECT_EQ(Held(7), "1234 Eggs");
}

// With a weight field, as the window deletes everything.
TEST_F(TDeleteJobTest, EverythingMeansEachNumberThatTheScaleHas) {
    options.scale.capacity = 3;
    const TScaleResult result = Delete(std::nullopt);
    EXPECT_EQ(Commands(), "3C 3C 36 48 4A:1 4C:1.0 4A:2 4C:2.0 4A:3 4C:3.0 3C");
    EXPECT_EQ(result.deleted, 3U);
    EXPECT_TRUE(result.leftOut.empty());
}

TEST_F(TDeleteJobTest, CutsNumbersAndDeletesEachOnce) {
    Write({Goods(2007, "Eggs")});
    const TScaleResult result = Delete({{2007, 12007}});
    EXPECT_EQ(Commands(), "3C 3C 36 48 49:2007 4C:2007.0 3C");
    EXPECT_EQ(result.deleted, 1U);
}

TEST_F(TDeleteJobTest, LeavesOutNumbersThatTheScaleLacks) {
    const TScaleResult result = Delete({{3001, 10000}});
    EXPECT_EQ(Commands(), "3C 3C 36 48 3C");
    ASSERT_EQ(result.leftOut.size(), 2U);
    EXPECT_EQ(result.leftOut[0].number, 3001);
    EXPECT_EQ(result.leftOut[0].reason, "the scale has no such number: it has 1 to 3000");
    EXPECT_EQ(result.leftOut[1].number, 10000);
}

TEST_F(TDeleteJobTest, ARefusedDeletionIsToldAndTheOthersGoOn) {
    Write(kThree);
    view.events.clear();
    SetFaults({Fault(TFaultKind::Error, simulator::kSetPrice, 1, 5)});
    const TScaleResult result = Delete({{7, 9}});
    EXPECT_EQ(result.outcome, Failed);
    EXPECT_EQ(result.deleted, 1U);
    const std::string reason =
        "[SetPrice] ErrCode: 5, Fail set PLU price: Scale return Error code: 5";
    ASSERT_EQ(result.refused.size(), 1U);
    EXPECT_EQ(result.refused[0].number, 7);
    EXPECT_EQ(result.refused[0].reason, reason);
    EXPECT_EQ(view.events,
              (TEvents{"begins 2", "refused 7 " + reason, "1 done", "deleted 9", "2 done"}));
    EXPECT_EQ(Claimed(), "12");
}

// An article without a price is not sold, whatever its name.
TEST_F(TDeleteJobTest, ANameThatTheScaleKeepsDoesNoHarm) {
    Write(kThree);
    SetFaults({Fault(TFaultKind::Error, simulator::kSetParam, 1, 5)});
    const TScaleResult result = Delete({{7}});
    EXPECT_EQ(result.outcome, Done);
    EXPECT_EQ(result.deleted, 1U);
    EXPECT_EQ(Held(7), "0 Eggs");
}

TEST_F(TDeleteJobTest, AScaleThatFallsSilentEndsTheJob) {
    Write(kThree);
    SetFaults({Fault(TFaultKind::Silent, simulator::kSetParam, 1)});
    const TScaleResult result = Delete({{7, 9}});
    EXPECT_EQ(result.outcome, Failed);
    EXPECT_EQ(result.deleted, 0U);
    EXPECT_TRUE(result.mayBeProgramming);
    EXPECT_EQ(Claimed(), "12");
}

TEST_F(TDeleteJobTest, AStopEndsItBetweenArticles) {
    Write(kThree);
    view.onEvent = [&](const std::string& event) {
        if (event == "deleted 7") stop.Abandon();
    };
    const TScaleResult result = Delete({{7, 9}});
    EXPECT_EQ(Commands(), "3C 3C 36 48 49:7 4C:7.0 3C");
    EXPECT_EQ(result.outcome, Stopped);
    EXPECT_EQ(Held(9), "1234 Milk");
}

// The scale may hold nothing under most of its numbers, and a deletion puts nothing there.
TEST_F(TDeleteJobTest, AStopLeavesNoTraceOfNumbersThatTheLedgerDoesNotKnow) {
    Write(kThree);
    view.onEvent = [&](const std::string& event) {
        if (event == "deleted 7") stop.Abandon();
    };
    const TScaleResult result = Delete(std::nullopt);
    EXPECT_EQ(result.outcome, Stopped);
    EXPECT_EQ(result.deleted, 7U);
    EXPECT_EQ(result.pending, 2993U);
    EXPECT_EQ(Disk().Numbers(), (std::set<std::int32_t>{9, 12}));
    EXPECT_EQ(Claimed(), "");
}

TEST_F(TPruneTest, WhatLeftTheListIsTold) {
    Write(kThree);
    const TScaleResult result = WriteChanged({kThree[0]});
    EXPECT_EQ(result.strays, (std::vector<std::int32_t>{7, 9}));
    EXPECT_EQ(Held(7), "1234 Eggs");
    EXPECT_EQ(result.outcome, Done);
}

TEST_F(TPruneTest, WhatLeftTheListIsDeletedAndToldNoMore) {
    Write(kThree);
    const TScaleResult result = Prune({kThree[0]});
    EXPECT_EQ(Commands(), "3C 3C 36 48 49:7 4C:7.0 49:9 4C:9.0 3C");
    EXPECT_EQ(result.deleted, 2U);
    EXPECT_TRUE(result.strays.empty());
    EXPECT_EQ(Held(7), "cleared");
    EXPECT_TRUE(WriteChanged({kThree[0]}).strays.empty());
}

TEST_F(TPruneTest, ARefusedOneStaysKnown) {
    Write(kThree);
    SetFaults({Fault(TFaultKind::Error, simulator::kSetPrice, 1, 5)});
    EXPECT_EQ(Prune({kThree[0]}).strays, std::vector<std::int32_t>{7});
    SetFaults({});
    EXPECT_EQ(WriteChanged({kThree[0]}).strays, std::vector<std::int32_t>{7});
    EXPECT_TRUE(Prune({kThree[0]}).strays.empty());
    EXPECT_EQ(Held(7), "cleared");
}

TEST_F(TPruneTest, OnesThatAStopCameBeforeStayKnown) {
    Write(kThree);
    view.onEvent = [&](const std::string& event) {
        if (event == "deleted 7") stop.Abandon();
    };
    EXPECT_EQ(Prune({kThree[0]}).strays, std::vector<std::int32_t>{9});
    EXPECT_EQ(Disk().Numbers(), (std::set<std::int32_t>{9, 12}));
}

// The scale holds the old ones, though nothing claims them.
TEST_F(TPruneTest, OnesThatAFailedRunHadBegunStayKnown) {
    Write(kThree);
    SetFaults({Fault(TFaultKind::NoReply, simulator::kSetPriceWeight, 1)});
    EXPECT_EQ(Write(kThree).outcome, Failed);
    EXPECT_EQ(Claimed(), "");
    SetFaults({});
    const TScaleResult result = Prune({kThree[0]});
    EXPECT_EQ(result.written, 1U);
    EXPECT_EQ(result.deleted, 2U);
    EXPECT_EQ(Held(9), "cleared");
}

TEST_F(TPruneTest, OnesThatWereWrittenLongAgoStayKnown) {
    Write(kThree);
    now += kWeek + std::chrono::seconds(1);
    EXPECT_EQ(WriteChanged({kThree[0]}).strays, (std::vector<std::int32_t>{7, 9}));
}

// Its price was zeroed or its name lost by mistake: the list still has it.
TEST_F(TPruneTest, OnesThatTheListHasWithAFaultAreLeftAlone) {
    Write(kThree);
    TArticle free = kThree[1];
    free.retail = 0;
    const TScaleResult result = Prune({kThree[0], free, kThree[2]});
    EXPECT_TRUE(result.strays.empty());
    EXPECT_EQ(Held(7), "1234 Eggs");
    ASSERT_EQ(result.leftOut.size(), 1U);
    EXPECT_EQ(result.leftOut[0].reason, "the price is zero");
}

}  // namespace
}  // namespace tolvane::test
