#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <functional>
#include <vector>

#include "command/RunLock.h"
#include "system/LockFile.h"
#include "tests/support/InChild.h"
#include "tests/support/ScratchFolder.h"
#include "tests/unit/command/Shop.h"

namespace tolvane::test {
namespace {

using std::filesystem::path;

constexpr uid_t kNobody = 65534;

void SaveOneClaim(const path& folder) {
    TLedger ledger = LoadAt(folder, kNoon);
    ledger.Confirm(Report());
    ledger.Claim(7, 70, kNoon);
    ledger.Save(kNoon);
}

// Loads, and saves 4,000 claims more, which do not fit where one does.
std::string SaveMany(const path& folder) {
    TLedger ledger = LoadAt(folder, kNoon);
    ledger.Confirm(Report());
    for (std::int32_t number = 1; number <= 4000; ++number)
        ledger.Claim(number, 1, kNoon);
    ledger.Save(kNoon);
    return "saved";
}

std::string SaveError(const path& folder, const std::string& words) {
    return "the ledger " + (folder / "scale-3.json").string() + " cannot be saved: " + words;
}

// Only the administrator can take on another user's rights; others have no such rights anyway.
void TakeRightsAway() {
    if (geteuid() == 0 && setuid(kNobody) != 0) throw std::runtime_error("still root");
}

TEST(SaveFailure, InAFolderWithoutRightsLeavesTheFileAndTellsTheSystemsWords) {
    const TScratchFolder folder;
    SaveOneClaim(folder.Path());
    ASSERT_EQ(chmod(folder.Path().c_str(), 0555), 0);
    const std::string before = GetFile(folder / "scale-3.json");
    EXPECT_EQ(InChild([&] {
                  TakeRightsAway();
                  return SaveMany(folder.Path());
              }),
              SaveError(folder.Path(), "Permission denied (13)"));
    EXPECT_EQ(
        InChild([&] {
            TakeRightsAway();
            return TRunLock(folder.Path(), TcpScale(), TMilliseconds(0), SystemClock()).Refusal();
        }),
        "the lock " + (folder / "tcp-10.0.0.5-1001.lock").string() +
            " cannot be created: Permission denied (13)");
    EXPECT_EQ(InChild([&]() -> std::string {
                  TakeRightsAway();
                  return TLedger::Forget(folder.Path(), 3) ? "removed" : "not there";
              }),
              "the ledger " + (folder / "scale-3.json").string() +
                  " cannot be removed: Permission denied (13)");
    EXPECT_EQ(GetFile(folder / "scale-3.json"), before);
    EXPECT_EQ(folder.FileCount(), 1U);
    chmod(folder.Path().c_str(), 0755);
}

TEST(SaveFailure, OfAFileThatMustNotGrowLeavesTheOldOne) {
    const TScratchFolder folder;
    SaveOneClaim(folder.Path());
    const std::string before = GetFile(folder / "scale-3.json");
    EXPECT_EQ(InChild([&] {
                  signal(SIGXFSZ, SIG_IGN);
                  const rlimit limit{4096, 4096};
                  setrlimit(RLIMIT_FSIZE, &limit);
                  return SaveMany(folder.Path());
              }),
              SaveError(folder.Path(), "File too large (27)"));
    EXPECT_EQ(GetFile(folder / "scale-3.json"), before);
    EXPECT_EQ(folder.FileCount(), 1U);
}

// A disk of its own, which only this process sees and which goes with it. Who is not root becomes
// the root of a namespace of his own.
void MountSmallDisk(const path& folder) {
    const uid_t user = geteuid();
    const gid_t group = getegid();
    if (unshare(user == 0 ? CLONE_NEWNS : CLONE_NEWUSER | CLONE_NEWNS) != 0)
        throw std::runtime_error("no namespace");
    if (user != 0) {
        PutFile("/proc/self/setgroups", "deny");
        PutFile("/proc/self/uid_map", "0 " + std::to_string(user) + " 1");
        PutFile("/proc/self/gid_map", "0 " + std::to_string(group) + " 1");
    }
    if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount("tolvane", folder.c_str(), "tmpfs", 0, "size=64k") != 0)
        throw std::runtime_error("no disk");
}

TEST(SaveFailure, OnAFullDiskLeavesTheOldFileUntilThereIsRoomAgain) {
    const TScratchFolder folder;
    EXPECT_EQ(InChild([&]() -> std::string {
                  MountSmallDisk(folder.Path());
                  SaveOneClaim(folder.Path());
                  const std::string before = GetFile(folder / "scale-3.json");
                  std::string told;
                  try {
                      told = SaveMany(folder.Path());
                  } catch (const TFileError& error) {
                      told = error.what();
                  }
                  if (GetFile(folder / "scale-3.json") != before) return "the file has changed";
                  if (folder.FileCount() != 1) return "something is left";
                  SaveOneClaim(folder.Path());
                  return told;
              }),
              SaveError(folder.Path(), "No space left on device (28)"));
}

// Only the name is lacking then, not the file.
TEST(SaveFailure, OfAProcessNumberDoesNotKeepARunFromItsLock) {
    const TScratchFolder folder;
    EXPECT_EQ(InChild([&]() -> std::string {
                  signal(SIGXFSZ, SIG_IGN);
                  const rlimit limit{0, 0};
                  setrlimit(RLIMIT_FSIZE, &limit);
                  const TRunLock lock(folder.Path(), TcpScale(), TMilliseconds(0), SystemClock());
                  const TRunLock other(folder.Path(), TcpScale(), TMilliseconds(0), SystemClock());
                  return (lock.IsHeld() ? "held; " : "not held; ") + other.Refusal();
              }),
              "held; another run holds the lock of this scale");
}

// As a clean-up of old files removes it.
TEST(LockFile, WhoseFileWasRemovedDoesNotRemoveTheNextOne) {
    const TScratchFolder folder;
    auto first = TLockFile::TryHold(folder / "a.lock");
    std::filesystem::remove(folder / "a.lock");
    const auto second = TLockFile::TryHold(folder / "a.lock");
    ASSERT_TRUE(second);
    first.reset();
    EXPECT_FALSE(TLockFile::TryHold(folder / "a.lock"));
}

TEST(LockFile, IsNoLinkToAnotherFile) {
    const TScratchFolder folder;
    PutFile(folder / "precious", "content");
    std::filesystem::create_symlink(folder / "precious", folder / "a.lock");
    EXPECT_THROW(TLockFile::TryHold(folder / "a.lock"), std::system_error);
    EXPECT_EQ(GetFile(folder / "precious"), "content");
}

}  // namespace
}  // namespace tolvane::test
