#include "config/ConfigurationStore.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "config/IniFile.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/scales/TestScales.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

using std::filesystem::path;

void Ignore(const TIniDocument&) {}
void WriteWidth(TIniDocument& document) {
    document.WriteText("PLUGRID", "Width", "7");
}
constexpr const char* kLayout = "[PLUGRID]\r\nWidth=7\r\n";

// The file has the name that a store saves under. A store also reads other spellings, which differ
// only on systems whose file names have case.
class ConfigurationStoreTest : public testing::Test {
protected:
    ConfigurationStoreTest()
        : file_(folder_ / "Tolvane.Ini"), store_(file_, folder_ / "Host.ini") {}

    void Open(const std::string& content) {
        PutFile(file_, content);
        store_.Load(&Ignore);
    }
    // Puts a folder where the file should be, so that it cannot be read.
    void OpenUnreadable() {
        std::filesystem::create_directory(file_);
        store_.Load(&Ignore);
    }
    void MakeReadable(const std::string& content) {
        std::filesystem::remove(file_);
        PutFile(file_, content);
    }
    template <class TAction>
    static std::string ErrorOf(TAction action) {
        try {
            action();
        } catch (const TFileError& error) {
            return ToUtf8(error.what());
        }
        return "no error";
    }

    TScratchFolder folder_;
    path file_;
    TConfigurationStore store_;
    const std::string a_ = NetworkScaleSection(1, 1, "A");
    const std::string b_ = NetworkScaleSection(2, 2, "B");
};

TEST_F(ConfigurationStoreTest, LoadGivesTheScalesAndHandsTheDocumentOver) {
    PutFile(file_, a_ + kLayout);
    std::vector<std::string> widths;
    store_.Load([&](const TIniDocument& document) {
        EXPECT_EQ(store_.Scales()[1].ScaleName.Str(), "A");
        widths.push_back(document.ReadText("PLUGRID", "Width", ""));
    });
    EXPECT_EQ(widths, std::vector<std::string>{"7"});
    EXPECT_TRUE(IsInUse(store_.Scales()[1]));
    EXPECT_FALSE(IsInUse(store_.Scales()[2]));
}

TEST_F(ConfigurationStoreTest, HostSettingsAreEmptyWhenTheyCannotBeRead) {
    PutFile(folder_ / "Host.ini", "[A]\r\nk=1\r\n");
    EXPECT_EQ(store_.HostSettings().ReadText("A", "k", ""), "1");
    std::filesystem::remove(folder_ / "Host.ini");
    std::filesystem::create_directory(folder_ / "Host.ini");
    EXPECT_EQ(store_.HostSettings().Bytes(), "");
}

TEST_F(ConfigurationStoreTest, SaveScalesWritesChangedScalesAndNoLayout) {
    Open(a_ + "[OTHER]\r\nk=1\r\n");
    store_.Scales()[2] = NetworkScale(2, "B");
    store_.SaveScales();
    EXPECT_EQ(GetFile(file_), a_ + "[OTHER]\r\nk=1\r\n" + b_);
}

TEST_F(ConfigurationStoreTest, ASecondSaveWritesOnlyWhatHasChangedSinceTheFirst) {
    Open(a_);
    store_.Scales()[2] = NetworkScale(2, "B");
    store_.SaveScales();
    // Another window has removed it meanwhile.
    PutFile(file_, a_);
    store_.SaveScales();
    EXPECT_EQ(GetFile(file_), a_);
}

TEST_F(ConfigurationStoreTest, AFileThatHasGoneGetsAllScales) {
    Open(a_);
    std::filesystem::remove(file_);
    store_.SaveScales();
    EXPECT_EQ(GetFile(file_), a_);
}

TEST_F(ConfigurationStoreTest, AScaleWithoutRoomIsNamedAndTriedAgain) {
    Open("");
    std::string others;
    for (int slot = 1; slot <= kScaleSlots; ++slot)
        others += NetworkScaleSection(slot, slot, "S" + std::to_string(slot));
    PutFile(file_, others);
    store_.Scales()[1] = NetworkScale(31, "X");
    store_.Scales()[2] = NetworkScale(32, "Y");
    const std::string text =
        "Във файла с настройките вече има 20 везни, записани от друг прозорец. "
        "Не са записани: X, Y";
    EXPECT_EQ(ErrorOf([&] { store_.SaveScales(); }), text);
    EXPECT_EQ(GetFile(file_), others);
    EXPECT_TRUE(store_.HasUnsavedScales());
    EXPECT_EQ(ErrorOf([&] { store_.SaveScales(); }), text);

    PutFile(file_, "");
    store_.SaveScales();
    EXPECT_EQ(GetFile(file_), NetworkScaleSection(1, 31, "X") + NetworkScaleSection(2, 32, "Y"));
    EXPECT_FALSE(store_.HasUnsavedScales());
}

TEST_F(ConfigurationStoreTest, SaveLayoutLeavesTheScales) {
    Open(a_);
    store_.Scales()[1] = NetworkScale(1, "changed");
    store_.SaveLayout(&WriteWidth);
    EXPECT_EQ(GetFile(file_), a_ + kLayout);
}

TEST_F(ConfigurationStoreTest, SaveAtEndWritesBothOnce) {
    Open(a_);
    store_.Scales()[2] = NetworkScale(2, "B");
    store_.SaveAtEnd(&WriteWidth);
    EXPECT_EQ(GetFile(file_), a_ + b_ + kLayout);
    PutFile(file_, a_);
    store_.Scales()[3] = NetworkScale(3, "C");
    store_.SaveAtEnd(&WriteWidth);
    EXPECT_EQ(GetFile(file_), a_);
}

