#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <ctime>

#include "command/RunLock.h"
#include "tests/support/ScratchFolder.h"
#include "tests/unit/command/RunAtWork.h"
#include "tests/unit/config/SavedVersions.h"

namespace tolvane::test {
namespace {

// Memory that a child shares with this process.
class TSharedScale {
public:
    TSharedScale()
        : memory_(mmap(nullptr, sizeof(TScaleMemory), PROT_READ | PROT_WRITE,
                       MAP_SHARED | MAP_ANONYMOUS, -1, 0)) {
        if (memory_ == MAP_FAILED) throw std::bad_alloc();
        scale_ = new (memory_) TScaleMemory{};
    }
    TSharedScale(const TSharedScale&) = delete;
    TSharedScale& operator=(const TSharedScale&) = delete;
    ~TSharedScale() { munmap(memory_, sizeof(TScaleMemory)); }
    TScaleMemory& Memory() const { return *scale_; }

private:
    void* memory_;
    TScaleMemory* scale_;
};

// A child at work, killed by the destructor at the latest. `work` gets what tells that it has
// started.
class TChild {
public:
    explicit TChild(const std::function<void(const std::function<void()>&)>& work) {
        if (pipe(channel_) != 0) throw std::bad_alloc();
        process_ = fork();
        if (process_ != 0) return;
        try {
            work([this] {
                if (write(channel_[1], "s", 1) != 1) _exit(1);
            });
        } catch (const std::exception&) {
            _exit(1);
        }
        _exit(0);
    }
    TChild(const TChild&) = delete;
    TChild& operator=(const TChild&) = delete;
    ~TChild() {
        Kill();
        for (const int end : channel_)
            close(end);
    }

    bool HasStarted() {
        close(std::exchange(channel_[1], -1));
        char started = 0;
        return read(channel_[0], &started, 1) == 1;
    }
    // Whether it was at work until then.
    bool Kill() {
        if (process_ <= 0) return false;
        const pid_t process = std::exchange(process_, -1);
        ::kill(process, SIGKILL);
        int status = 0;
        return waitpid(process, &status, 0) == process && WIFSIGNALED(status);
    }
    pid_t Process() const { return process_; }

private:
    int channel_[2] = {-1, -1};
    pid_t process_ = -1;
};

void SleepMicroseconds(long microseconds) {
    const timespec pause{0, microseconds * 1000};
    nanosleep(&pause, nullptr);
}

TEST(KilledRun, NeverClaimsAnArticleThatTheScaleHasNotAcknowledged) {
    const TScratchFolder folder;
    const TSharedScale scale;
    std::mt19937 random(1);
    int metASave = 0;
    int right = 0;
    for (int kill = 0; kill < Kills(); ++kill) {
        TChild run([&](const auto& onStart) {
            WriteForEver(folder.Path(), static_cast<unsigned>(kill) * 100, scale.Memory(), onStart);
        });
        ASSERT_TRUE(run.HasStarted()) << "kill " << kill;
        SleepMicroseconds(static_cast<long>(random() % 6000));
        ASSERT_TRUE(run.Kill()) << "kill " << kill;
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
    const std::vector<TComputerLock> locks = {{"run-" + std::to_string(getpid()), "this scale"}};
    const auto lockIn = [&](const char* state) {
        return TRunLock(folder / state, TcpScale(), TMilliseconds(0), SystemClock(), nullptr,
                        locks);
    };
    TChild run([&](const auto& onStart) {
        const TRunLock lock = lockIn("a");
        if (lock.IsHeld()) onStart();
        pause();
    });
    const std::uint32_t process = static_cast<std::uint32_t>(run.Process());
    ASSERT_TRUE(run.HasStarted());
    {
        const TRunLock lock = lockIn("a");
        EXPECT_EQ(lock.State(), TRunLockState::HeldByOther);
        EXPECT_EQ(lock.OtherProcess(), process);
        EXPECT_EQ(lockIn("b").State(), TRunLockState::HeldByOther);
    }
    ASSERT_TRUE(run.Kill());
    EXPECT_TRUE(lockIn("a").IsHeld());
    EXPECT_TRUE(lockIn("b").IsHeld());
    EXPECT_TRUE(std::filesystem::is_empty(folder / "a"));
}

}  // namespace
}  // namespace tolvane::test
