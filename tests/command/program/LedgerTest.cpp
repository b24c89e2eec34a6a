// The commands "status" and "ledger forget", and when a ledger is not trusted.

#include "command/LedgerText.h"
#include "tests/command/program/ProgramTest.h"

namespace tolvane::test {
namespace {

class LedgerTest : public TProgramTest {
protected:
    LedgerTest() { scale_ = &AddScale(1); }

    // Moves all times of the ledger.
    void MoveLedgerBy(std::chrono::days time) const {
        TLedgerContent content = ParseLedgerText(GetFile(LedgerOf(1)));
        for (auto& [number, claim] : content.claims)
            claim.acknowledged += time;
        content.saved = content.saved.value() + time;
        PutFile(LedgerOf(1), LedgerText(content));
    }
    // Everything is written again, and this is told.
    void ExpectDropped(const std::string& why) {
        const TRun run = Run({"write", "--changed", "--json"});
        EXPECT_EQ(run.exitCode, 0) << run.err;
        EXPECT_EQ(run.Scale(1).at("written"), 3);
        EXPECT_NE(std::string(run.Scale(1).at("ledger")).find(why), std::string::npos) << run.out;
        EXPECT_EQ(Run({"write", "--changed", "--json"}).Scale(1).at("unchanged"), 3);
    }

