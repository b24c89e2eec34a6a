// The ledgers on a disk that gets full. tests/module/disk/run.sh makes the disk and names it;
// elsewhere there are no such tests.

#include <algorithm>
#include <cstdlib>
#include <set>
#include <thread>

#include "command/LedgerText.h"
#include "simulator/Commands.h"
#include "tests/command/program/ProgramTest.h"
#include "tests/support/FullDisk_win32.h"

namespace tolvane::test {
namespace {

std::vector<std::string> SmallDisks() {
    const char* const folder = std::getenv("TOLVANE_SMALL_DISK");
    if (folder == nullptr) return {};
    return {folder};
}

class SmallDiskTest : public TProgramTest, public testing::WithParamInterface<std::string> {
protected:
    // The ledgers lie on the small disk.
    SmallDiskTest() {
        state_ = (Disk() / "state").string();
        std::filesystem::remove_all(StateFolder());
    }

    static std::filesystem::path Disk() { return GetParam(); }
    static std::filesystem::path Ballast() { return Disk() / "ballast"; }
    std::set<std::int32_t> Claimed() const {
        std::set<std::int32_t> numbers;
        for (const auto& [number, claim] : ParseLedgerText(GetFile(LedgerOf(1))).claims)
            numbers.insert(number);
        return numbers;
    }
    void ExpectNotSaved(const TRun& run) const {
        EXPECT_EQ(run.exitCode, 3) << run.err;
        EXPECT_EQ(run.Scale(1).at("outcome"), "failed");
        EXPECT_EQ(run.Scale(1).at("mayBeProgramming"), false);
        const std::string error = run.Scale(1).at("error");
        EXPECT_TRUE(error.starts_with("the ledger " + LedgerOf(1).string() + " cannot be saved: "))
            << error;
        EXPECT_TRUE(error.ends_with(" (112)")) << error;
        // Nothing is left of what did not fit.
        for (const auto& entry : std::filesystem::directory_iterator(StateFolder()))
            EXPECT_NE(entry.path().extension(), ".tmp") << entry.path();
    }
};

TEST_P(SmallDiskTest, FullBeforeARunIsAFailureOfTheScaleWhichIsNotWritten) {
    const TVirtualScale& scale = AddScale(1);
    ASSERT_EQ(Run({"write"}).exitCode, 0);
    const std::string before = GetFile(LedgerOf(1));
    Sql("update PLUES set PLU_SELL_PRICE = 2.6 where PLU_NUMB = 101");
    {
        const TFullDisk full(Ballast());
        ExpectNotSaved(Run({"write", "--changed", "--json"}));
        EXPECT_EQ(PriceOf(scale, 1), 250);
        EXPECT_FALSE(scale.State().programming);
        EXPECT_EQ(GetFile(LedgerOf(1)), before);
        const TRun status = Run({"status", "--json"});
        EXPECT_EQ(status.exitCode, 0) << status.err;
        EXPECT_EQ(status.Scale(1).at("held"), 3);
        EXPECT_EQ(status.Scale(1).at("pending"), 1);
    }
    const TRun run = Run({"write", "--changed", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.Scale(1).at("written"), 1);
    EXPECT_EQ(PriceOf(scale, 1), 260);
}

// What was written before is not claimed unless it was saved, and is written again.
TEST_P(SmallDiskTest, FullDuringARunClaimsNothingThatCouldNotBeSaved) {
    TVirtualScale& scale = AddScale(1);
    scale.SetFaults({.faults = {simulator::FaultFromText("slow,ms=100")}});
    const std::unique_ptr<TProcess> process = Start({"write", "--json"});
    for (int i = 0; PriceOf(scale, 1) < 0 && i < 3000; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    ASSERT_EQ(PriceOf(scale, 1), 250);
    {
        const TFullDisk full(Ballast());
        ExpectNotSaved(Ended(*process));
        EXPECT_FALSE(scale.State().programming);
        const std::vector<int> held = NumbersOf(scale);
        for (const std::int32_t number : Claimed())
            EXPECT_TRUE(std::ranges::count(held, number)) << number;
        EXPECT_LT(Claimed().size(), 3U);
        const TRun status = Run({"status", "--json"});
        EXPECT_EQ(status.exitCode, 0) << status.err;
        EXPECT_EQ(status.Scale(1).at("held"), Claimed().size());
    }
    scale.SetFaults({});
    const std::size_t unchanged = Claimed().size();
    const TRun run = Run({"write", "--changed", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.Scale(1).at("unchanged"), unchanged);
    EXPECT_EQ(run.Scale(1).at("written"), 3 - unchanged);
    EXPECT_EQ(NumbersOf(scale), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(Claimed(), (std::set<std::int32_t>{1, 2, 3}));
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(SmallDiskTest);
INSTANTIATE_TEST_SUITE_P(Disk, SmallDiskTest, testing::ValuesIn(SmallDisks()),
                         [](const auto&) { return std::string("OfItsOwn"); });

}  // namespace
}  // namespace tolvane::test
