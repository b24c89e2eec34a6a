#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <ctime>
#include <random>

#include "config/IniFile.h"
#include "system/FileLock.h"
#include "tests/support/ScratchFolder.h"
#include "tests/unit/config/SavedVersions.h"

namespace tolvane {
namespace {

pid_t StartSaving(const std::filesystem::path& file, const TIniDocument& first,
                  const TIniDocument& second, int toParent) {
    const pid_t child = fork();
    if (child != 0) return child;
    WriteIniFile(file, first);
    if (write(toParent, "s", 1) != 1) _exit(1);
    for (int save = 0; save < 1'000'000; ++save)
        WriteIniFile(file, save % 2 == 0 ? second : first);
    _exit(1);
}

void SleepMicroseconds(long microseconds) {
    const timespec pause{0, microseconds * 1000};
    nanosleep(&pause, nullptr);
}

TEST(WriteIniFile, LeavesTheOldOrTheNewFileWholeWhenItIsKilled) {
    const TScratchFolder folder;
    const std::filesystem::path file = folder / "a.ini";
    const TIniDocument first = SavedVersion('1');
    const TIniDocument second = SavedVersion('2');
    const std::string firstBytes = first.Bytes();
    const std::string secondBytes = second.Bytes();
    std::mt19937 random(1);
    int leftovers = 0;
    for (int kill = 0; kill < Kills(); ++kill) {
        int channel[2];
        ASSERT_EQ(pipe(channel), 0);
        const pid_t child = StartSaving(file, first, second, channel[1]);
        close(channel[1]);
        char started = 0;
        ASSERT_EQ(read(channel[0], &started, 1), 1);
        close(channel[0]);
        SleepMicroseconds(static_cast<long>(random() % 6000));
        ::kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status));
        const std::string found = GetFile(file);
        ASSERT_TRUE(found == firstBytes || found == secondBytes) << "kill " << kill;
        if (folder.FileCount() > 1) ++leftovers;
    }
    // At least one kill must have hit a half-done save; otherwise this has shown nothing.
    EXPECT_GT(leftovers, 0);
    WriteIniFile(file, first);
    EXPECT_EQ(folder.FileCount(), 1U);
    EXPECT_EQ(GetFile(file), firstBytes);
}

TEST(WriteIniFile, LetsTwoProgramsSaveTheSameFileAtOnce) {
    const TScratchFolder folder;
    const std::filesystem::path file = folder / "a.ini";
    const TIniDocument versions[] = {SavedVersion('1'), SavedVersion('2')};
    pid_t children[2] = {};
    for (int i = 0; i < 2; ++i) {
        children[i] = fork();
        if (children[i] != 0) continue;
        try {
            for (int save = 0; save < 50; ++save)
                WriteIniFile(file, versions[(save + i) % 2]);
        } catch (const TFileError&) {
            _exit(1);
        }
        _exit(0);
    }
    for (const pid_t child : children) {
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    const std::string found = GetFile(file);
    EXPECT_TRUE(found == versions[0].Bytes() || found == versions[1].Bytes());
    EXPECT_EQ(folder.FileCount(), 1U);
}

TEST(FileLock, EndsWithItsProgram) {
    const TScratchFolder folder;
    const std::filesystem::path file = folder / "a.ini";
    int channel[2];
    ASSERT_EQ(pipe(channel), 0);
    const pid_t child = fork();
    if (child == 0) {
        const TFileLock lock(file);
        const char held = lock.IsHeld() ? '1' : '0';
        if (write(channel[1], &held, 1) != 1) _exit(1);
        pause();
        _exit(1);
    }
    char held = 0;
    ASSERT_EQ(read(channel[0], &held, 1), 1);
    EXPECT_EQ(held, '1');
    EXPECT_FALSE(TFileLock(file).IsHeld());
    ::kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    EXPECT_TRUE(TFileLock(file).IsHeld());
    for (const int end : channel)
        close(end);
}

}  // namespace
}  // namespace tolvane
