#include "system/LockFile.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "system/TemporaryFile.h"
#include "tests/support/ScratchFolder.h"

namespace tolvane {
namespace {

using std::filesystem::path;

std::uint32_t ThisProcess() {
    return static_cast<std::uint32_t>(getpid());
}

TEST(LockFile, IsHeldByOneAtATimeAndLeavesNothing) {
    const TScratchFolder folder;
    {
        const auto first = TLockFile::TryHold(folder / "a.lock");
        EXPECT_TRUE(first);
        EXPECT_FALSE(TLockFile::TryHold(folder / "a.lock"));
        EXPECT_TRUE(TLockFile::TryHold(folder / "b.lock"));
    }
    EXPECT_EQ(folder.FileCount(), 0U);
    EXPECT_TRUE(TLockFile::TryHold(folder / "a.lock"));
}

TEST(LockFile, NamesTheProcessThatHoldsIt) {
    const TScratchFolder folder;
    EXPECT_FALSE(TLockFile::Holder(folder / "a.lock"));
    const auto lock = TLockFile::TryHold(folder / "a.lock");
    EXPECT_EQ(TLockFile::Holder(folder / "a.lock"), ThisProcess());
    for (const char* text : {"", "x", "-1", "4294967296"}) {
        PutFile(folder / "other.lock", text);
        EXPECT_FALSE(TLockFile::Holder(folder / "other.lock")) << text;
    }
}

TEST(LockFile, IsHeldWhereAProcessThatHasEndedLeftItsFile) {
    const TScratchFolder folder;
    PutFile(folder / "a.lock", "4000000000 and more\n");
    const auto lock = TLockFile::TryHold(folder / "a.lock");
    ASSERT_TRUE(lock);
    EXPECT_EQ(ReadWholeFile(folder / "a.lock"), std::to_string(ThisProcess()) + "\n");
}

TEST(LockFile, CanBeLookedAtWhileOthersHoldAndTakeIt) {
    const TScratchFolder folder;
    const path file = folder / "a.lock";
    EXPECT_FALSE(TLockFile::IsHeld(file));
    EXPECT_EQ(folder.FileCount(), 0U);
    std::atomic<bool> ended = false;
    std::thread looker([&] {
        while (!ended)
            TLockFile::IsHeld(file);
    });
    for (int i = 0; i < 200; ++i) {
        const auto lock = TLockFile::TryHold(file);
        EXPECT_TRUE(lock) << i;
        EXPECT_TRUE(TLockFile::IsHeld(file)) << i;
    }
    ended = true;
    looker.join();
    EXPECT_FALSE(TLockFile::IsHeld(file));
}

TEST(LockFile, TellsWhyItCannotBeCreated) {
    const TScratchFolder folder;
    try {
        TLockFile::TryHold(folder / "none" / "a.lock");
        FAIL() << "no error";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code().default_error_condition(), std::errc::no_such_file_or_directory);
    }
}

TEST(LockFile, IsHandedOver) {
    const TScratchFolder folder;
    auto first = TLockFile::TryHold(folder / "a.lock");
    auto second = TLockFile::TryHold(folder / "b.lock");
    ASSERT_TRUE(first && second);
    *second = std::move(*first);
    EXPECT_TRUE(TLockFile::TryHold(folder / "b.lock"));
    first.reset();
    EXPECT_FALSE(TLockFile::TryHold(folder / "a.lock"));
    TLockFile third(std::move(*second));
    second.reset();
    EXPECT_FALSE(TLockFile::TryHold(folder / "a.lock"));
}

TEST(LockFile, IsKeptWhenItIsHandedToItself) {
    const TScratchFolder folder;
    auto lock = TLockFile::TryHold(folder / "a.lock");
    ASSERT_TRUE(lock);
    TLockFile& same = *lock;
    *lock = std::move(same);
    EXPECT_FALSE(TLockFile::TryHold(folder / "a.lock"));
}

TEST(LockFile, IsNeverHeldTwiceByThreadsThatTakeItAndLetItGo) {
    constexpr int kThreads = 4;
    constexpr int kHolds = 100;
    const TScratchFolder folder;
    std::atomic<int> holders = 0;
    std::atomic<bool> wasShared = false;
    const auto work = [&] {
        for (int held = 0; held < kHolds;) {
            const auto lock = TLockFile::TryHold(folder / "a.lock");
            if (!lock) continue;
            if (++holders != 1) wasShared = true;
            std::this_thread::yield();
            --holders;
            ++held;
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i)
        threads.emplace_back(work);
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_FALSE(wasShared);
    EXPECT_EQ(folder.FileCount(), 0U);
}

}  // namespace
}  // namespace tolvane
