#include <csignal>
#include <thread>

#include "tests/command/program/ProgramTest.h"
#include "tests/support/FileLimit.h"

namespace tolvane::test {
namespace {

using SystemFailuresTest = TProgramTest;

// The ledger is smaller, and so is the report.
TEST_F(SystemFailuresTest, ATraceThatCannotBeWrittenToItsEndIsAFailure) {
    AddScale(1);
    TWords words = {"delete", "--json", "--trace", (folder_ / "trace").string(), "--plu"};
    for (int number = 1; number <= 30; ++number)
        words.push_back(std::to_string(number));
    words = WithShop(words);
    TRun run;
    {
        const TFileLimit limit(4000);
        run = RunBare(words);
    }
    EXPECT_EQ(run.exitCode, 3) << run.err;
    EXPECT_EQ(run.Scale(1).at("outcome"), "done") << run.out;
    EXPECT_EQ(run.Scale(1).at("deleted"), 30);
    EXPECT_NE(run.err.find("tolvane: The trace ends early"), std::string::npos) << run.err;
}

TEST_F(SystemFailuresTest, AFullDiskStopsTheScaleBeforeItIsWritten) {
    const TVirtualScale& scale = AddScale(1);
    // The engine would write into the database file as well.
    const TWords words = OnServer({"write", "-q", "--csv"});
    ASSERT_EQ(Run({"test"}).exitCode, 0);
    const std::string before = GetFile(LedgerOf(1));
    std::filesystem::remove(folder_ / "run" / "out");
    std::filesystem::create_symlink("/dev/null", folder_ / "run" / "out");
    TRun run;
    {
        const TFileLimit limit(100);
        run = RunBare(words);
    }
    EXPECT_EQ(run.exitCode, 3) << run.err;
    EXPECT_EQ(NumbersOf(scale), (std::vector<int>{}));
    EXPECT_FALSE(scale.State().programming);
    EXPECT_EQ(GetFile(LedgerOf(1)), before);
}

TEST_F(SystemFailuresTest, ASearchWithoutANetworkSaysSoAndFails) {
    TProcess process(
        {.program = "/usr/bin/unshare",
         .arguments = {"--map-root-user", "--net", TOLVANE_PROGRAM, "discover", "--json"},
         .environment = environment_,
         .folder = folder_ / "run"});
    const TRun run = Ended(process);
    ASSERT_FALSE(run.err.starts_with("unshare: ")) << run.err << "The test needs user namespaces.";
    EXPECT_EQ(run.exitCode, 5);
    EXPECT_EQ(run.err,
              "tolvane: The network cannot be asked: Network is unreachable (101). Connect this "
              "computer to the network of the scales, and search again.\n");
    EXPECT_TRUE(run.Rows("modules").empty());
}

TEST_F(SystemFailuresTest, RequestsToEndStopARunAsCtrlCDoes) {
    TVirtualScale& scale = AddScale(1);
    scale.SetFaults({.faults = {simulator::FaultFromText("slow,ms=100")}});
    for (const int signal : {SIGTERM, SIGHUP}) {
        const int before = scale.State().requests.total;
        const std::unique_ptr<TProcess> process = Start({"write", "--json"});
        ASSERT_TRUE(scale.WaitForRequests(before + 6, std::chrono::seconds(30)));
        process->Signal(signal);
        const TRun run = Ended(*process);
        EXPECT_EQ(run.exitCode, 130) << run.err;
        EXPECT_FALSE(scale.State().programming);
    }
}

// Whenever it comes, also while the database is being opened: it ends the program, or comes too
// late.
TEST_F(SystemFailuresTest, CtrlCIsNoErrorOfTheDatabase) {
    AddDeadScale(1);
    AddDeadScale(2);
    for (int delay = 0; delay < 100; delay += 5) {
        const std::unique_ptr<TProcess> process = Start({"check"});
        std::this_thread::sleep_for(std::chrono::milliseconds(delay));
        process->Interrupt();
        const TRun run = Ended(*process);
        EXPECT_TRUE(run.exitCode == 130 || run.exitCode == 0) << run.exitCode << run.err;
    }
}

TEST_F(SystemFailuresTest, FilesThatCannotBeLookedForAreTold) {
    const std::string name(300, 'x');
    const TRun config = RunBare({"scales", "--config", (folder_ / name).string()});
    EXPECT_EQ(config.exitCode, 2);
    EXPECT_NE(config.err.find("cannot be read: File name too long (36)."), std::string::npos)
        << config.err;
    const TRun list = RunBare({"scales", "--ini", (folder_ / name).string()});
    EXPECT_EQ(list.exitCode, 2);
    EXPECT_NE(list.err.find("cannot be read: File name too long (36)."), std::string::npos)
        << list.err;
}

}  // namespace
}  // namespace tolvane::test
