#include <gtest/gtest.h>
#include <windows.h>

#include "command/RunLock.h"
#include "tests/support/OtherProgram.h"
#include "tests/support/ScratchFolder.h"
#include "tests/unit/command/RunAtWork.h"
#include "tests/unit/config/SavedVersions.h"

namespace tolvane::test {
namespace {

using std::filesystem::path;

std::string NameOfThisRun() {
    return "tolvane-run-" + std::to_string(GetCurrentProcessId());
}

// Memory that another program shares with this one.
class TSharedScale {
public:
    TSharedScale()
        : mapping_(CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                      sizeof(TScaleMemory), (NameOfThisRun() + "-scale").c_str())),
          memory_(MapViewOfFile(mapping_, FILE_MAP_WRITE, 0, 0, sizeof(TScaleMemory))) {
        if (memory_ == nullptr) throw std::bad_alloc();
        scale_ = new (memory_) TScaleMemory{};
    }
    TSharedScale(const TSharedScale&) = delete;
    TSharedScale& operator=(const TSharedScale&) = delete;
    ~TSharedScale() {
        UnmapViewOfFile(memory_);
        CloseHandle(mapping_);
    }
    TScaleMemory& Memory() const { return *scale_; }

private:
    HANDLE mapping_;
    void* memory_;
    TScaleMemory* scale_;
};

// Writes for ever, or holds the scale's lock.
class TOtherRun : public TOtherProgram {
public:
    TOtherRun(const path& folder, const std::string& work, const std::string& seed = {})
        : TOtherProgram(L"run_at_work", Wide(work + " " + NameOfThisRun() + " " + seed),
                        Wide(NameOfThisRun()), folder) {}

private:
    static std::wstring Wide(const std::string& text) { return {text.begin(), text.end()}; }
};

TEST(KilledRun, NeverClaimsAnArticleThatTheScaleHasNotAcknowledged) {
    const TScratchFolder folder;
    const TSharedScale scale;
    std::mt19937 random(1);
    int metASave = 0;
    int right = 0;
    for (int kill = 0; kill < Kills(); ++kill) {
        {
            const TOtherRun run(folder.Path(), "write", std::to_string(kill * 100));
            ASSERT_TRUE(run.HasStarted()) << "kill " << kill;
            ASSERT_TRUE(run.DiesAfter(random() % 7)) << "kill " << kill;
        }
        const TLedger ledger = LoadAt(folder.Path(), kAfterwards);
        ASSERT_EQ(ledger.DropReason(), "") << "kill " << kill;
        const TClaimCheck check = CheckClaims(ledger, scale.Memory());
        ASSERT_EQ(check.wrong, 0) << "kill " << kill;
        right += check.right;
        if (folder.FileCount() > 1) ++metASave;
    }
    // Otherwise nothing was tried here.
    EXPECT_GT(metASave, 0);
    EXPECT_GT(right, Kills());
}

TEST(KilledRun, LetsGoOfItsLock) {
    const TScratchFolder folder;
    const TScratchFolder otherFolder;
    const auto lockIn = [](const path& state) {
        return TRunLock(state, TcpScale(), TMilliseconds(0), SystemClock(), nullptr,
                        {{NameOfThisRun(), "this scale"}});
    };
    {
        const TOtherRun run(folder.Path(), "lock");
        ASSERT_TRUE(run.HasStarted());
        const TRunLock lock = lockIn(folder.Path());
        EXPECT_EQ(lock.State(), TRunLockState::HeldByOther);
        EXPECT_EQ(lock.OtherProcess(), run.Process());
        EXPECT_EQ(lockIn(otherFolder.Path()).State(), TRunLockState::HeldByOther);
        ASSERT_TRUE(run.DiesAfter(0));
    }
    EXPECT_TRUE(lockIn(folder.Path()).IsHeld());
    EXPECT_TRUE(lockIn(otherFolder.Path()).IsHeld());
    EXPECT_EQ(folder.FileCount(), 0U);
}

}  // namespace
}  // namespace tolvane::test
