#include "command/DatabaseWatch.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <optional>
#include <thread>

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

// A watch that lets an answer take as long as two or three of its looks.
class DatabaseSilenceTest : public testing::Test {
protected:
    DatabaseSilenceTest() {
        test_.world.longestAnswer = TMilliseconds(120);
        test_.world.leave = [this](TExitCode code) { left_.set_value(code); };
        test_.world.interrupts = [this] {
            if (onLook_) onLook_();
            ++looks_;
            return 0;
        };
    }
    void WaitForLooks(int count) const {
        for (const int end = looks_ + count; looks_ < end;)
            std::this_thread::yield();
    }
    bool HasLeft(std::chrono::seconds wait = {}) {
        return result_.wait_for(wait) == std::future_status::ready;
    }

    const TCommandOptions options_{.database = "shop-server:/data/shop.fdb"};
    TTestWorld test_;
    std::function<void()> onLook_;
    std::atomic<int> looks_ = 0;
    std::promise<TExitCode> left_;
    std::future<TExitCode> result_ = left_.get_future();
};

TEST_F(DatabaseSilenceTest, LeavesWhenTheConnectionIsNotAnswered) {
    {
        const TDatabaseWatch watch(options_, test_.world);
        ASSERT_TRUE(HasLeft(seconds(30)));
    }
    EXPECT_EQ(result_.get(), TExitCode::Database);
    EXPECT_EQ(test_.err.str(),
              "tolvane: The database has not answered for 1 seconds; no scale was touched.\n");
}

TEST_F(DatabaseSilenceTest, LeavesWhenACallDoesNotComeBack) {
    const TCallCount calls = std::make_shared<TCallCount::element_type>(5);
    TDatabaseWatch watch(options_, test_.world);
    watch.Follow(calls);
    EXPECT_TRUE(HasLeft(seconds(30)));
}

TEST_F(DatabaseSilenceTest, EachCallHasItsOwnTime) {
    const TCallCount calls = std::make_shared<TCallCount::element_type>();
    onLook_ = [calls] { ++*calls; };
    {
        TDatabaseWatch watch(options_, test_.world);
        watch.Follow(calls);
        WaitForLooks(10);
    }
    EXPECT_FALSE(HasLeft());
}

TEST_F(DatabaseSilenceTest, ABuildingOfAnIndexMayTakeAnyTime) {
    {
        TDatabaseWatch watch(options_, test_.world);
        watch.Follow(nullptr);
        WaitForLooks(10);
    }
    EXPECT_FALSE(HasLeft());
}

// A watch that hears of an interrupt after its first look, while the test plays the library, which
// gets an hour to end what it does.
class DatabaseEndingTest : public testing::Test {
protected:
    DatabaseEndingTest() {
        test_.world.longestEnding = std::chrono::hours(1);
        test_.world.leave = [this](TExitCode) { left_.set_value(); };
        test_.world.interrupts = [this] {
            const int look = looks_++;
            if (look == 2) heard_.set_value();
            return look < 2 ? 0 : 1;
        };
    }
    void Watch(const std::string& database) {
        options_.database = database;
        watch_.emplace(options_, test_.world);
        heard_.get_future().wait();
    }
    bool HasLeft(std::chrono::milliseconds wait = {}) {
        return result_.wait_for(wait) == std::future_status::ready;
    }

    TTestWorld test_;
    TCommandOptions options_;
    std::atomic<int> looks_ = 0;
    std::promise<void> heard_;
    std::promise<void> left_;
    std::future<void> result_ = left_.get_future();
    std::optional<TDatabaseWatch> watch_;
};

TEST_F(DatabaseEndingTest, LeavesAServersClientAtOnce) {
    Watch("shop-server:/data/shop.fdb");
    EXPECT_TRUE(HasLeft(seconds(30)));
}

TEST_F(DatabaseEndingTest, LetsTheEmbeddedEngineEndFirst) {
    Watch("/data/shop.fdb");
    EXPECT_FALSE(HasLeft(TMilliseconds(300)));
    watch_.reset();
    EXPECT_TRUE(HasLeft());
    EXPECT_EQ(test_.err.str(),
              "tolvane: Interrupted while the database was read; no scale was touched.\n");
}

TEST_F(DatabaseEndingTest, WaitsForTheEmbeddedEngineOnlySoLong) {
    test_.world.longestEnding = TMilliseconds(20);
    Watch("/data/shop.fdb");
    EXPECT_TRUE(HasLeft(seconds(30)));
}

// Such as between two tries to open a file that another program has.
TEST_F(DatabaseEndingTest, LeavesAtOnceWhenTheLibraryIsAtRest) {
    Watch("/data/shop.fdb");
    while (!HasLeft(TMilliseconds(10)))
        watch_->Expect();
}

TEST(DatabaseWatch, ReportsThatItLeaves) {
    TTestWorld test;
    const TScratchFolder folder;
    TCommandOptions options;
    options.report = folder / "report.html";
    test.world.page.Open(options, {.title = "T"}, [] { return 0.0; });
    test.interrupts = 1;
    { const TDatabaseWatch watch({}, test.world); }
    EXPECT_EQ(
        GetFile(options.report),
        PageText({.title = "T",
                  .exitCode = TExitCode::Interrupted,
                  .messages = {"Interrupted while the database was read; no scale was touched."},
                  .facts = {{"Took", "0.0 s"}}}));
}

}  // namespace
}  // namespace tolvane::test
