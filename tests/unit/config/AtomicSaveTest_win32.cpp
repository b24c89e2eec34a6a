#include <gtest/gtest.h>
#include <windows.h>

#include <random>

#include "config/IniFile.h"
#include "system/FileLock.h"
#include "tests/support/OtherProgram.h"
#include "tests/support/ScratchFolder.h"
#include "tests/unit/config/SavedVersions.h"

namespace tolvane {
namespace {

using std::filesystem::path;

std::wstring EventOfThisRun() {
    return L"tolvane-saver-" + std::to_wstring(GetCurrentProcessId());
}

// Saves in a folder for ever, or holds its lock.
class TSaver : public test::TOtherProgram {
public:
    explicit TSaver(const path& folder, const std::wstring& work = L"save")
        : TOtherProgram(L"config_saver", work + L" " + EventOfThisRun(), EventOfThisRun(), folder) {
    }
};

TEST(WriteIniFile, LeavesTheOldOrTheNewFileWholeWhenItIsKilled) {
    const TScratchFolder folder;
    const path file = folder / "a.ini";
    const std::string versions[] = {SavedVersion('1').Bytes(), SavedVersion('2').Bytes()};
    std::mt19937 random(1);
    int leftovers = 0;
    for (int kill = 0; kill < Kills(); ++kill) {
        {
            const TSaver saver(folder.Path());
            ASSERT_TRUE(saver.HasStarted()) << "kill " << kill;
            ASSERT_TRUE(saver.DiesAfter(random() % 7)) << "kill " << kill;
        }
        const std::string found = GetFile(file);
        ASSERT_TRUE(found == versions[0] || found == versions[1]) << "kill " << kill;
        if (folder.FileCount() > 1) ++leftovers;
        // The next save, even of unchanged content, removes what the killed one left.
        WriteIniFile(file, TIniDocument(found));
        ASSERT_EQ(folder.FileCount(), 1U) << "kill " << kill;
        ASSERT_TRUE(GetFile(file) == found) << "kill " << kill;
    }
    RecordProperty("leftovers", leftovers);
    // At least one kill must have hit a half-done save; otherwise this has shown nothing.
    EXPECT_GT(leftovers, 0);
    WriteIniFile(file, TIniDocument("[A]\r\nk=1\r\n"));
    EXPECT_EQ(folder.FileCount(), 1U);
    EXPECT_EQ(GetFile(file), "[A]\r\nk=1\r\n");
}

TEST(FileLock, EndsWithItsProgram) {
    const TScratchFolder folder;
    {
        const TSaver holder(folder.Path(), L"lock");
        ASSERT_TRUE(holder.HasStarted());
        EXPECT_FALSE(TFileLock(folder / "a.ini").IsHeld());
        ASSERT_TRUE(holder.DiesAfter(0));
    }
    EXPECT_TRUE(TFileLock(folder / "a.ini").IsHeld());
    EXPECT_EQ(folder.FileCount(), 0U);
}

}  // namespace
}  // namespace tolvane
