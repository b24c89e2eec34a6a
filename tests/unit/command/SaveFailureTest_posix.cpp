#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <functional>
#include <vector>

#include "command/RunLock.h"
#include "system/LockFile.h"
#include "tests/support/ScratchFolder.h"
#include "tests/unit/command/Shop.h"

namespace tolvane::test {
namespace {

using std::filesystem::path;

constexpr uid_t kNobody = 65534;

// What `work` answers in a child process, which may change its own rights and limits.
std::string InChild(const std::function<std::string()>& work) {
    int channel[2];
    if (pipe(channel) != 0) return "no pipe";
    const pid_t child = fork();
    if (child == 0) {
        std::string text;
        try {
            text = work();
        } catch (const std::exception& error) {
            text = error.what();
        }
        const ssize_t written = write(channel[1], text.data(), text.size());
        _exit(written < 0 ? 1 : 0);
    }
    close(channel[1]);
    std::string text(4096, '\0');
    const ssize_t count = read(channel[0], text.data(), text.size());
    text.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
    close(channel[0]);
    waitpid(child, nullptr, 0);
    return text;
}

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

// A disk of its own, which only this process sees and which goes with it.
void MountSmallDisk(const path& folder) {
    if (unshare(CLONE_NEWNS) != 0 ||
        mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount("tolvane", folder.c_str(), "tmpfs", 0, "size=64k") != 0)
        throw std::runtime_error("no disk");
}

TEST(SaveFailure, OnAFullDiskLeavesTheOldFileUntilThereIsRoomAgain) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can make a small disk";
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
