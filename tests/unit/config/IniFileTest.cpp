#include "config/IniFile.h"

#include <gtest/gtest.h>

#include "tests/support/ScratchFolder.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

using std::filesystem::path;

template <typename TAction>
std::string ErrorOf(TAction action) {
    try {
        action();
    } catch (const TFileError& error) {
        return ToUtf8(error.what());
    }
    return "no error";
}

TIniDocument OneValue(std::string_view value) {
    TIniDocument document;
    document.WriteText("A", "k", value);
    return document;
}

TEST(ReadIniFile, AnswersAnEmptyDocumentForAMissingFileOrFolder) {
    const TScratchFolder folder;
    EXPECT_EQ(ReadIniFile(folder / "missing.ini").Bytes(), "");
    EXPECT_EQ(ReadIniFile(folder / "missing" / "a.ini").Bytes(), "");
}

TEST(ReadIniFile, ReadsEveryByte) {
    const TScratchFolder folder;
    const std::string bytes = std::string("[A]\0\x1A\r\n\xFF", 8) + std::string(200000, 'x');
    PutFile(folder / "a.ini", bytes);
    EXPECT_EQ(ReadIniFile(folder / "a.ini").Bytes(), bytes);
}

TEST(ReadIniFile, NamesTheFileThatItCannotRead) {
    const TScratchFolder folder;
    std::filesystem::create_directory(folder / u8"Везни.ini");
    const std::string text = ErrorOf([&] { ReadIniFile(folder / u8"Везни.ini"); });
    EXPECT_TRUE(text.starts_with("Файлът ")) << text;
    EXPECT_NE(text.find("Везни.ini не може да бъде прочетен: "), std::string::npos) << text;
}

TEST(UpdateIniFile, WritesWhatTheChangeMakesOfTheFile) {
    const TScratchFolder folder;
    PutFile(folder / "a.ini", "[A]\r\nx=1\r\n");
    UpdateIniFile(folder / "a.ini",
                  [](TIniDocument& document) { document.WriteText("A", "k", "2"); });
    EXPECT_EQ(ReadIniFile(folder / "a.ini").Bytes(), "[A]\r\nx=1\r\nk=2\r\n");
}

TEST(WriteIniFile, WritesANewFile) {
    const TScratchFolder folder;
    WriteIniFile(folder / "a.ini", OneValue("1"));
    EXPECT_EQ(GetFile(folder / "a.ini"), "[A]\r\nk=1\r\n");
    EXPECT_EQ(folder.FileCount(), 1U);
}

TEST(WriteIniFile, ReplacesAFile) {
    const TScratchFolder folder;
    PutFile(folder / "a.ini", std::string(100000, ';'));
    WriteIniFile(folder / "a.ini", OneValue("1"));
    EXPECT_EQ(GetFile(folder / "a.ini"), "[A]\r\nk=1\r\n");
    EXPECT_EQ(folder.FileCount(), 1U);
}

TEST(WriteIniFile, WritesNothingWhenTheFileHoldsTheBytesAlready) {
    const TScratchFolder folder;
    PutFile(folder / "a.ini", "[A]\r\nk=1\r\n");
    const auto before = std::filesystem::last_write_time(folder / "a.ini") - std::chrono::hours(1);
    std::filesystem::last_write_time(folder / "a.ini", before);
    WriteIniFile(folder / "a.ini", OneValue("1"));
    EXPECT_EQ(std::filesystem::last_write_time(folder / "a.ini"), before);
}

TEST(WriteIniFile, MakesNoFileForAnEmptyDocument) {
    const TScratchFolder folder;
    WriteIniFile(folder / "a.ini", TIniDocument());
    EXPECT_EQ(folder.FileCount(), 0U);
}

TEST(WriteIniFile, EmptiesAFileWhoseLastSectionIsGone) {
    const TScratchFolder folder;
    PutFile(folder / "a.ini", "[A]\r\nk=1\r\n");
    WriteIniFile(folder / "a.ini", TIniDocument());
    EXPECT_EQ(GetFile(folder / "a.ini"), "");
    EXPECT_EQ(folder.FileCount(), 1U);
}

TEST(WriteIniFile, RemovesTheLeftoversOfKilledSavesAndNothingElse) {
    const TScratchFolder folder;
    PutFile(folder / "a.ini.tolvane-0123456789abcdef.tmp", "torn");
    PutFile(folder / "A.Ini.tolvane-00000000000000ff.tmp", "torn");
    PutFile(folder / "b.ini.tolvane-0123456789abcdef.tmp", "of another file");
    PutFile(folder / "a.ini.tmp", "of another program");
    WriteIniFile(folder / "a.ini", OneValue("1"));
    EXPECT_FALSE(exists(folder / "a.ini.tolvane-0123456789abcdef.tmp"));
    EXPECT_FALSE(exists(folder / "A.Ini.tolvane-00000000000000ff.tmp"));
    EXPECT_TRUE(exists(folder / "b.ini.tolvane-0123456789abcdef.tmp"));
    EXPECT_TRUE(exists(folder / "a.ini.tmp"));
    EXPECT_EQ(folder.FileCount(), 3U);
}

TEST(WriteIniFile, RemovesLeftoversAlsoWhenNothingChanged) {
    const TScratchFolder folder;
    PutFile(folder / "a.ini", "[A]\r\nk=1\r\n");
    PutFile(folder / "a.ini.tolvane-0123456789abcdef.tmp", "torn");
    WriteIniFile(folder / "a.ini", OneValue("1"));
    EXPECT_EQ(folder.FileCount(), 1U);
}

TEST(WriteIniFile, FailsInAMissingFolder) {
    const TScratchFolder folder;
    const std::string text =
        ErrorOf([&] { WriteIniFile(folder / u8"няма" / "a.ini", OneValue("1")); });
    EXPECT_TRUE(text.starts_with("Файлът ")) << text;
    EXPECT_NE(text.find("a.ini не може да бъде записан: "), std::string::npos) << text;
    EXPECT_NE(text.find("няма"), std::string::npos) << text;
    EXPECT_FALSE(exists(folder / u8"няма"));
}

TEST(WriteIniFile, FailsOnAReadOnlyFileAndKeepsIt) {
    const TScratchFolder folder;
    const path file = folder / "a.ini";
    PutFile(file, "[A]\r\nk=old\r\n");
    using std::filesystem::perms;
    permissions(file, perms::owner_read | perms::group_read | perms::others_read);
    const std::string text = ErrorOf([&] { WriteIniFile(file, OneValue("new")); });
    permissions(file, perms::owner_all);
    EXPECT_NE(text.find("a.ini не може да бъде записан: "), std::string::npos) << text;
    EXPECT_TRUE(text.ends_with(")")) << text;
    EXPECT_EQ(GetFile(file), "[A]\r\nk=old\r\n");
    EXPECT_EQ(folder.FileCount(), 1U);
}

TEST(WriteIniFile, FailsWhenTheNameIsAFolders) {
    const TScratchFolder folder;
    std::filesystem::create_directory(folder / "a.ini");
    const std::string text = ErrorOf([&] { WriteIniFile(folder / "a.ini", OneValue("1")); });
    EXPECT_NE(text.find("a.ini не може да бъде записан: "), std::string::npos) << text;
    EXPECT_EQ(folder.FileCount(), 1U);
}

}  // namespace
}  // namespace tolvane
