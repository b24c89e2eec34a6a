#include "command/DatabaseWait.h"

#include <gtest/gtest.h>

#include "tests/unit/command/TestWorld.h"

namespace tolvane::test {
namespace {

constexpr const char* kWaits =
    "Another program has the database open; waiting up to 30 seconds for it.\n";

class TDatabaseWaitTest : public ::testing::Test {
protected:
    // Attaches to a database that is in use for the first `times`.
    int Attach(int times, const TCommandOptions& options = {}) {
        TDatabaseWatch watch(options, test_.world);
        return TDatabaseWait(options, test_.world, watch).WhenFree([&] {
            if (tries_++ < times) throw TDatabaseInUse("It is in use.");
            return 7;
        });
    }

    TTestWorld test_;
    int tries_ = 0;
};

TEST_F(TDatabaseWaitTest, AFreeFileIsTakenAtOnce) {
    EXPECT_EQ(Attach(0), 7);
    EXPECT_EQ(tries_, 1);
    EXPECT_EQ(test_.clock.Now(), test_.world.start);
    EXPECT_EQ(test_.err.str(), "");
}

TEST_F(TDatabaseWaitTest, TriesAgainAndSaysOnceThatItWaits) {
    EXPECT_EQ(Attach(3), 7);
    EXPECT_EQ(tries_, 4);
    EXPECT_EQ(test_.clock.Now() - test_.world.start, TMilliseconds(450));
    EXPECT_EQ(test_.err.str(), kWaits);
}

TEST_F(TDatabaseWaitTest, SaysNothingToTheQuiet) {
    EXPECT_EQ(Attach(3, {.quiet = true}), 7);
    EXPECT_EQ(test_.err.str(), "");
}

// 200 pauses of 150 ms.
TEST_F(TDatabaseWaitTest, GivesUpAfterHalfAMinuteAndSaysSo) {
    try {
        Attach(1000);
        FAIL() << "attached";
    } catch (const TDatabaseError& error) {
        EXPECT_STREQ(error.what(), "It is in use.\nIt was still open after 30 seconds.");
    }
    EXPECT_EQ(tries_, 201);
    EXPECT_EQ(test_.clock.Now() - test_.world.start, std::chrono::seconds(30));
    EXPECT_EQ(test_.err.str(), kWaits);
}

}  // namespace
}  // namespace tolvane::test
