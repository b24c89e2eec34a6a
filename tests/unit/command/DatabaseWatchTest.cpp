#include "command/DatabaseWatch.h"

#include <gtest/gtest.h>

#include "tests/support/ScratchFolder.h"
#include "tests/unit/command/TestWorld.h"

namespace tolvane::test {
namespace {

using std::chrono::seconds;

TEST(DatabaseWatch, LetsTheDatabaseBeReadInPeace) {
    TTestWorld test;
    { const TDatabaseWatch watch({.deadline = seconds(1)}, test.world); }
    EXPECT_TRUE(test.left.empty());
    EXPECT_EQ(test.err.str(), "");
}

TEST(DatabaseWatch, LeavesForAnInterruptThatCameBeforeIt) {
    TTestWorld test;
    test.interrupts = 1;
    { const TDatabaseWatch watch({}, test.world); }
    EXPECT_EQ(test.left, std::vector{TExitCode::Interrupted});
    EXPECT_EQ(test.err.str(),
              "tolvane: Interrupted while the database was read; no scale was touched.\n");
}

// From the program's start: what comes before the database counts, too.
TEST(DatabaseWatch, LeavesForTheDeadlineAndLogsIt) {
    TTestWorld test;
    const TScratchFolder folder;
    test.world.log.Open(folder / "log", [] { return "T"; });
    test.clock.Sleep(TMilliseconds(59'999));
    { const TDatabaseWatch watch({.deadline = seconds(60)}, test.world); }
    EXPECT_TRUE(test.left.empty());
    test.clock.Sleep(TMilliseconds(1));
    { const TDatabaseWatch watch({.deadline = seconds(60)}, test.world); }
    EXPECT_EQ(test.left, std::vector{TExitCode::Database});
    const std::string text =
        "The deadline has passed while the database was read; no scale was touched.";
    EXPECT_EQ(test.err.str(), "tolvane: " + text + "\n");
    EXPECT_EQ(GetFile(folder / "log"),
              R"({"time":"T","event":"end","exitCode":4,"error":")" + text + "\"}\n");
}

}  // namespace
}  // namespace tolvane::test
