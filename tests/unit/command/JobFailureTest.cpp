#include <gtest/gtest.h>
#include <unistd.h>

#include "command/RunLock.h"
#include "tests/unit/command/JobFixture.h"

namespace tolvane::test {
namespace {

using TJobFailureTest = TJobTest;
using enum TScaleOutcome;
using simulator::TFaultKind;

constexpr std::string_view kSilence =
    "[ReadResponce][SCRIPT] Fail read data (peer) - Read timeout occured";

TEST_F(TJobFailureTest, AStopBetweenArticlesPutsTheScaleBackToWeighing) {
    view.onEvent = [&](const std::string& event) {
        if (event == "1 done") stop.Abandon();
    };
    const TScaleResult result = Write(kThree);
    EXPECT_EQ(Commands(), "3C 3C 36 48 4A:12 4C:12.0 4C:12.4 4C:12.5 3C");
    EXPECT_FALSE(IsProgramming());
    EXPECT_EQ(result.outcome, Stopped);
    EXPECT_FALSE(result.mayBeProgramming);
    EXPECT_EQ(result.written, 1U);
    EXPECT_EQ(result.pending, 2U);
    EXPECT_EQ(Claimed(), "12");
    EXPECT_EQ(Disk().LastRun()->outcome, TRunOutcome::Stopped);
    EXPECT_EQ(Disk().LastRun()->pending, 2);
}

TEST_F(TJobFailureTest, TheNextRunContinuesWhereTheStoppedOneEnded) {
    view.onEvent = [&](const std::string& event) {
        if (event == "1 done") stop.Abandon();
    };
    Write(kThree);
    TRunStop goOn;
    const auto table = TableOf(kThree);
    TJobParts parts = Parts();
    const TJobParts again{.factory = parts.factory,
                          .clock = parts.clock,
                          .stop = goOn,
                          .view = parts.view,
                          .stateFolder = parts.stateFolder,
                          .lockWait = parts.lockWait};
    TWriteJob job(again, rec, LedgerParts(),
                  {.table = *table, .regional = {}, .choice = {.changedOnly = true}});
    const TScaleResult result = job.Run();
    EXPECT_EQ(result.outcome, Done);
    EXPECT_EQ(result.unchanged, 1U);
    EXPECT_EQ(result.written, 2U);
    EXPECT_EQ(Claimed(), "7 9 12");
}

TEST_F(TJobFailureTest, AStopBeforeItsTurnTouchesNothing) {
    stop.Abandon();
    const TScaleResult result = Write(kThree);
    EXPECT_EQ(Commands(), "");
    EXPECT_EQ(result.outcome, Stopped);
    EXPECT_EQ(result.pending, 3U);
    EXPECT_EQ(folder.FileCount(), 0U);
}

// The stop comes while the first exchange is under way: nothing more is sent.
TEST_F(TJobFailureTest, AStopBeforeProgrammingModeLeavesTheScaleAsItIs) {
    options.onExchange = [&](const simulator::TBytes&, const simulator::TReplyPlan&) {
        stop.Abandon();
    };
    const TScaleResult result = Write(kThree);
    EXPECT_EQ(Commands(), "3C");
    EXPECT_EQ(result.outcome, Stopped);
    EXPECT_FALSE(result.mayBeProgramming);
    EXPECT_EQ(result.pending, 3U);
}

TEST_F(TJobFailureTest, AnArticleWithoutAnAnswerEndsTheRunAndTheScaleWeighsAgain) {
    Parts();
    SetFaults({Fault(TFaultKind::NoReply, simulator::kSetPriceWeight, 2)});
    const TScaleResult result = Write(kThree);
    EXPECT_EQ(Commands(), "3C 3C 36 48 4A:12 4C:12.0 4C:12.4 4C:12.5 4A:7 3C");
    EXPECT_EQ(result.outcome, Failed);
    EXPECT_EQ(result.error, "[SetPrice] ErrCode: 0, Fail set PLU price: " + std::string(kSilence));
    EXPECT_FALSE(result.mayBeProgramming);
    EXPECT_FALSE(IsProgramming());
    EXPECT_EQ(result.written, 1U);
    EXPECT_EQ(result.pending, 2U);
    EXPECT_EQ(Claimed(), "12");
}

TEST_F(TJobFailureTest, AScaleThatFallsSilentMayStillBeInProgrammingMode) {
    Parts();
    SetFaults({Fault(TFaultKind::Silent, simulator::kSetPriceWeight, 2)});
    const TScaleResult result = Write(kThree);
    EXPECT_EQ(result.outcome, Failed);
    EXPECT_TRUE(result.mayBeProgramming);
    EXPECT_TRUE(IsProgramming());
    EXPECT_EQ(Claimed(), "12");
    EXPECT_TRUE(Disk().MayBeProgramming());
}

TEST_F(TJobFailureTest, ABrokenConnectionIsNotUsedAgain) {
    view.onEvent = [&](const std::string& event) {
        if (event == "1 done") factory->channel->dropped = true;
    };
    const TScaleResult result = Write(kThree);
    EXPECT_EQ(Commands(), "3C 3C 36 48 4A:12 4C:12.0 4C:12.4 4C:12.5");
    EXPECT_EQ(result.outcome, Failed);
    EXPECT_TRUE(result.mayBeProgramming);
    EXPECT_EQ(result.pending, 2U);
}

TEST_F(TJobFailureTest, ARefusedArticleDoesNotEndTheRun) {
    Parts();
    SetFaults({Fault(TFaultKind::Error, simulator::kSetPriceWeight, 2, 5)});
    const TScaleResult result = Write(kThree);
    EXPECT_EQ(Commands(),
              "3C 3C 36 48 4A:12 4C:12.0 4C:12.4 4C:12.5 4A:7 4A:9 4C:9.0 4C:9.4 4C:9.5 3C");
    EXPECT_EQ(result.outcome, Failed);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.written, 2U);
    EXPECT_EQ(result.pending, 0U);
    ASSERT_EQ(result.refused.size(), 1U);
    EXPECT_EQ(result.refused[0].number, 7);
    EXPECT_EQ(result.refused[0].name, "Eggs");
    const std::string reason =
        "[SetPrice] ErrCode: 5, Fail set PLU price: Scale return Error code: 5";
    EXPECT_EQ(result.refused[0].reason, reason);
    EXPECT_EQ(Claimed(), "9 12");
    EXPECT_EQ(view.events, (TEvents{"begins 3", "written 12 Tomatoes", "1 done",
                                    "refused 7 " + reason, "2 done", "written 9 Milk", "3 done"}));
}

// The days cannot be claimed without the barcode.
TEST_F(TJobFailureTest, AnArticleWhoseLastTextIsRefusedIsNotClaimed) {
    Write(kThree);
    SetFaults({Fault(TFaultKind::Error, simulator::kSetParam, 6, 4)});
    const TScaleResult result = Write(kThree);
    ASSERT_EQ(result.refused.size(), 1U);
    EXPECT_EQ(result.refused[0].number, 7);
    EXPECT_EQ(Claimed(), "9 12");
    SetFaults({});
    EXPECT_EQ(WriteChanged(kThree).written, 1U);
    EXPECT_EQ(Claimed(), "7 9 12");
}

TEST_F(TJobFailureTest, AnArticleThatNoScaleCanHoldIsRefusedUnsent) {
    TArticle dear = Goods(7, "Truffles");
    dear.retail = 10000;
    const TScaleResult result = Write({kThree[0], dear});
    EXPECT_EQ(Commands(), "3C 3C 36 48 4A:12 4C:12.0 4C:12.4 4C:12.5 3C");
    ASSERT_EQ(result.refused.size(), 1U);
    EXPECT_EQ(result.refused[0].number, 7);
    EXPECT_EQ(result.outcome, Failed);
}

TEST_F(TJobFailureTest, AScaleWithoutAConnectionIsNotReached) {
    openError = "nobody there";
    const TScaleResult result = Write(kThree);
    EXPECT_EQ(result.outcome, NotReached);
    EXPECT_EQ(result.error, "Fail init communication interface: nobody there");
    EXPECT_EQ(result.pending, 3U);
    EXPECT_FALSE(result.mayBeProgramming);
    EXPECT_EQ(Disk().LastRun()->outcome, TRunOutcome::NotReached);
}

TEST_F(TJobFailureTest, ASilentScaleIsNotReached) {
    Parts();
    SetFaults({Fault(TFaultKind::Silent, simulator::kSetWeightMode, 1)});
    const TScaleResult result = Write(kThree);
    EXPECT_EQ(Commands(), "3C 3C");
    EXPECT_EQ(result.outcome, NotReached);
    EXPECT_EQ(result.error, "Fail set Weight mode: " + std::string(kSilence));
    EXPECT_FALSE(result.mayBeProgramming);
    EXPECT_FALSE(result.version);
    EXPECT_EQ(result.pending, 3U);
}

TEST_F(TJobFailureTest, AFirstReplyThatIsLostIsAskedForAgain) {
    Parts();
    SetFaults({Fault(TFaultKind::NoReply, simulator::kSetWeightMode, 1)});
    EXPECT_EQ(Write({kThree[0]}).outcome, Done);
    EXPECT_EQ(Commands(), "3C 3C 3C 36 48 4A:12 4C:12.0 4C:12.4 4C:12.5 3C");
}

// After the second request both are answered: one reply is left over, and fits no later request.
TEST_F(TJobFailureTest, AFirstReplyThatComesLateIsTakenForNoOther) {
    Parts();
    SetFaults({Fault(TFaultKind::Held, simulator::kSetWeightMode, 1)});
    const TScaleResult result = Write({kThree[0]});
    EXPECT_EQ(result.outcome, Done) << result.error;
    EXPECT_EQ(Commands(), "3C 3C 3C 36 48 4A:12 4C:12.0 4C:12.4 4C:12.5 3C");
}

TEST_F(TJobFailureTest, AStopDoesNotAskASilentScaleAgain) {
    options.onExchange = [&](const simulator::TBytes&, const simulator::TReplyPlan&) {
        stop.Abandon();
    };
    Parts();
    SetFaults({Fault(TFaultKind::Silent, simulator::kSetWeightMode, 1)});
    Write(kThree);
    EXPECT_EQ(Commands(), "3C");
}

// Nobody can weigh with it, however many articles it holds.
TEST_F(TJobFailureTest, AScaleThatDoesNotConfirmThatItWeighsAgainHasFailed) {
    Parts();
    SetFaults({Fault(TFaultKind::Silent, simulator::kSetWeightMode, 3)});
    const TScaleResult result = Write(kThree);
    EXPECT_TRUE(Commands().ends_with(" 4C:9.5 3C")) << Commands();
    EXPECT_EQ(result.outcome, Failed);
    EXPECT_EQ(result.written, 3U);
    EXPECT_TRUE(result.mayBeProgramming);
    EXPECT_EQ(result.error,
              "the scale has not confirmed that it weighs again: Fail set Weight "
              "mode: " +
                  std::string(kSilence));
    EXPECT_EQ(Claimed(), "7 9 12");
}

TEST_F(TJobFailureTest, AStopBeforeTheScaleIsOpenedSendsNothing) {
    TLedgerJob::TLedgerParts ledger = LedgerParts();
    ledger.now = [&] {
        stop.Abandon();
        return now;
    };
    const auto table = TableOf(kThree);
    TWriteJob job(Parts(), rec, ledger, {.table = *table, .regional = {}, .choice = {}});
    const TScaleResult result = job.Run();
    EXPECT_EQ(Commands(), "");
    EXPECT_EQ(result.outcome, Stopped);
    EXPECT_EQ(result.pending, 3U);
}

TEST_F(TJobFailureTest, ATestOrAReleaseWithAReplyThatDoesNotFitEndsWhatWasKnown) {
    for (const bool isTest : {true, false}) {
        Parts();
        SetFaults({});
        Write(kThree);
        ASSERT_EQ(Claimed(), "7 9 12");
        SetFaults({Fault(TFaultKind::WrongAddress, simulator::kSetWeightMode)});
        EXPECT_EQ((isTest ? Test() : Release()).outcome, NotReached);
        EXPECT_EQ(Claimed(), "");
    }
}

// What a killed process leaves is on the disk before the scale is put back to weighing.
TEST_F(TJobFailureTest, AReplyThatDoesNotFitIsNotedBeforeTheScaleIsAskedAgain) {
    Write(kThree);
    std::vector<std::string> seen;
    bool wasWrong = false;
    options.onExchange = [&](const simulator::TBytes& frame, const simulator::TReplyPlan&) {
        // Both are sent with 14 added: a price with weight is 4A, weighing mode 3C.
        if (frame.at(3) == 0x5E) wasWrong = true;
        if (wasWrong && frame.at(3) == 0x50) seen.push_back(Claimed());
    };
    core.reset();
    Parts();
    SetFaults({Fault(TFaultKind::WrongAddress, simulator::kSetPriceWeight)});
    TArticle dearer = kThree[1];
    dearer.retail = 13.5;
    WriteChanged({kThree[0], dearer, kThree[2]});
    EXPECT_EQ(seen, std::vector<std::string>{""});
}

TEST_F(TJobFailureTest, AScaleIsPutBackToWeighingWhenADroppedLedgerCannotBeSaved) {
    Write(kThree);
    options.onExchange = [&](const simulator::TBytes& frame, const simulator::TReplyPlan&) {
        if (frame.at(3) == 0x5E) BlockLedger();  // SetPrice with weight, 4A, sent with 14 added
    };
    core.reset();
    Parts();
    SetFaults({Fault(TFaultKind::WrongAddress, simulator::kSetPriceWeight)});
    TArticle dearer = kThree[1];
    dearer.retail = 13.5;
    const TScaleResult result = WriteChanged({kThree[0], dearer, kThree[2]});
    EXPECT_FALSE(IsProgramming());
    EXPECT_FALSE(result.mayBeProgramming);
    EXPECT_EQ(result.outcome, Failed);
    EXPECT_TRUE(result.error.starts_with("[SetPrice] ")) << result.error;
    EXPECT_NE(result.error.find("; the ledger "), std::string::npos) << result.error;
}

// A reply that fits another request may come from another scale.
TEST_F(TJobFailureTest, AReplyThatDoesNotFitEndsWhatWasKnownOfTheScale) {
    Write(kThree);
    SetFaults({Fault(TFaultKind::WrongAddress, simulator::kSetPriceWeight)});
    TArticle dearer = kThree[1];
    dearer.retail = 13.5;
    const TScaleResult result = WriteChanged({kThree[0], dearer, kThree[2]});
    EXPECT_EQ(result.outcome, Failed);
    EXPECT_EQ(result.ledgerNote, "a reply of the scale did not fit its request");
    EXPECT_EQ(Claimed(), "");
    SetFaults({});
    EXPECT_EQ(WriteChanged(kThree).written, 3U);
}

TEST_F(TJobFailureTest, AScaleThatRefusesProgrammingModeHasAnswered) {
    Parts();
    SetFaults({Fault(TFaultKind::Error, simulator::kSetPrgMode, 1, 9)});
    const TScaleResult result = Write(kThree);
    EXPECT_EQ(result.outcome, Failed);
    EXPECT_EQ(result.error,
              "[SetPrgMode] ErrCode: 9, Fail set Weight mode: Scale return Error code: 9");
    EXPECT_FALSE(result.mayBeProgramming);
    EXPECT_EQ(Commands(), "3C 3C 36 3C");
}

TEST_F(TJobFailureTest, WhatIsPendingInADeadScaleGoesByItsLedger) {
    Write(kThree);
    openError = "nobody there";
    TArticle dearer = kThree[1];
    dearer.retail = 13.5;
    EXPECT_EQ(WriteChanged({kThree[0], dearer, kThree[2]}).pending, 1U);
    EXPECT_EQ(Write(kThree, {.numbers = {{7, 9}}}).pending, 2U);
    EXPECT_EQ(Write(kThree).pending, 3U);
    EXPECT_EQ(Claimed(), "7 9 12");
}

TEST_F(TJobFailureTest, AnotherRunInTheScaleLocksItOut) {
    const TRunLock other(folder.Path(), rec, TMilliseconds(0), clock);
    const TScaleResult result = Write(kThree);
    EXPECT_EQ(result.outcome, Locked);
    EXPECT_EQ(result.error, "another run (process " + std::to_string(getpid()) +
                                ") holds the lock of this scale");
    EXPECT_EQ(result.pending, 3U);
    EXPECT_EQ(Commands(), "");
    EXPECT_FALSE(std::filesystem::exists(TLedger::FileOf(folder.Path(), rec.ScaleNumb)));
}

}  // namespace
}  // namespace tolvane::test
