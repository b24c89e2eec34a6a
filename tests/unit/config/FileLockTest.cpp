#include "system/FileLock.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "config/IniFile.h"
#include "tests/support/ScratchFolder.h"

namespace tolvane {
namespace {

TEST(FileLock, IsHeldByOneAtATimeAndLeavesNothing) {
    const TScratchFolder folder;
    {
        const TFileLock first(folder / "a.ini");
        EXPECT_TRUE(first.IsHeld());
        // It waits for its two seconds in vain.
        EXPECT_FALSE(TFileLock(folder / "a.ini").IsHeld());
    }
    EXPECT_TRUE(TFileLock(folder / "a.ini").IsHeld());
    EXPECT_EQ(folder.FileCount(), 0U);
}

TEST(FileLock, CannotBeHadInAMissingFolder) {
    const TScratchFolder folder;
    EXPECT_FALSE(TFileLock(folder / "none" / "a.ini").IsHeld());
}

TEST(UpdateIniFile, LosesNoChangeOfOthersWhoUpdateTheFileAtTheSameTime) {
    constexpr int kThreads = 3;
    constexpr int kUpdates = 8;
    const TScratchFolder folder;
    const std::filesystem::path file = folder / "a.ini";
    const auto count = [&](const std::string& key) {
        for (int i = 0; i < kUpdates; ++i) {
            UpdateIniFile(file, [&](TIniDocument& document) {
                for (const std::string& counted : {key, std::string("all")})
                    document.WriteInteger("A", counted, document.ReadInteger("A", counted, 0) + 1);
            });
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i)
        threads.emplace_back(count, "k" + std::to_string(i));
    for (std::thread& thread : threads)
        thread.join();
    const TIniDocument document = ReadIniFile(file);
    EXPECT_EQ(document.ReadInteger("A", "all", 0), kThreads * kUpdates);
    for (int i = 0; i < kThreads; ++i)
        EXPECT_EQ(document.ReadInteger("A", "k" + std::to_string(i), 0), kUpdates);
    EXPECT_EQ(folder.FileCount(), 1U);
}

}  // namespace
}  // namespace tolvane
