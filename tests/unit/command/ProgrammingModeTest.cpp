// What is known of a scale that a run may have left in programming mode.

#include <gtest/gtest.h>

#include "command/RunLock.h"
#include "tests/unit/command/JobFixture.h"

namespace tolvane::test {
namespace {

using enum TScaleOutcome;
using simulator::TFaultKind;

class TProgrammingNoteTest : public TJobTest {
protected:
    // Eggs are written, and the scale is silent from the price of the next article on.
    void LeaveInProgrammingMode() {
        Parts();
        SetFaults({Fault(TFaultKind::Silent, simulator::kSetPriceWeight, 2)});
        EXPECT_TRUE(Write({Goods(7, "Eggs"), Goods(9, "Milk")}).mayBeProgramming);
        EXPECT_TRUE(IsProgramming());
        EXPECT_TRUE(Disk().MayBeProgramming());
    }
};

TEST_F(TProgrammingNoteTest, LastsUntilTheScaleIsReached) {
    LeaveInProgrammingMode();
    const TScaleResult silent = Write(kThree);
    EXPECT_EQ(silent.outcome, NotReached);
    EXPECT_TRUE(silent.mayBeProgramming);
    EXPECT_TRUE(Disk().MayBeProgramming());
    openError = "nobody there";
    EXPECT_TRUE(Write(kThree).mayBeProgramming);
    EXPECT_TRUE(Delete(std::nullopt).mayBeProgramming);
    EXPECT_TRUE(Test().mayBeProgramming);
    EXPECT_TRUE(Release().mayBeProgramming);
    EXPECT_TRUE(Disk().MayBeProgramming());
    EXPECT_TRUE(IsProgramming());
}

TEST_F(TProgrammingNoteTest, IsToldByARunThatIsStoppedBeforeTheScale) {
    LeaveInProgrammingMode();
    stop.Abandon();
    EXPECT_TRUE(Write(kThree).mayBeProgramming);
    EXPECT_TRUE(Release().mayBeProgramming);
    EXPECT_TRUE(Disk().MayBeProgramming());
}

TEST_F(TProgrammingNoteTest, EndsWithTheNextRun) {
    LeaveInProgrammingMode();
    SetFaults({});
    EXPECT_FALSE(WriteChanged(kThree).mayBeProgramming);
    EXPECT_FALSE(Disk().MayBeProgramming());
    EXPECT_FALSE(IsProgramming());
}

TEST_F(TProgrammingNoteTest, EndsWithARelease) {
    LeaveInProgrammingMode();
    const auto run = Disk().LastRun();
    SetFaults({});
    const TScaleResult result = Release();
    EXPECT_EQ(result.outcome, Done);
    EXPECT_FALSE(result.mayBeProgramming);
    EXPECT_FALSE(IsProgramming());
    EXPECT_FALSE(Disk().MayBeProgramming());
    EXPECT_EQ(Disk().LastRun(), run);
    EXPECT_EQ(Claimed(), "7");
}

TEST_F(TProgrammingNoteTest, EndsWithATest) {
    LeaveInProgrammingMode();
    const auto run = Disk().LastRun();
    SetFaults({});
    EXPECT_FALSE(Test().mayBeProgramming);
    EXPECT_FALSE(Disk().MayBeProgramming());
    EXPECT_EQ(Disk().LastRun(), run);
}

TEST_F(TProgrammingNoteTest, BeginsWithATestThatTheScaleFallsSilentIn) {
    Parts();
    SetFaults({Fault(TFaultKind::Silent, simulator::kGetVersion, 1)});
    const TScaleResult result = Test();
    EXPECT_EQ(result.outcome, Failed);
    EXPECT_TRUE(result.mayBeProgramming);
    EXPECT_TRUE(IsProgramming());
    EXPECT_TRUE(Disk().MayBeProgramming());
    EXPECT_FALSE(Disk().LastRun());
}

// The scale may have done what it did not answer.
TEST_F(TProgrammingNoteTest, BeginsWithARequestThatIsNotAnswered) {
    Parts();
    SetFaults({Fault(TFaultKind::Silent, simulator::kSetPrgMode, 1)});
    const TScaleResult result = Write(kThree);
    EXPECT_EQ(result.outcome, Failed);
    EXPECT_TRUE(result.mayBeProgramming);
    EXPECT_TRUE(Disk().MayBeProgramming());
}

// A process that is killed while the scale works on the request leaves what is on the disk then.
TEST_F(TProgrammingNoteTest, IsSavedBeforeTheScaleIsTold) {
    TEvents seen;
    std::vector<std::string_view> outcomes;
    options.onExchange = [&](const simulator::TBytes& frame, const simulator::TReplyPlan&) {
        // Weighing mode is 3C, programming mode 36; both are sent with 14 added.
        if (frame.at(3) == 0x50 && !Disk().Saved()) seen.push_back("weighing: nothing");
        if (frame.at(3) != 0x4A) return;
        seen.push_back(Disk().MayBeProgramming() ? "programming: noted" : "programming: not noted");
        outcomes.push_back(Disk().LastRun() ? OutcomeName(Disk().LastRun()->outcome) : "none");
    };
    Write(kThree);
    EXPECT_EQ(seen, (TEvents{"weighing: nothing", "programming: noted"}));
    EXPECT_FALSE(Disk().MayBeProgramming());
    std::filesystem::remove(Disk().File());
    seen.clear();
    Test();
    EXPECT_EQ(seen, (TEvents{"weighing: nothing", "programming: noted"}));
    EXPECT_EQ(outcomes, (std::vector<std::string_view>{"running", "none"}));
}

TEST_F(TProgrammingNoteTest, TheScaleIsNotToldWhenThatCannotBeSaved) {
    options.onExchange = [&](const simulator::TBytes&, const simulator::TReplyPlan&) {
        BlockLedger();
    };
    const TScaleResult result = Write(kThree);
    EXPECT_EQ(Commands(), "3C");
    EXPECT_EQ(result.outcome, Failed);
    EXPECT_NE(result.error.find("cannot be saved"), std::string::npos) << result.error;
    EXPECT_FALSE(result.mayBeProgramming);
}

TEST_F(TProgrammingNoteTest, IsNoneForAScaleThatAnotherRunHas) {
    LeaveInProgrammingMode();
    const TRunLock other(folder.Path(), rec, TMilliseconds(0), clock);
    EXPECT_EQ(Write(kThree).outcome, Locked);
    EXPECT_FALSE(Write(kThree).mayBeProgramming);
}

}  // namespace
}  // namespace tolvane::test
