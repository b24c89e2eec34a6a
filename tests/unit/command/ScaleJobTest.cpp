// Jobs that write nothing.

#include <gtest/gtest.h>

#include "tests/unit/command/JobFixture.h"

namespace tolvane::test {
namespace {

using TReleaseJobTest = TJobTest;
using TTestJobTest = TJobTest;
using enum TScaleOutcome;
using simulator::TFaultKind;

TEST_F(TReleaseJobTest, PutsAScaleBackToWeighing) {
    options.initialState.emplace().programming = true;
    const TScaleResult result = Release();
    EXPECT_EQ(Commands(), "3C");
    EXPECT_FALSE(IsProgramming());
    EXPECT_EQ(result.outcome, Done);
    EXPECT_FALSE(result.mayBeProgramming);
    EXPECT_FALSE(result.version);
}

TEST_F(TReleaseJobTest, KeepsNoLedger) {
    Release();
    EXPECT_EQ(folder.FileCount(), 0U);
}

TEST_F(TReleaseJobTest, ReleasesAScaleWhoseLedgerCannotBeRead) {
    options.initialState.emplace().programming = true;
    BlockLedger();
    const TScaleResult result = Release();
    EXPECT_FALSE(IsProgramming());
    EXPECT_EQ(result.outcome, Failed);
    EXPECT_FALSE(result.mayBeProgramming);
    EXPECT_NE(result.error.find("scale-7.json cannot be read: "), std::string::npos)
        << result.error;
}

TEST_F(TReleaseJobTest, ASilentScaleIsNotReached) {
    Parts();
    SetFaults({Fault(TFaultKind::Silent, simulator::kSetWeightMode, 1)});
    const TScaleResult result = Release();
    EXPECT_EQ(Commands(), "3C 3C");
    EXPECT_EQ(result.outcome, NotReached);
    EXPECT_EQ(result.error,
              "Fail set Weight mode: [ReadResponce][SCRIPT] Fail read data (peer) - Read timeout "
              "occured");
}

TEST_F(TReleaseJobTest, AScaleThatRefusesMayStillBeInProgrammingMode) {
    Parts();
    SetFaults({Fault(TFaultKind::Error, simulator::kSetWeightMode, 0, 9)});
    const TScaleResult result = Release();
    EXPECT_EQ(result.outcome, Failed);
    EXPECT_EQ(result.error, "Fail set Weight mode: Scale return Error code: 9");
    EXPECT_TRUE(result.mayBeProgramming);
}

TEST_F(TTestJobTest, ReadsWhatTheScaleIsAndPutsItBackToWeighing) {
    const TScaleResult result = Test();
    EXPECT_EQ(Commands(), "3C 3C 36 48 3C");
    EXPECT_EQ(result.outcome, Done);
    ASSERT_TRUE(result.version);
    EXPECT_EQ(result.version->text, "1.23");
    EXPECT_EQ(result.version->maxPlu, 3000);
    EXPECT_EQ(result.version->mode, 1);
    EXPECT_TRUE(result.exchange);
    EXPECT_FALSE(IsProgramming());
}

TEST_F(TTestJobTest, RemembersTheScaleAndKeepsWhatTheLastRunDid) {
    Write({Goods(7, "Eggs")});
    const auto run = Disk().LastRun();
    now += std::chrono::hours(1);
    Test();
    EXPECT_EQ(Disk().LastRun(), run);
    EXPECT_EQ(Disk().Report()->maxPlu, 3000);
    EXPECT_EQ(Claimed(), "7");
}

TEST_F(TTestJobTest, TellsThatTheScaleIsAnotherOne) {
    Write({Goods(7, "Eggs")});
    options.scale.capacity = 4000;
    core.reset();
    EXPECT_EQ(Test().ledgerNote, "the capacity of the scale differs: 4000, before 3000");
    EXPECT_EQ(Claimed(), "");
}

TEST_F(TTestJobTest, ADeadScaleLeavesNoTrace) {
    openError = "nobody there";
    EXPECT_EQ(Test().outcome, NotReached);
    EXPECT_EQ(folder.FileCount(), 0U);
}

TEST(ScaleOutcome, HasAWordForPrograms) {
    EXPECT_EQ(OutcomeName(Done), "done");
    EXPECT_EQ(OutcomeName(Failed), "failed");
    EXPECT_EQ(OutcomeName(NotReached), "not reached");
    EXPECT_EQ(OutcomeName(Locked), "locked");
    EXPECT_EQ(OutcomeName(Stopped), "stopped");
}

}  // namespace
}  // namespace tolvane::test