    TVirtualScale* scale_ = nullptr;
};

TEST_F(LedgerTest, BeforeTheFirstRunNothingIsKnown) {
    const TRun run = Run({"status", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.Scale(1).at("outcome"), nullptr);
    EXPECT_EQ(run.Scale(1).at("held"), 0);
    EXPECT_EQ(run.Scale(1).at("pending"), 3);
    EXPECT_EQ(scale_->State().requests.total, 0);
}

TEST_F(LedgerTest, AfterARunItIsKnownWhatTheScaleHoldsAndWhatIsPending) {
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    Sql("update PLUES set PLU_SELL_PRICE = 2.6 where PLU_NUMB = 101");
    const int requests = scale_->State().requests.total;
    const TRun run = Run({"status", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.Scale(1).at("outcome"), "done");
    EXPECT_EQ(run.Scale(1).at("written"), 3);
    EXPECT_EQ(run.Scale(1).at("held"), 3);
    EXPECT_EQ(run.Scale(1).at("pending"), 1);
    EXPECT_EQ(run.Scale(1).at("version"), "3.02");
    EXPECT_EQ(run.Scale(1).at("mayBeProgramming"), false);
    EXPECT_EQ(scale_->State().requests.total, requests) << "no scale is asked";
}

TEST_F(LedgerTest, StatusSaysThatTheWindowIsNotKnown) {
    EXPECT_NE(Run({"status"}).err.find("What the window writes or deletes is not known here."),
              std::string::npos);
}

TEST_F(LedgerTest, WithoutADatabaseStatusTellsWhatTheLedgerKnows) {
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    const TRun run = RunBare({"status", "--json", "--ini", (folder_ / "Tolvane.ini").string(),
                              "--state", StateFolder().string()});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.Scale(1).at("held"), 3);
    EXPECT_EQ(run.Scale(1).at("pending"), nullptr);
}

TEST_F(LedgerTest, WithADatabaseThatCannotBeReadStatusTellsBoth) {
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    const TRun run =
        RunBare({"status", "--json", "--ini", (folder_ / "Tolvane.ini").string(), "--state",
                 StateFolder().string(), "--database", (folder_ / "no.fdb").string()});
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_NE(run.err.find("no.fdb"), std::string::npos) << run.err;
    EXPECT_EQ(run.Scale(1).at("held"), 3);
}

TEST_F(LedgerTest, AfterATestNothingIsAssumedByCheck) {
    ASSERT_EQ(Run({"test"}).exitCode, 0);
    EXPECT_EQ(Run({"check", "--json"}).Rows("assumed").size(), 0U);
}

TEST_F(LedgerTest, WhatTheLastRunHasLeftOutIsCounted) {
    Sql("update BARCODES set PLU_BARCODE = '123' where PLU_NUMB = 103");
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    EXPECT_EQ(Run({"status", "--json"}).Scale(1).at("leftOut"), 1);
}

TEST_F(LedgerTest, ALedgerThatCannotBeReadHidesNoOtherScale) {
    AddScale(2);
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    std::filesystem::remove(LedgerOf(1));
    std::filesystem::create_directories(LedgerOf(1));
    for (const TWords& words :
         {TWords{"status", "--json"}, {"write", "--changed", "--dry-run", "--json"}}) {
        const TRun run = Run(words);
        EXPECT_EQ(run.exitCode, 3) << run.err;
        EXPECT_NE(std::string(run.Scale(1).at("error")).find("cannot be read"), std::string::npos);
        EXPECT_EQ(run.Scale(2).at("outcome"), "done");
        EXPECT_EQ(run.Scale(2).at("pending"), 0);
    }
}

TEST_F(LedgerTest, ARunThatWasKilledIsToldFromOneAtWork) {
    scale_->SetFaults({.faults = {simulator::FaultFromText("slow,ms=200")}});
    std::unique_ptr<TProcess> run = Start({"write"});
    ASSERT_TRUE(scale_->WaitForRequests(8, std::chrono::seconds(30)));
    EXPECT_EQ(RunBeside({"status", "--json"}).Scale(1).at("outcome"), "running");
    run.reset();
    EXPECT_EQ(RunBeside({"status", "--json"}).Scale(1).at("outcome"), "broken off");
}

TEST_F(LedgerTest, WhatIsForgottenIsWrittenAgain) {
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    const TRun run = Run({"ledger", "forget", "Щанд 1", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.Scale(1).at("forgotten"), true);
    EXPECT_EQ(Run({"ledger", "forget", "1", "--json"}).Scale(1).at("forgotten"), false);
    EXPECT_EQ(Run({"write", "--changed", "--json"}).Scale(1).at("written"), 3);
}

TEST_F(LedgerTest, AScaleThatIsNotThereCannotBeForgotten) {
    const TRun run = Run({"ledger", "forget", "5"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_NE(run.err.find("There is no scale \"5\". There are: 1 Щанд 1."), std::string::npos)
        << run.err;
}

TEST_F(LedgerTest, AnOldLedgerIsNotTrusted) {
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    MoveLedgerBy(-std::chrono::days(8));
    ExpectDropped("older than 7 days");
}

TEST_F(LedgerTest, HowOldItMayBeIsAChoice) {
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    MoveLedgerBy(-std::chrono::days(8));
    EXPECT_EQ(Run({"write", "--changed", "--max-age", "9d", "--json"}).Scale(1).at("unchanged"), 3);
}

TEST_F(LedgerTest, AClockThatWasSetBackIsNoticed) {
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    MoveLedgerBy(std::chrono::days(1));
    ExpectDropped("the clock has been set back");
}

TEST_F(LedgerTest, ADamagedLedgerIsKeptBesideAndNotTrusted) {
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    const std::string text = GetFile(LedgerOf(1));
    PutFile(LedgerOf(1), text.substr(0, text.size() / 2));
    const TRun run = Run({"write", "--changed", "--json"});
    EXPECT_EQ(run.Scale(1).at("written"), 3);
    EXPECT_NE(run.Scale(1).at("ledger"), "");
    EXPECT_TRUE(std::filesystem::exists(LedgerOf(1).string() + ".damaged"));
}

TEST_F(LedgerTest, AScaleThatWasReplacedByAnotherModelGetsEverything) {
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    TScaleOptions options;
    options.tcpPort = scale_->Port();
    scale_->Stop();
    list_.clear();
    const TVirtualScale& other = AddScale(1, TModel::Ets, std::move(options));
    ExpectDropped("model");
    EXPECT_EQ(NumbersOf(other), (std::vector<int>{1, 2, 3}));
}

TEST_F(LedgerTest, AScaleThatReportsAnotherVersionGetsEverything) {
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    TScaleOptions options;
    options.tcpPort = scale_->Port();
    scale_->Stop();
    list_.clear();
    capacity_ = 5000;
    const TVirtualScale& other = AddScale(1, TModel::S300, std::move(options));
    ExpectDropped("5000");
    EXPECT_EQ(NumbersOf(other), (std::vector<int>{1, 2, 3}));
}

TEST_F(LedgerTest, AScaleAtAnotherAddressGetsEverything) {
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    list_.clear();
    const TVirtualScale& other = AddScale(1);
    ExpectDropped("port");
    EXPECT_EQ(NumbersOf(other), (std::vector<int>{1, 2, 3}));
}

}  // namespace
}  // namespace tolvane::test
