#include "system/TemporaryFile.h"

#include <gtest/gtest.h>
#ifdef _WIN32
#include <windows.h>
#endif

#include <system_error>
#include <thread>
#include <utility>

#include "tests/support/ScratchFolder.h"

namespace tolvane {
namespace {

using std::filesystem::exists;
using std::filesystem::path;

TEST(TemporaryFile, StandsBesideItsTargetUntilItGoes) {
    const TScratchFolder folder;
    path name;
    {
        const TTemporaryFile file(folder / "a.ini");
        name = file.Path();
        EXPECT_EQ(name.parent_path(), folder.Path());
        EXPECT_TRUE(exists(name));
        EXPECT_TRUE(IsTemporaryOf(folder / "a.ini", name));
    }
    EXPECT_FALSE(exists(name));
}

TEST(TemporaryFile, TakesThePlaceOfItsTarget) {
    const TScratchFolder folder;
    PutFile(folder / "a.ini", "old");
    TTemporaryFile file(folder / "a.ini");
    file.Write("new");
    EXPECT_EQ(GetFile(folder / "a.ini"), "old");
    EXPECT_TRUE(file.TakePlaceOfTarget());
    EXPECT_EQ(GetFile(folder / "a.ini"), "new");
    EXPECT_EQ(folder.FileCount(), 1U);
}

#ifdef _WIN32
TEST(TemporaryFile, WaitsForAMomentInWhichAnotherProgramReadsTheTarget) {
    const TScratchFolder folder;
    PutFile(folder / "a", "old");
    const HANDLE reader = CreateFileW((folder / "a").c_str(), GENERIC_READ, FILE_SHARE_READ,
                                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(reader, INVALID_HANDLE_VALUE);
    const std::jthread end([reader] {
        Sleep(100);
        CloseHandle(reader);
    });
    ReplaceWholeFile(folder / "a", "new");
    EXPECT_EQ(ReadWholeFile(folder / "a"), "new");
}
#endif

TEST(TemporaryFile, MoveAssignmentRemovesTheFormerFileAndKeepsTheOther) {
    const TScratchFolder folder;
    TTemporaryFile file(folder / "a.ini");
    TTemporaryFile other(folder / "b.ini");
    const path former = file.Path();
    const path kept = other.Path();
    file = std::move(other);
    EXPECT_FALSE(exists(former));
    EXPECT_TRUE(exists(kept));
    EXPECT_EQ(file.Path(), kept);
    file.Write("moved");
    EXPECT_TRUE(file.TakePlaceOfTarget());
    EXPECT_EQ(GetFile(folder / "b.ini"), "moved");
}

TEST(TemporaryFile, MoveAssignmentToItselfKeepsTheFile) {
    const TScratchFolder folder;
    TTemporaryFile file(folder / "a.ini");
    TTemporaryFile& same = file;
    file = std::move(same);
    EXPECT_TRUE(exists(file.Path()));
}

TEST(TemporaryFile, AFileThatWasMovedFromRemovesNothing) {
    const TScratchFolder folder;
    TTemporaryFile file(folder / "a.ini");
    {
        TTemporaryFile taken(std::move(file));
        EXPECT_EQ(folder.FileCount(), 1U);
        file = std::move(taken);
    }
    EXPECT_EQ(folder.FileCount(), 1U);
}

TEST(TemporaryFile, CannotStandInAMissingFolder) {
    const TScratchFolder folder;
    EXPECT_THROW(TTemporaryFile(folder / "missing" / "a.ini"), std::system_error);
}

TEST(TemporaryFile, IsNoLeftoverWhileItIsWritten) {
    const TScratchFolder folder;
    TTemporaryFile file(folder / "a.ini");
    file.Write("x");
    RemoveLeftover(file.Path());
    EXPECT_TRUE(exists(file.Path()));
}

TEST(RemoveLeftovers, LooksInTheCurrentFolderForAFileThatNamesNone) {
    const TScratchFolder folder;
    PutFile(folder / "a.ini.tolvane-0123456789abcdef.tmp", "half");
    PutFile(folder / "b.ini.tolvane-0123456789abcdef.tmp", "another's");
    const path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.Path());
    RemoveLeftovers("a.ini");
    std::filesystem::current_path(before);
    EXPECT_FALSE(exists(folder / "a.ini.tolvane-0123456789abcdef.tmp"));
    EXPECT_EQ(folder.FileCount(), 1U);
}

TEST(IsTemporaryOf, KnowsItsOwnNamesOnly) {
    const path target = path("folder") / "Tolvane.Ini";
    EXPECT_TRUE(IsTemporaryOf(target, "Tolvane.Ini.tolvane-0123456789abcdef.tmp"));
    EXPECT_TRUE(IsTemporaryOf(target, "tolvane.INI.tolvane-0123456789abcdef.tmp"));
    for (const char* name :
         {"Tolvane.Ini", "Tolvane.Ini.tmp", "Tolvane.Ini.tolvane-.tmp",
          "Tolvane.Ini.tolvane-0123456789abcde.tmp", "Tolvane.Ini.tolvane-0123456789abcdefa.tmp",
          "Tolvane.Ini.tolvane-0123456789abcdeg.tmp", "Tolvane.Ini.tolvane-0123456789abcdef.bak",
          "Other.Ini.tolvane-0123456789abcdef.tmp", "xTolvane.Ini.tolvane-0123456789abcdef.tmp"})
        EXPECT_FALSE(IsTemporaryOf(target, name)) << name;
}

TEST(UniqueTemporaryPath, IsAnotherOneEachTime) {
    const path target = path("folder") / "a.ini";
    EXPECT_NE(UniqueTemporaryPath(target), UniqueTemporaryPath(target));
    EXPECT_TRUE(IsTemporaryOf(target, UniqueTemporaryPath(target)));
}

}  // namespace
}  // namespace tolvane