TEST_F(ConfigurationStoreTest, SaveAtEndThatFailsIsNotRepeated) {
    Open(a_);
    store_.Scales()[1].Checked = false;
    std::filesystem::remove(file_);
    std::filesystem::create_directory(file_);
    EXPECT_NE(ErrorOf([&] { store_.SaveAtEnd(&WriteWidth); }), "no error");
    EXPECT_TRUE(store_.HasUnsavedScales());
    EXPECT_EQ(ErrorOf([&] { store_.SaveAtEnd(&WriteWidth); }), "no error");
}

TEST_F(ConfigurationStoreTest, WhatCouldNotBeReadIsNotWritten) {
    OpenUnreadable();
    EXPECT_FALSE(IsInUse(store_.Scales()[1]));
    MakeReadable(a_);
    store_.SaveAtEnd(&WriteWidth);
    EXPECT_EQ(GetFile(file_), a_);
    EXPECT_FALSE(store_.HasUnsavedScales());
}

TEST_F(ConfigurationStoreTest, NeededScalesAreReadAndWrittenThen) {
    OpenUnreadable();
    EXPECT_NE(ErrorOf([&] { store_.EnsureScalesLoaded(); }), "no error");
    MakeReadable(a_);
    store_.EnsureScalesLoaded();
    EXPECT_EQ(store_.Scales()[1].ScaleName.Str(), "A");
    store_.Scales()[2] = NetworkScale(2, "B");
    // What is loaded is not loaded again: the change stays.
    store_.EnsureScalesLoaded();
    store_.SaveAtEnd(&WriteWidth);
    EXPECT_EQ(GetFile(file_), a_ + b_);
}

TEST_F(ConfigurationStoreTest, ANeededLayoutIsHandedOverOnceAndWrittenThen) {
    OpenUnreadable();
    int read = 0;
    const auto count = [&](const TIniDocument& document) {
        EXPECT_EQ(document.Bytes(), a_);
        ++read;
    };
    EXPECT_NE(ErrorOf([&] { store_.EnsureLayoutLoaded(count); }), "no error");
    EXPECT_EQ(read, 0);
    MakeReadable(a_);
    store_.EnsureLayoutLoaded(count);
    store_.EnsureLayoutLoaded(count);
    EXPECT_EQ(read, 1);
    store_.SaveAtEnd(&WriteWidth);
    EXPECT_EQ(GetFile(file_), a_ + kLayout);
}

TEST_F(ConfigurationStoreTest, AReadableLayoutIsNotReadAgain) {
    Open(a_);
    store_.EnsureLayoutLoaded([](const TIniDocument&) { FAIL(); });
}

// The name that a store gives to the file that it makes in "<folder>/Магазин 中/Operations".
class ConfigurationNamesTest : public testing::Test {
protected:
    ConfigurationNamesTest() { std::filesystem::create_directories(Operations()); }

    path Operations() const { return folder_ / path(u8"Магазин 中") / "Operations"; }
    TConfigurationStore Store() const {
        return {Operations() / "Tolvane.ini", folder_ / "Host.ini"};
    }
    std::vector<std::string> Files() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(Operations()))
            names.push_back(entry.path().filename().string());
        return names;
    }

    TScratchFolder folder_;
};

TEST_F(ConfigurationNamesTest, TheScalesAreSavedUnderTheNameForSaving) {
    TConfigurationStore store = Store();
    store.Load(&Ignore);
    store.Scales()[1] = NetworkScale(1, "A");
    store.SaveScales();
    EXPECT_EQ(Files(), std::vector<std::string>{"Tolvane.Ini"});
}

TEST_F(ConfigurationNamesTest, TheEndSavesUnderTheNameForSaving) {
    TConfigurationStore store = Store();
    store.Load(&Ignore);
    store.SaveAtEnd(&WriteWidth);
    EXPECT_EQ(Files(), std::vector<std::string>{"Tolvane.Ini"});
}

TEST_F(ConfigurationNamesTest, TheLayoutAloneIsSavedUnderTheNameForLoading) {
    TConfigurationStore store = Store();
    store.Load(&Ignore);
    store.SaveLayout(&WriteWidth);
    EXPECT_EQ(Files(), std::vector<std::string>{"Tolvane.ini"});
    EXPECT_EQ(store.File(), Operations() / "Tolvane.ini");
}

TEST_F(ConfigurationNamesTest, MessagesNameTheFileThatTheOperationUses) {
    for (const char* name : {"Tolvane.ini", "Tolvane.Ini"})
        std::filesystem::create_directory(Operations() / name);
    TConfigurationStore store = Store();
    store.Load(&Ignore);
    const auto nameIn = [](const auto& action) -> std::string {
        try {
            action();
        } catch (const TFileError& error) {
            const std::string text = error.what();
            const std::size_t at = text.find("Tolvane.");
            return at == std::string::npos ? text : text.substr(at, 11);
        }
        return "no error";
    };
    EXPECT_EQ(nameIn([&] { store.EnsureScalesLoaded(); }), "Tolvane.ini");
    EXPECT_EQ(nameIn([&] { store.EnsureLayoutLoaded(&Ignore); }), "Tolvane.ini");
    EXPECT_EQ(nameIn([&] { store.SaveLayout(&WriteWidth); }), "Tolvane.ini");
    EXPECT_EQ(nameIn([&] { store.SaveScales(); }), "Tolvane.Ini");
    EXPECT_EQ(nameIn([&] { store.SaveAtEnd(&WriteWidth); }), "Tolvane.Ini");
}

}  // namespace
}  // namespace tolvane
