// What can happen to the module's configuration file: another program holds it, it is read-only,
// its folder is gone, or other programs keep their own lines in it.
#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <filesystem>

#include "tests/support/module/SettingsSession.h"
#include "tests/support/window/UserScript.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

using std::filesystem::path;

constexpr DWORD kPathNotFound = 3;
constexpr DWORD kAccessDenied = 5;
constexpr DWORD kSharingViolation = 32;

// Holds the file as another program does.
class THeldFile {
public:
    explicit THeldFile(DWORD sharing)
        : handle_(CreateFileW(TConfiguration::File().c_str(), GENERIC_READ, sharing, nullptr,
                              OPEN_EXISTING, 0, nullptr)) {
        EXPECT_NE(handle_, INVALID_HANDLE_VALUE);
    }
    THeldFile(const THeldFile&) = delete;
    THeldFile& operator=(const THeldFile&) = delete;
    ~THeldFile() { CloseHandle(handle_); }

private:
    HANDLE handle_;
};

class TReadOnly {
public:
    TReadOnly() { SetFileAttributesW(TConfiguration::File().c_str(), FILE_ATTRIBUTE_READONLY); }
    TReadOnly(const TReadOnly&) = delete;
    TReadOnly& operator=(const TReadOnly&) = delete;
    ~TReadOnly() { SetFileAttributesW(TConfiguration::File().c_str(), FILE_ATTRIBUTE_NORMAL); }
};

// Renames the folder while it lives, as if it did not exist.
class TMissingFolder {
public:
    TMissingFolder() {
        std::error_code failed;
        std::filesystem::rename(Folder(), Away(), failed);
        EXPECT_FALSE(failed) << failed.message();
        EXPECT_FALSE(exists(Folder()));
    }
    TMissingFolder(const TMissingFolder&) = delete;
    TMissingFolder& operator=(const TMissingFolder&) = delete;
    ~TMissingFolder() {
        std::error_code ignored;
        std::filesystem::rename(Away(), Folder(), ignored);
    }
    static path Folder() { return TConfiguration::File().parent_path(); }

private:
    static path Away() { return Folder().parent_path() / "Operations-away"; }
};

// Expects nothing in the folder but the module and its file, and no temporary one.
void ExpectNoLeftover() {
    for (const auto& entry : std::filesystem::directory_iterator(TMissingFolder::Folder()))
        EXPECT_EQ(entry.path().filename().string().find(".tmp"), std::string::npos) << entry.path();
}

bool StartsWith(const std::string& text, std::string_view start) {
    return text.rfind(start, 0) == 0;
}

}  // namespace

class SettingsFileTest : public TSettingsSession {
protected:
    // Closes the list window while THold keeps the file from being written.
    template <class THold, class... TArguments>
    void ExpectToldOnClosing(TArguments... arguments) {
        session_.Start();
        {
            const THold hold(arguments...);
            const TBoxAnswerer boxes;
            session_.CloseList();
            ExpectNotWritten(boxes, kAccessDenied);
        }
        EXPECT_EQ(session_.List(), nullptr);
        EXPECT_EQ(session_.Completions(), 1);
        EXPECT_EQ(Content(), kBefore);
        ExpectNoLeftover();
    }
};

TEST_F(SettingsFileTest, AFileHeldByAnotherProgramIsReportedInOneBoxAndKept) {
    session_.Start();
    {
        const THeldFile held(FILE_SHARE_READ);
        const TBoxAnswerer boxes;
        DeleteTheScale();
        ExpectNotWritten(boxes, kAccessDenied);
        EXPECT_NE(session_.List(), nullptr);
    }
    EXPECT_EQ(Content(), kBefore);
    ExpectNoLeftover();
    // The change is not lost: the window saves it when it closes.
    session_.CloseList();
    EXPECT_TRUE(StartsWith(Content(), std::string(kWithoutScale) + "[PLUGRID]\r\n")) << Content();
    EXPECT_EQ(Content().find("[SCALE"), std::string::npos);
}

TEST_F(SettingsFileTest, AFileHeldWithoutSharingIsReportedWithTheSharingViolation) {
    session_.Start();
    {
        const THeldFile held(0);
        const TBoxAnswerer boxes;
        DeleteTheScale();
        ExpectOneFileBox(boxes, "Tolvane.Ini", "не може да бъде прочетен", kSharingViolation);
    }
    EXPECT_EQ(Content(), kBefore);
    ExpectNoLeftover();
}

