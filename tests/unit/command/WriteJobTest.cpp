#include <gtest/gtest.h>

#include "command/RunLock.h"
#include "tests/unit/command/JobFixture.h"

namespace tolvane::test {
namespace {

using TWriteJobTest = TJobTest;
using enum TScaleOutcome;

const std::vector<TArticle> kTwo = {Goods(12, "Tomatoes"), Goods(7, "Eggs")};

TArticle Dearer(TArticle article) {
    article.retail = 13.5;
    return article;
}

TEST_F(TWriteJobTest, SendsPriceAndTextsOfEachArticleInProgrammingMode) {
    const TScaleResult result = Write(kTwo);
    EXPECT_EQ(Commands(), "3C 3C 36 48 4A:12 4C:12.0 4C:12.4 4C:12.5 4A:7 4C:7.0 4C:7.4 4C:7.5 3C");
    EXPECT_EQ(Held(12), "1234 Tomatoes");
    EXPECT_EQ(Held(7), "1234 Eggs");
    EXPECT_EQ(result.outcome, Done);
    EXPECT_EQ(result.written, 2U);
    EXPECT_EQ(result.pending, 0U);
    EXPECT_EQ(result.error, "");
    EXPECT_FALSE(result.mayBeProgramming);
    ASSERT_TRUE(result.version);
    EXPECT_EQ(result.version->text, "1.23");
    EXPECT_EQ(result.version->maxPlu, 3000);
    EXPECT_EQ(result.version->mode, 1);
}

TEST_F(TWriteJobTest, TellsEachArticleAndHowFarItIs) {
    Write(kTwo);
    EXPECT_EQ(view.events,
              (TEvents{"begins 2", "written 12 Tomatoes", "1 done", "written 7 Eggs", "2 done"}));
}

std::string SentText(const TScaleResult& result) {
    std::string text;
    for (const TSentArticle& article : result.sent)
        text += (article.isDeleted ? "-" : "+") + std::to_string(article.number) + article.name;
    return text;
}

TEST_F(TWriteJobTest, TellsInItsResultWhatTheScaleAcknowledged) {
    EXPECT_EQ(SentText(Write(kTwo)), "+12Tomatoes+7Eggs");
    EXPECT_EQ(SentText(WriteChanged({kTwo[0], Dearer(kTwo[1])})), "+7Eggs");
    EXPECT_EQ(SentText(Prune({kTwo[0]})), "-7");
}

TEST_F(TWriteJobTest, KeepsNoListOfWhatItHasSentWhenNobodyAsksForOne) {
    keepSent = false;
    EXPECT_EQ(SentText(Write(kTwo)), "");
    EXPECT_EQ(SentText(Prune({kTwo[0]})), "");
}

TEST_F(TWriteJobTest, TellsHowLongAnExchangeTakes) {
    clock.perLook = TMilliseconds(5);
    const TScaleResult result = Write({});
    ASSERT_TRUE(result.exchange);
    EXPECT_GT(result.exchange->count(), 0);
    EXPECT_GE(result.duration, TMilliseconds(1800));  // the pauses of 500, 800 and 500
}

TEST_F(TWriteJobTest, SendsOnlyWhatHasChanged) {
    Write(kTwo);
    const TScaleResult result = WriteChanged({kTwo[0], Dearer(kTwo[1])});
    EXPECT_EQ(Commands(), "3C 3C 36 48 4A:7 4C:7.0 4C:7.4 4C:7.5 3C");
    EXPECT_EQ(Held(7), "1350 Eggs");
    EXPECT_EQ(result.written, 1U);
    EXPECT_EQ(result.unchanged, 1U);
    EXPECT_EQ(result.outcome, Done);
    EXPECT_EQ(Claimed(), "7 12");
}

TEST_F(TWriteJobTest, SendsEverythingWhenItIsToldTo) {
    Write(kTwo);
    EXPECT_EQ(Write(kTwo).written, 2U);
}

TEST_F(TWriteJobTest, SendsOnlyTheNamedArticles) {
    const TScaleResult result = Write(kTwo, {.numbers = {{7}}});
    EXPECT_EQ(Commands(), "3C 3C 36 48 4A:7 4C:7.0 4C:7.4 4C:7.5 3C");
    EXPECT_EQ(result.written, 1U);
    EXPECT_TRUE(result.leftOut.empty());
}

// What is on the disk, and whether another run could begin, at the first command of each article.
TEST_F(TWriteJobTest, LocksConfirmsAndWithdrawsBeforeItSendsAndClaimsAfterwards) {
    TEvents seen;
    options.onExchange = [&](const simulator::TBytes& frame, const simulator::TReplyPlan&) {
        if (frame.at(3) != 0x5E) return;  // SetPrice with weight, 4A, sent with 14 added
        const TRunLock other(folder.Path(), rec, TMilliseconds(0), clock);
        seen.push_back((other.IsHeld() ? "free: " : "locked: ") + Claimed());
        EXPECT_EQ(Disk().Report()->version, "1.23");
        EXPECT_EQ(Disk().LastRun()->outcome, TRunOutcome::Running);
        EXPECT_TRUE(Disk().MayBeProgramming());
    };
    perLook = std::chrono::seconds(1);
    Write(kTwo);
    EXPECT_EQ(seen, (TEvents{"locked: ", "locked: 12"}));
    EXPECT_EQ(Claimed(), "7 12");
    EXPECT_TRUE(TRunLock(folder.Path(), rec, TMilliseconds(0), clock).IsHeld());
    seen.clear();
    Write(kTwo);
    EXPECT_EQ(seen, (TEvents{"locked: ", "locked: 12"}));
}

TEST_F(TWriteJobTest, SavesNotMoreOftenThanEachSecond) {
    TEvents seen;
    view.onEvent = [&](const std::string& event) {
        if (event.ends_with("done")) seen.push_back(event + ": " + Claimed());
    };
    Write(kTwo);
    EXPECT_EQ(seen, (TEvents{"1 done: ", "2 done: "}));
    EXPECT_EQ(Claimed(), "7 12");
}

TEST_F(TWriteJobTest, NotesHowTheRunEnded) {
    Write(kTwo);
    const TLastRun run = Disk().LastRun().value();
    EXPECT_EQ(run.outcome, TRunOutcome::Done);
    EXPECT_EQ(run.start, kNoon);
    EXPECT_EQ(run.end, kNoon);
    EXPECT_EQ(run.written, 2);
    EXPECT_FALSE(Disk().MayBeProgramming());
}

TEST_F(TWriteJobTest, ForgetsWhatAnotherScaleHeld) {
    Write(kTwo);
    options.scale.version = "1.24";
    core.reset();
    const TScaleResult result = WriteChanged(kTwo);
    EXPECT_EQ(result.written, 2U);
    EXPECT_EQ(result.ledgerNote, "the version of the scale differs: 1.24, before 1.23");
    EXPECT_EQ(Disk().Report()->version, "1.24");
}

// 12007 is 2007 in a scale with numbers of four digits.
TEST_F(TWriteJobTest, CutsNumbersToTheScalesDigits) {
    const TScaleResult result = Write({Goods(12007, "Eggs")});
    EXPECT_EQ(Held(2007), "1234 Eggs");
    EXPECT_EQ(Claimed(), "2007");
    EXPECT_EQ(result.written, 1U);
}

TEST_F(TWriteJobTest, LeavesOutNumbersThatTheScaleLacks) {
    const TScaleResult result = Write({Goods(3001, "Eggs"), Goods(3000, "Tomatoes")});
    ASSERT_EQ(result.leftOut.size(), 1U);
    EXPECT_EQ(result.leftOut[0].number, 3001);
    EXPECT_EQ(result.leftOut[0].reason, "the scale has no such number: it has 1 to 3000");
    EXPECT_EQ(Held(3000), "1234 Tomatoes");
    EXPECT_EQ(result.outcome, Done);
}

TEST_F(TWriteJobTest, WritesTheLastOfSeveralArticlesWithOneNumber) {
    const TScaleResult result = Write({Goods(2007, "Eggs"), Goods(12007, "Tomatoes")});
    EXPECT_EQ(Held(2007), "1234 Tomatoes");
    EXPECT_EQ(Commands(), "3C 3C 36 48 4A:2007 4C:2007.0 4C:2007.4 4C:2007.5 3C");
    ASSERT_EQ(result.leftOut.size(), 1U);
    EXPECT_EQ(result.leftOut[0].number, 2007);
    EXPECT_EQ(result.leftOut[0].name, "Eggs");
    EXPECT_EQ(result.leftOut[0].reason, "another article has the number 2007 in this scale, too");
}

TEST_F(TWriteJobTest, AnArticleThatTheScaleCannotHoldDoesNotKeepAnotherOut) {
    TArticle dear = Goods(12007, "Truffles");
    dear.retail = 12000;
    const TScaleResult result = Write({Goods(2007, "Eggs"), dear});
    EXPECT_EQ(Held(2007), "1234 Eggs");
    EXPECT_TRUE(result.leftOut.empty());
    ASSERT_EQ(result.refused.size(), 1U);
    EXPECT_EQ(result.refused[0].number, 12007);
}

// The pause after a text is 30 ms; the scale answers at once.
TEST_F(TWriteJobTest, AStopLetsAQuickScaleFinishItsArticle) {
    options.onExchange = [&](const simulator::TBytes& frame, const simulator::TReplyPlan&) {
        if (frame.at(3) == 0x5E) stop.Abandon();  // the price of the first article
    };
    const TScaleResult result = Write(kTwo);
    EXPECT_EQ(Commands(), "3C 3C 36 48 4A:12 4C:12.0 4C:12.4 4C:12.5 3C");
    EXPECT_EQ(result.outcome, Stopped);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(Claimed(), "12");
}

TEST_F(TWriteJobTest, AStopLeavesTheArticleOfASlowScaleInItsMiddle) {
    options.onExchange = [&](const simulator::TBytes& frame, const simulator::TReplyPlan&) {
        if (frame.at(3) == 0x5E) stop.Abandon();
        clock.Sleep(TMilliseconds(1500));
    };
    const TScaleResult result = Write(kTwo);
    EXPECT_EQ(Commands(), "3C 3C 36 48 4A:12 3C");
    EXPECT_EQ(result.outcome, Stopped);
    EXPECT_EQ(result.error,
              "it was stopped in the middle of article 12, which the next run writes again");
    EXPECT_EQ(result.written, 0U);
    EXPECT_EQ(result.pending, 2U);
    EXPECT_FALSE(result.mayBeProgramming);
    EXPECT_EQ(Claimed(), "");
    EXPECT_EQ(Disk().Numbers(), (std::set<std::int32_t>{7, 12}));
}

}  // namespace
}  // namespace tolvane::test
