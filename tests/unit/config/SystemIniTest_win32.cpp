#include <gtest/gtest.h>
#include <windows.h>

#include "config/IniDocument.h"
#include "config/IniFile.h"
#include "tests/support/ScratchFolder.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

using namespace std::string_literals;
using std::filesystem::path;

constexpr const char* kMissing = "<missing>";

void Flush(const std::string& file) {
    WritePrivateProfileStringA(nullptr, nullptr, nullptr, file.c_str());
}

std::string SystemReads(const path& file, const char* section, const char* key) {
    const std::string name = file.string();
    Flush(name);
    char text[4096] = {};
    const DWORD length =
        GetPrivateProfileStringA(section, key, kMissing, text, sizeof text, name.c_str());
    return {text, length};
}

std::string ModuleReads(const path& file, const char* section, const char* key) {
    return ReadIniFile(file).ReadText(section, key, kMissing);
}

// Expects that both readers return the text, which was worked out by hand.
void ExpectBothRead(const std::string& bytes, const std::string& value) {
    const TScratchFolder folder;
    const path file = folder / "a.ini";
    PutFile(file, bytes);
    EXPECT_EQ(ModuleReads(file, "A", "k"), value) << bytes;
    EXPECT_EQ(SystemReads(file, "A", "k"), value) << bytes;
}

TEST(SystemIni, ReadsBlanksQuotesAndCommentsAsTheModuleDoes) {
    ExpectBothRead("[A]\r\nk=v\r\n", "v");
    ExpectBothRead("  [ a ] ; note\r\n\tK \t=\tv w \t\r\n", "v w");
    ExpectBothRead("[A]\r\nk=\" v \"\r\n", " v ");
    ExpectBothRead("[A]\r\nk=' v '\r\n", " v ");
    ExpectBothRead("[A]\r\nk=\"\"v\"\"\r\n", "\"v\"");
    ExpectBothRead("[A]\r\nk=\"v'\r\n", "\"v'");
    ExpectBothRead("[A]\r\nk=\"\r\n", "\"");
    ExpectBothRead("[A]\r\nk=\"a\" b\r\n", "\"a\" b");
    ExpectBothRead("[A]\r\n;k=1\r\n  ;k=2\r\nk=3 ; x\r\n", "3 ; x");
    ExpectBothRead("[A]\r\n#k=1\r\nk=a=b", "a=b");
    ExpectBothRead("[A]\r\nk=\r\n", "");
}

TEST(SystemIni, ReadsRepeatsAsTheModuleDoes) {
    ExpectBothRead("[A]\r\nk=1\r\nk=2\r\n", "1");
    ExpectBothRead("[A]\r\nx=1\r\n[B]\r\n[A]\r\nk=2\r\n", kMissing);
    ExpectBothRead("[A]\r\nk\r\nk=2\r\n", kMissing);
    ExpectBothRead("[A\r\nk=2\r\n", kMissing);
}

TEST(SystemIni, ReadsLineEndsAndOddBytesAsTheModuleDoes) {
    ExpectBothRead("[A]\nk=v\n", "v");
    ExpectBothRead("[A]\r\r\nk=v\r\r\n", "v");
    ExpectBothRead("[A]\rk=v\rz=1\r", "v");
    ExpectBothRead("[A]\r\nk=v\x1A", "v");
    ExpectBothRead("[A]\r\nk=a\0b\r\n"s, "a");
    ExpectBothRead("[A]\r\nk=\x01v\x01\r\n", "\x01v\x01");
}

TEST(SystemIni, ReadsBackWhatTheModuleWrote) {
    const TScratchFolder folder;
    const path file = folder / "a.ini";
    for (const char* value : {"v", "", " ", " v ", "\"v\"", "'v'", "\"", "'", "\"v", "v\"", "a=b",
                              ";v", "[v]", "\tv", "\xC2\xE5\xE7\xED\xE0"}) {
        TIniDocument document = ReadIniFile(file);
        document.WriteText("A", "k", value);
        document.WriteText("SCALE" + std::to_string(document.Bytes().size()), "k", "x");
        WriteIniFile(file, document);
        EXPECT_EQ(SystemReads(file, "A", "k"), value);
        EXPECT_EQ(ModuleReads(file, "A", "k"), value);
    }
}

TEST(SystemIni, WritesWhatTheModuleReads) {
    const TScratchFolder folder;
    const path file = folder / "a.ini";
    PutFile(file, "[A]\nx = 1\n; note\n[B]\nz=1");
    const std::string name = file.string();
    ASSERT_TRUE(WritePrivateProfileStringA("A", "k", "\" v \"", name.c_str()));
    ASSERT_TRUE(WritePrivateProfileStringA("SCALE3", "TCPAddress", "10.0.0.3", name.c_str()));
    Flush(name);
    const TIniDocument document = ReadIniFile(file);
    EXPECT_EQ(document.Value("A", "k"), " v ");
    EXPECT_EQ(document.Value("A", "x"), "1");
    EXPECT_EQ(document.Value("B", "z"), "1");
    EXPECT_EQ(document.Value("SCALE3", "TCPAddress"), "10.0.0.3");
}

TEST(SystemIni, SeesASectionErasedByTheModuleAsMissing) {
    const TScratchFolder folder;
    const path file = folder / "a.ini";
    PutFile(file, "[A]\r\nk=1\r\n[B]\r\nz=1\r\n[A]\r\nk=2\r\n");
    TIniDocument document = ReadIniFile(file);
    document.EraseSection("A");
    WriteIniFile(file, document);
    EXPECT_EQ(SystemReads(file, "A", "k"), kMissing);
    EXPECT_EQ(SystemReads(file, "B", "z"), "1");
}

TEST(WriteIniFile, FailsOnAFileThatAnotherProgramHoldsOpenAndKeepsIt) {
    const TScratchFolder folder;
    const path file = folder / "a.ini";
    PutFile(file, "[A]\r\nk=old\r\n");
    const HANDLE held = CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    TIniDocument document;
    document.WriteText("A", "k", "new");
    std::string text = "no error";
    try {
        WriteIniFile(file, document);
    } catch (const TFileError& error) {
        text = error.what();
    }
    CloseHandle(held);
    EXPECT_NE(text.find("a.ini не може да бъде записан: "_cp1251), std::string::npos) << text;
    EXPECT_EQ(GetFile(file), "[A]\r\nk=old\r\n");
    EXPECT_EQ(folder.FileCount(), 1U);
    WriteIniFile(file, document);
    EXPECT_EQ(GetFile(file), "[A]\r\nk=new\r\n");
}

}  // namespace
}  // namespace tolvane