TEST_F(SettingsFileTest, AReadOnlyFileIsReportedInOneBoxAndKept) {
    session_.Start();
    {
        const TReadOnly readOnly;
        const TBoxAnswerer boxes;
        DeleteTheScale();
        ExpectNotWritten(boxes, kAccessDenied);
        EXPECT_NE(session_.List(), nullptr);
    }
    EXPECT_EQ(Content(), kBefore);
    ExpectNoLeftover();
}

TEST_F(SettingsFileTest, AReadOnlyFileIsReportedInOneBoxAndTheWindowStillCloses) {
    ExpectToldOnClosing<TReadOnly>();
}

TEST_F(SettingsFileTest, AHeldFileIsReportedInOneBoxAndTheWindowStillCloses) {
    ExpectToldOnClosing<THeldFile>(DWORD{FILE_SHARE_READ});
}

// The window of a failed start closes without a second box, since it has changed no scale.
TEST_F(SettingsFileTest, AFailedStartIsReportedInOneBoxAlsoWhenTheFileCannotBeWritten) {
    session_.connection.ShutDown();
    const TReadOnly readOnly;
    const TBoxAnswerer boxes;
    session_.Start();
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_TRUE(StartsWith(boxes.Seen()[0].text, "Грешка :\r")) << boxes.Seen()[0].text;
    EXPECT_EQ(session_.List(), nullptr);
    EXPECT_EQ(Content(), kBefore);
}

// Another program holds the file without sharing while the list opens. The list's twenty slots are
// empty then, and must not be written over the file's scales.
TEST_F(SettingsFileTest, AFileThatCouldNotBeReadLosesNothing) {
    {
        const THeldFile held(0);
        session_.Start();
    }
    session_.CloseList();
    EXPECT_EQ(Content(), kBefore);

    {
        const THeldFile held(0);
        session_.Start();
        const TBoxAnswerer boxes;
        SendMessageW(session_.List(), WM_COMMAND, kSettingsCommand, 0);
        ExpectOneFileBox(boxes, "Tolvane.ini", "не може да бъде прочетен", kSharingViolation);
    }
    // The file can be read again, and is read before the editor opens.
    OpenSettings({[](HWND window) { EXPECT_EQ(TextOf(window, "edtScaleName"), "SCALE 3"); },
                  Pressing("btnCancel")});
    session_.CloseList();
    EXPECT_EQ(TConfiguration::Value("SCALE3", "TCPAddress"), "10.0.0.5");
    EXPECT_EQ(TConfiguration::Value("SCALE3", "ScaleName"), "SCALE 3");
}

// The layout is read again before the chooser opens, because the chooser saves one even when it is
// cancelled.
TEST_F(SettingsFileTest, ALayoutThatCouldNotBeReadIsTakenOverBeforeTheChooserOpens) {
    TConfiguration::Write("[PLUGRID]\r\nHiddenRows=01000000000000000000000000000000\r\n");
    session_.Start();
    SendMessageW(session_.Grid().Handle(), LVM_SETCOLUMNWIDTH, 2, 177);
    SetWindowPos(session_.List(), nullptr, 15, 25, 640, 360, SWP_NOZORDER);
    session_.CloseList();
    const std::string kept = Content();
    {
        const THeldFile held(0);
        session_.Start();
        EXPECT_EQ(session_.Grid().Titles().size(), 32U);
        const TBoxAnswerer boxes;
        const TUserScript chooser(L"TColListForm",
                                  [](HWND window) { PostMessageW(window, WM_CLOSE, 0, 0); });
        session_.Click("ColBtn");
        EXPECT_FALSE(chooser.IsDone());
        ExpectOneFileBox(boxes, "Tolvane.ini", "не може да бъде прочетен", kSharingViolation);
    }
    {
        const TDialogScript chooser(L"TColListForm", {Pressing("btnCancel")});
        session_.Click("ColBtn");
    }
    EXPECT_EQ(Content(), kept);
    EXPECT_EQ(session_.Grid().Titles().size(), 31U);
    EXPECT_EQ(session_.Grid().ColumnWidth(2), 177);
    EXPECT_EQ(session_.Grid().ColumnFormat(0) & (HDF_SORTUP | HDF_SORTDOWN), HDF_SORTUP);
    session_.CloseList();
    EXPECT_EQ(Content(), kept);
}

