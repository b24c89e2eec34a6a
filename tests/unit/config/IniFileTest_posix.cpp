#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "config/IniFile.h"
#include "system/TemporaryFile.h"
#include "tests/support/InChild.h"
#include "tests/support/ScratchFolder.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

using std::filesystem::path;

TIniDocument LargeDocument() {
    TIniDocument document;
    document.WriteText("A", "k", std::string(100000, 'x'));
    return document;
}

// The error of saving in a process that may not write more than this many bytes to a file.
std::string SaveErrorWithRoomFor(rlim_t bytes, const path& file) {
    return test::InChild([&]() -> std::string {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{bytes, bytes};
        setrlimit(RLIMIT_FSIZE, &limit);
        try {
            WriteIniFile(file, LargeDocument());
        } catch (const TFileError& error) {
            return ToUtf8(error.what());
        }
        return "no error";
    });
}

TEST(ReadIniFile, GivesAnEmptyDocumentWhereAFileStandsForAFolder) {
    const TScratchFolder folder;
    PutFile(folder / "a", "[A]\r\nk=1\r\n");
    EXPECT_EQ(ReadIniFile(folder / "a" / "b.ini").Bytes(), "");
}

TEST(ReadIniFile, ALinkToItselfCanNeitherBeReadNorWritten) {
    const TScratchFolder folder;
    const path file = folder / "a.ini";
    std::filesystem::create_symlink(file, file);
    const auto errorOf = [](const auto& action) -> std::string {
        try {
            action();
        } catch (const TFileError& error) {
            return ToUtf8(error.what());
        }
        return "no error";
    };
    EXPECT_EQ(errorOf([&] { ReadIniFile(file); }),
              "Файлът " + file.string() +
                  " не може да бъде прочетен: Too many levels of symbolic links (40)");
    EXPECT_EQ(errorOf([&] { WriteIniFile(file, LargeDocument()); }),
              "Файлът " + file.string() +
                  " не може да бъде записан: Too many levels of symbolic links (40)");
}

TEST(WriteIniFile, KeepsTheOldFileWhenTheSystemHasNoRoomForTheNewOne) {
    const TScratchFolder folder;
    PutFile(folder / "a.ini", "[A]\r\nk=old\r\n");
    const std::string text = SaveErrorWithRoomFor(4096, folder / "a.ini");
    EXPECT_EQ(text, "Файлът " + (folder / "a.ini").string() +
                        " не може да бъде записан: File too large (27)");
    EXPECT_EQ(GetFile(folder / "a.ini"), "[A]\r\nk=old\r\n");
    EXPECT_EQ(folder.FileCount(), 1U);
}

TEST(WriteIniFile, KeepsTheFilesPermissions) {
    const TScratchFolder folder;
    const path file = folder / "a.ini";
    PutFile(file, "old");
    ASSERT_EQ(chmod(file.c_str(), 0640), 0);
    WriteIniFile(file, LargeDocument());
    struct stat status {};
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0640U);
}

TEST(WriteIniFile, WritesThroughALink) {
    const TScratchFolder folder;
    std::filesystem::create_directory(folder / "real");
    PutFile(folder / "real" / "a.ini", "old");
    std::filesystem::create_symlink(path("real") / "a.ini", folder / "a.ini");
    WriteIniFile(folder / "a.ini", LargeDocument());
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "a.ini"));
    EXPECT_EQ(GetFile(folder / "real" / "a.ini"), LargeDocument().Bytes());
}

TEST(WriteIniFile, BearsForeignFilesWithNamesOfAnyBytes) {
    const TScratchFolder folder;
    PutFile(folder / path("\xFF\xFE garbage"), "x");
    WriteIniFile(folder / "a.ini", LargeDocument());
    EXPECT_EQ(folder.FileCount(), 2U);
}

TEST(TemporaryFile, TellsWhenSomebodyHasRemovedIt) {
    const TScratchFolder folder;
    PutFile(folder / "a.ini", "old");
    TTemporaryFile file(folder / "a.ini");
    file.Write("new");
    std::filesystem::remove(file.Path());
    EXPECT_FALSE(file.TakePlaceOfTarget());
    EXPECT_EQ(GetFile(folder / "a.ini"), "old");
}

}  // namespace
}  // namespace tolvane
