// Bad input and bad days: each has a text and a code of its own, and nothing is lost.

#include "simulator/Commands.h"
#include "tests/command/program/ProgramTest.h"
#include "tests/support/Environment.h"

namespace tolvane::test {
namespace {

class FailuresTest : public TProgramTest {
protected:
    void ExpectFailure(const TRun& run, int code, const std::string& text) {
        EXPECT_EQ(run.exitCode, code) << run.err;
        EXPECT_NE(run.err.find(text), std::string::npos) << run.err;
    }
    TWords WithoutDatabase(TWords words) {
        WithShop({});
        words.insert(words.end(), {"--ini", (folder_ / "Tolvane.ini").string(), "--state",
                                   StateFolder().string()});
        return words;
    }
    TRun RunWithLogin(const std::string& database, const std::string& passwordFile) {
        return RunBare(WithoutDatabase({"write", "--database", database, "--user", "SYSDBA",
                                        "--password-file", (folder_ / passwordFile).string()}));
    }
    static simulator::TFaultScript Fault(const std::string& text) {
        return {.faults = {simulator::FaultFromText(text)}};
    }
};

TEST_F(FailuresTest, NoDatabase) {
    AddDeadScale(1);
    ExpectFailure(RunBare(WithoutDatabase({"write"})), 2,
                  "No database is named. Name it with --database.");
}

TEST_F(FailuresTest, ADatabaseThatIsNotThere) {
    AddDeadScale(1);
    const std::string server = Environment("TOLVANE_FB_SERVER");
    ExpectFailure(RunWithLogin(server + ":/no/such.fdb", "password"), 4, "/no/such.fdb");
}

TEST_F(FailuresTest, AServerThatDoesNotAnswer) {
    AddDeadScale(1);
    ExpectFailure(RunWithLogin("127.0.0.1/9:shop.fdb", "password"), 4, "127.0.0.1/9:shop.fdb");
}

TEST_F(FailuresTest, AWrongPasswordWhichIsNotShown) {
    AddDeadScale(1);
    PutFile(folder_ / "wrong", "not-the-password\n");
    const TRun run = RunWithLogin(
        Environment("TOLVANE_FB_SERVER") + ":" + Environment("TOLVANE_FB_SHOP"), "wrong");
    ExpectFailure(run, 4, "user name and password");
    EXPECT_EQ(run.err.find("not-the-password"), std::string::npos);
}

TEST_F(FailuresTest, NoPasswordFile) {
    AddDeadScale(1);
    ExpectFailure(RunWithLogin("127.0.0.1/9:shop.fdb", "no-file"), 2, "There is no password file");
}

// Some editors put it before every text.
TEST_F(FailuresTest, AMarkOfUtf8IsNoPartOfAPassword) {
    AddDeadScale(1);
    PutFile(folder_ / "password",
            "\xEF\xBB\xBF" + Environment("TOLVANE_FB_PASSWORD") + "\r\nnot this line\n");
    EXPECT_EQ(RunBare(OnServer({"articles"})).exitCode, 0);
}

// The folder is there, but no file.
TEST_F(FailuresTest, AFileThatCannotBeReadIsToldInEnglish) {
    ExpectFailure(RunBare({"scales", "--ini", folder_.Path().string()}), 2,
                  "The scale list " + folder_.Path().string() + " cannot be read: ");
    AddDeadScale(1);
    ExpectFailure(RunWithLogin("127.0.0.1/9:shop.fdb", "."), 2, "The password file ");
}

TEST_F(FailuresTest, NoClientLibrary) {
    AddDeadScale(1);
    ExpectFailure(Run({"articles", "--client-library", "no-such-client"}), 4, "no-such-client");
}

TEST_F(FailuresTest, NoScaleList) {
    ExpectFailure(RunBare({"write", "--ini", (folder_ / "no.ini").string()}), 2,
                  "Name the module's Tolvane.ini with --ini.");
}

TEST_F(FailuresTest, NoScaleIsChecked) {
    AddToList(1, TModel::S300, "127.0.0.1", 9, 1, false);
    ExpectFailure(Run({"write"}), 2, "No scale is checked in the scale list.");
}

TEST_F(FailuresTest, AScaleThatTheListLacks) {
    AddDeadScale(1);
    ExpectFailure(Run({"write", "--scale", "Сирена"}), 2,
                  "There is no scale \"Сирена\". There are: 1 Щанд 1.");
}

TEST_F(FailuresTest, AStateFolderThatCannotBeMade) {
    const TVirtualScale& scale = AddScale(1);
    PutFile(StateFolder(), "a file");
    ExpectFailure(Run({"write"}), 2, "Name another one with --state.");
    EXPECT_EQ(scale.State().requests.total, 0);
}

TEST_F(FailuresTest, ALedgerThatCannotBeReadStopsItsScaleAlone) {
    const TVirtualScale& first = AddScale(1);
    const TVirtualScale& second = AddScale(2);
    std::filesystem::create_directories(LedgerOf(1));
    const TRun run = Run({"write", "--json"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(run.Scale(1).at("outcome"), "failed");
    EXPECT_NE(std::string(run.Scale(1).at("error")).find("the ledger"), std::string::npos);
    EXPECT_EQ(first.State().requests.total, 0) << "nothing is sent that nobody would remember";
    EXPECT_EQ(NumbersOf(second), (std::vector<int>{1, 2, 4}));
}

TEST_F(FailuresTest, ADeadScaleCostsOnlyItself) {
    AddDeadScale(1);
    const TVirtualScale& scale = AddScale(2);
    const TRun run = Run({"write", "--json"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(run.Scale(1).at("outcome"), "not reached");
    EXPECT_EQ(run.Scale(1).at("pending"), 3);
    EXPECT_EQ(NumbersOf(scale), (std::vector<int>{1, 2, 4}));
    EXPECT_EQ(Run({"status", "--json"}).Scale(1).at("outcome"), "not reached");
}

TEST_F(FailuresTest, AScaleThatDropsTheConnectionIsContinuedByTheNextRun) {
    TVirtualScale& scale = AddScale(1);
    scale.SetFaults(Fault("drop,command=SetParam,request=7"));
    const TRun run = Run({"write", "--json"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(run.Scale(1).at("outcome"), "failed");
    EXPECT_NE(run.Scale(1).at("error"), "");
    EXPECT_EQ(run.Scale(1).at("mayBeProgramming"), true);
    const int written = run.Scale(1).at("written");
    EXPECT_LT(written, 3);
    EXPECT_EQ(Run({"status", "--json"}).Scale(1).at("mayBeProgramming"), true);
    scale.SetFaults({});
    const TRun next = Run({"write", "--changed", "--json"});
    EXPECT_EQ(next.exitCode, 0) << next.err;
    EXPECT_EQ(next.Scale(1).at("unchanged"), written);
    EXPECT_EQ(next.Scale(1).at("written"), 3 - written);
    EXPECT_EQ(NumbersOf(scale), (std::vector<int>{1, 2, 3}));
    EXPECT_FALSE(scale.State().programming);
}

// Its reply comes after the time-out of 3 seconds, when the scale has been asked again.
TEST_F(FailuresTest, AFirstReplyThatComesLateIsTakenForNoOther) {
    TVirtualScale& scale = AddScale(1);
    scale.SetFaults(Fault("late,command=SetWeightMode,request=1,ms=3300"));
    const TRun run = Run({"write", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.out;
    EXPECT_EQ(run.Scale(1).at("written"), 3);
    EXPECT_EQ(NumbersOf(scale), (std::vector<int>{1, 2, 3}));
}

TEST_F(FailuresTest, AnArticleThatTheScaleRefusesIsToldAndTriedAgain) {
    TVirtualScale& scale = AddScale(1);
    scale.SetFaults(Fault("error,command=SetParam,request=1,code=8"));
    const TRun run = Run({"write", "--json"});
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_EQ(run.Scale(1).at("refused"), 1);
    EXPECT_EQ(run.Scale(1).at("written"), 2);
    const auto articles = run.Rows("articles");
    ASSERT_EQ(articles.size(), 1U) << run.out;
    EXPECT_EQ(articles[0].at("number"), 1);
    EXPECT_EQ(articles[0].at("state"), "refused");
    EXPECT_FALSE(scale.State().programming);
    const TRun next = Run({"write", "--changed", "--json"});
    EXPECT_EQ(next.Scale(1).at("written"), 1);
    EXPECT_EQ(next.exitCode, 0);
}

TEST_F(FailuresTest, ASecondRunIsRefusedOrWaits) {
    TVirtualScale& scale = AddScale(1);
    scale.SetFaults(Fault("slow,ms=200"));
    const std::unique_ptr<TProcess> first = Start({"write"});
    ASSERT_TRUE(scale.WaitForRequests(2, std::chrono::seconds(30)));
    const TRun second = RunBeside({"write", "--json"});
    EXPECT_EQ(second.exitCode, 11);
    EXPECT_EQ(second.Scale(1).at("outcome"), "locked");
    EXPECT_NE(second.Scale(1).at("error"), "");
    const TRun forgetting = RunBeside({"ledger", "forget", "1"});
    ExpectFailure(forgetting, 11, "another run");
    const TRun waiting = RunBeside({"write", "--changed", "--lock-wait", "1m", "--json"});
    EXPECT_EQ(waiting.exitCode, 0) << waiting.err;
    EXPECT_EQ(waiting.Scale(1).at("unchanged"), 3);
    EXPECT_EQ(Ended(*first).exitCode, 0);
}

// As two users of one computer have.
TEST_F(FailuresTest, ASecondRunWithAnotherStateFolderIsRefused) {
    TVirtualScale& scale = AddScale(1);
    scale.SetFaults(Fault("slow,ms=200"));
    const std::unique_ptr<TProcess> first = Start({"write"});
    ASSERT_TRUE(scale.WaitForRequests(2, std::chrono::seconds(30)));
    state_ = "other-state";
    const TRun second = RunBeside({"write", "--json"});
    EXPECT_EQ(second.exitCode, 11);
    EXPECT_EQ(second.Scale(1).at("outcome"), "locked");
    EXPECT_EQ(second.Scale(1).at("error"),
              "another run on this computer holds the lock of this "
              "scale");
    scale.SetFaults({});
    EXPECT_EQ(Ended(*first).exitCode, 0);
    EXPECT_EQ(Run({"write"}).exitCode, 0);
}

// The state folder's ledgers are by the number in the list of scales.
TEST_F(FailuresTest, ASecondRunForAnotherScaleOfTheSameNumberIsRefused) {
    TVirtualScale& scale = AddScale(1);
    scale.SetFaults(Fault("slow,ms=200"));
    const std::unique_ptr<TProcess> first = Start({"write"});
    ASSERT_TRUE(scale.WaitForRequests(2, std::chrono::seconds(30)));
    list_.clear();
    const TVirtualScale& other = AddScale(1);
    const TRun second = RunBeside({"write", "--json"});
    EXPECT_EQ(second.exitCode, 11);
    EXPECT_NE(std::string(second.Scale(1).at("error")).find("the ledger of this scale"),
              std::string::npos)
        << second.out;
    EXPECT_EQ(other.State().requests.total, 0);
    scale.SetFaults({});
    EXPECT_EQ(Ended(*first).exitCode, 0);
}

}  // namespace
}  // namespace tolvane::test
