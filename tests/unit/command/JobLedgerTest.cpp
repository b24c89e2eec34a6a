// Jobs whose ledger cannot be read or saved.

#include <gtest/gtest.h>

#include "tests/unit/command/JobFixture.h"

namespace tolvane::test {
namespace {

using TJobLedgerTest = TJobTest;
using enum TScaleOutcome;

TEST_F(TJobLedgerTest, ALedgerThatCannotBeReadEndsTheJobBeforeTheScaleIsOpened) {
    BlockLedger();
    const TScaleResult result = Write(kThree);
    EXPECT_EQ(Commands(), "");
    EXPECT_EQ(result.outcome, Failed);
    EXPECT_TRUE(result.error.starts_with("the ledger ")) << result.error;
    EXPECT_NE(result.error.find("scale-7.json cannot be read: "), std::string::npos)
        << result.error;
}

// The first save withdraws: without it nothing may be sent.
TEST_F(TJobLedgerTest, NothingIsSentWhenNothingCanBeWithdrawn) {
    view.onEvent = [&](const std::string& event) {
        if (event == "begins 3") BlockLedger();
    };
    const TScaleResult result = Write(kThree);
    EXPECT_EQ(Commands(), "3C 3C 36 48 3C");
    EXPECT_EQ(result.outcome, Failed);
    EXPECT_EQ(result.written, 0U);
    EXPECT_EQ(result.pending, 3U);
    EXPECT_FALSE(result.mayBeProgramming);
}

TEST_F(TJobLedgerTest, ASaveThatFailsInTheMiddleEndsTheRunAndTheScaleWeighsAgain) {
    perLook = std::chrono::seconds(1);
    view.onEvent = [&](const std::string& event) {
        if (event == "1 done") BlockLedger();
    };
    const TScaleResult result = Write(kThree);
    EXPECT_EQ(Commands(), "3C 3C 36 48 4A:12 4C:12.0 4C:12.4 4C:12.5 4A:7 4C:7.0 4C:7.4 4C:7.5 3C");
    EXPECT_EQ(result.outcome, Failed);
    EXPECT_FALSE(result.mayBeProgramming);
    EXPECT_FALSE(IsProgramming());
    const std::string start = "the ledger ";
    EXPECT_TRUE(result.error.starts_with(start)) << result.error;
    EXPECT_NE(result.error.find("scale-7.json cannot be saved: "), std::string::npos)
        << result.error;
    EXPECT_EQ(result.error.find(start, 1), std::string::npos) << "told twice: " << result.error;
    EXPECT_EQ(result.written, 2U);
}

// The claims of a run that could not be saved are not there for the next one.
TEST_F(TJobLedgerTest, NothingIsClaimedThatCouldNotBeSaved) {
    Write(kThree);
    view.onEvent = [&](const std::string& event) {
        if (event == "3 done") BlockLedger();
    };
    const TScaleResult result = Write(kThree);
    EXPECT_EQ(result.outcome, Failed);
    EXPECT_EQ(result.written, 3U);
    UnblockLedger();
    EXPECT_EQ(Claimed(), "");
    view.onEvent = {};
    EXPECT_EQ(WriteChanged(kThree).written, 3U);
}

TEST_F(TJobLedgerTest, AFailureOfTheScaleIsToldBesideThatOfTheLedger) {
    openError = "nobody there";
    const TJobParts parts = Parts();
    TLedgerJob::TLedgerParts ledger = LedgerParts();
    int looks = 0;
    ledger.now = [&] {
        // The ledger is loaded at the first look, and saved later.
        if (++looks == 2) BlockLedger();
        return now;
    };
    const auto table = TableOf(kThree);
    TWriteJob job(parts, rec, ledger, {.table = *table, .regional = {}, .choice = {}});
    const TScaleResult result = job.Run();
    EXPECT_EQ(result.outcome, NotReached);
    EXPECT_TRUE(
        result.error.starts_with("Fail init communication interface: nobody there; the ledger "))
        << result.error;
}

TEST_F(TJobLedgerTest, AJobWithoutALockTellsWhy) {
    TScratchFolder other;
    PutFile(other / "state", "no folder");
    TJobParts parts = Parts();
    const TJobParts blocked{.factory = parts.factory,
                            .clock = clock,
                            .stop = stop,
                            .view = view,
                            .stateFolder = other / "state",
                            .lockWait = TMilliseconds(0)};
    const TScaleResult result = TReleaseJob(blocked, rec, LedgerParts()).Run();
    EXPECT_EQ(result.outcome, Failed);
    EXPECT_TRUE(result.error.starts_with("the lock ")) << result.error;
    EXPECT_EQ(Commands(), "");
}

}  // namespace
}  // namespace tolvane::test