// Reading finds no scales and reports nothing. Nobody makes the folder, so saving fails.
TEST_F(SettingsFileTest, AMissingFolderOpensAListWithoutScalesAndIsReportedOnSaving) {
    const TMissingFolder missing;
    {
        const TBoxAnswerer boxes;
        session_.Start();
        EXPECT_TRUE(boxes.Seen().empty());
    }
    ASSERT_NE(session_.List(), nullptr);
    EXPECT_EQ(session_.Completions(), 0);
    {
        const TDialogScript dialog(L"TfrmScaleSettings", {[](HWND window) {
                                       SetTextOf(window, "edtScaleNumb", L"2");
                                       Press(window, "rbTCP");
                                       SetTextOf(window, "edtIpAddress", L"10.0.0.7");
                                       Press(window, "btnOk");
                                   }});
        const TBoxAnswerer boxes;
        OpenSettings({[](HWND window) { EXPECT_EQ(TextOf(window, "edtScaleName"), ""); },
                      Pressing("btnAddScale"), Pressing("btnOk")});
        ExpectNotWritten(boxes, kPathNotFound);
    }
    {
        const TBoxAnswerer boxes;
        session_.CloseList();
        ExpectNotWritten(boxes, kPathNotFound);
    }
    EXPECT_EQ(session_.List(), nullptr);
    EXPECT_EQ(session_.Completions(), 1);
    EXPECT_FALSE(exists(TMissingFolder::Folder()));
}

// The two scales move to the first slots: one of them into another's section, with that section's
// foreign lines, one into a section of its own at the end.
TEST_F(SettingsFileTest, ConfirmingLeavesEveryForeignByteOfTheFile) {
    const std::string head(
        "; Файл на магазина\r\n"
        "Company = \"Пример\" \r\n"
        "\r\n"
        "[Printer]\n"
        "Name = ' Zebra ' ; до касата\n"
        "garbage line\n"
        "[ scale2 ]\r\n"
        "; кантар на щанда\r\n"_cp1251);
    const std::string second(
        "  scalename =  'Щанд 2'\t\r\n"
        "TCPADDRESS=10.0.0.2\r\n"
        "tcpport = 20304\r\n"
        "Note=не е наша\r\n"_cp1251);
    const std::string middle(
        "\r\n"
        "; край на кантара\r\n"
        "[SCALE0]\r\n"
        "ScaleName=нула\r\n"_cp1251);
    const std::string third("[SCALE3]\r\n; of the third\r\nTCPAddress=10.0.0.3\r\n\r\n");
    const std::string tail(
        "; на следващата секция\r\n"
        "# също\r\n"
        "[SCALE21]\r\n"
        "ScaleName=двадесет и едно\r\n"
        "[OTHER]\r\n"
        "key = value"_cp1251);
    const std::string thirdInSecond(
        "  scalename =  SCALE 3\t\r\n"
        "TCPADDRESS=10.0.0.3\r\n"
        "tcpport = 1001\r\n"
        "Note=не е наша\r\n"
        "ScaleNumb=3\r\n"
        "Checked=1\r\n"
        "BaudRate=0\r\n"
        "ScaleType=0\r\n"
        "Encoding=2\r\n"
        "ScaleAddr=0\r\n"
        "CommType=0\r\n"_cp1251);
    const std::string secondInFirst(
        "\r\n[SCALE1]\r\n"
        "ScaleNumb=2\r\n"
        "ScaleName=Щанд 2\r\n"
        "TCPAddress=10.0.0.2\r\n"
        "TCPPort=20304\r\n"
        "Checked=1\r\n"
        "BaudRate=0\r\n"
        "ScaleType=0\r\n"
        "Encoding=2\r\n"
        "ScaleAddr=0\r\n"
        "CommType=0\r\n"_cp1251);
    TConfiguration::Write(head + second + middle + third + tail);
    session_.Start();
    OpenSettings({Pressing("btnOk")});
    const std::string expected = head + thirdInSecond + middle + tail + secondInFirst;
    EXPECT_EQ(Content(), expected);
    session_.CloseList();
    EXPECT_TRUE(StartsWith(Content(), expected + "[PLUGRID]\r\n"));
}

}  // namespace tolvane::test
