#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/module/BoxAnswerer.h"
#include "tests/module/Screenshot.h"
#include "tests/module/Session.h"
#include "tests/module/settings/DialogScript.h"

namespace tolvane::test {
namespace {

constexpr WPARAM kSettingsCommand = 1005;

// The list window's settings command over a configuration file of the test's own.
class SettingsTest : public testing::Test {
protected:
    SettingsTest() { TConfiguration::Write(kBefore); }

    static std::string Content() { return TConfiguration::Bytes(); }
    void OpenSettings(std::vector<TDialogScript::TStep> steps) const {
        const TDialogScript script(L"TScaleComunicationForm", std::move(steps));
        SendMessageW(session_.List(), WM_COMMAND, kSettingsCommand, 0);
    }

    static constexpr const char* kBefore =
        "; by hand\r\n[SCALE3]\r\nTCPAddress=10.0.0.5\r\n[OTHER]\r\nkey = value\r\n";
    TSession session_;
};

TDialogScript::TStep Pressing(std::string name) {
    return [name = std::move(name)](HWND window) { Press(window, name); };
}

}  // namespace

TEST_F(SettingsTest, AnAddedScaleIsSaved) {
    session_.Start();
    const TDialogScript dialog(L"TfrmScaleSettings", {[](HWND window) {
                                   SetTextOf(window, "edtScaleNumb", L"2");
                                   Choose(ControlOf(window, "cbScaleType"), 1);
                                   Press(window, "rbTCP");
                                   SetTextOf(window, "edtIpAddress", L"10.0.0.7");
                                   Press(window, "btnOk");
                               }});
    OpenSettings({[](HWND window) { EXPECT_EQ(TextOf(window, "edtScaleName"), "SCALE 3"); },
                  Pressing("btnAddScale"),
                  [this](HWND) { SaveScreenshot(session_.host.Frame(), "settings-over-list"); },
                  Pressing("btnOk")});
    // The file's own scale moved to the first slot; what is not a scale's stayed.
    EXPECT_EQ(Content(),
              "; by hand\r\n[OTHER]\r\nkey = value\r\n"
              "[SCALE1]\r\nScaleNumb=3\r\nScaleName=SCALE 3\r\nTCPAddress=10.0.0.5\r\n"
              "TCPPort=1001\r\nChecked=1\r\nBaudRate=0\r\nScaleType=0\r\nEncoding=2\r\n"
              "ScaleAddr=0\r\nCommType=0\r\n"
              "[SCALE2]\r\nScaleNumb=2\r\nScaleName=(ETS) - 10.0.0.7 (2)\r\n"
              "TCPAddress=10.0.0.7\r\nTCPPort=100\r\nChecked=1\r\nBaudRate=0\r\n"
              "ScaleType=5000\r\nEncoding=2\r\nScaleAddr=0\r\nCommType=1\r\n");
}

TEST_F(SettingsTest, CancelLeavesTheFile) {
    session_.Start();
    OpenSettings({Pressing("btnDeleteScale"), Pressing("btnCancel")});
    EXPECT_EQ(Content(), kBefore);
}

TEST_F(SettingsTest, DeletingAllScalesErasesTheirSections) {
    session_.Start();
    OpenSettings({Pressing("btnDeleteScale"), Pressing("btnOk")});
    EXPECT_EQ(Content(), "; by hand\r\n[OTHER]\r\nkey = value\r\n");
}

TEST_F(SettingsTest, AFileHeldByAnotherProgramIsToldInOneBoxAndKept) {
    session_.Start();
    const HANDLE held = CreateFileW(TConfiguration::File().c_str(), GENERIC_READ, FILE_SHARE_READ,
                                    nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    const TBoxAnswerer boxes;
    OpenSettings({Pressing("btnDeleteScale"), Pressing("btnOk")});
    EXPECT_EQ(boxes.Seen().size(), 1U);
    EXPECT_NE(session_.List(), nullptr);
    CloseHandle(held);
    EXPECT_EQ(Content(), kBefore);
    // The change is not lost: the next save is the window's own, when it closes.
    session_.CloseList();
    EXPECT_EQ(Content().rfind("; by hand\r\n[OTHER]\r\nkey = value\r\n[PLUGRID]\r\n", 0), 0U);
    EXPECT_EQ(Content().find("[SCALE"), std::string::npos);
}

TEST_F(SettingsTest, AReadOnlyFileIsToldInOneBoxAndKept) {
    session_.Start();
    SetFileAttributesW(TConfiguration::File().c_str(), FILE_ATTRIBUTE_READONLY);
    {
        const TBoxAnswerer boxes;
        OpenSettings({Pressing("btnDeleteScale"), Pressing("btnOk")});
        ASSERT_EQ(boxes.Seen().size(), 1U);
        EXPECT_EQ(boxes.Seen()[0].icon, TBoxIcon::Error);
        EXPECT_NE(boxes.Seen()[0].text.find("Tolvane"), std::string::npos);
    }
    EXPECT_EQ(Content(), kBefore);
    SetFileAttributesW(TConfiguration::File().c_str(), FILE_ATTRIBUTE_NORMAL);
}

// Held without sharing while the list opens: its twenty slots are empty then, and must not be
// written over the file's scales.
TEST_F(SettingsTest, AFileThatCouldNotBeReadLosesNothing) {
    const auto hold = [] {
        return CreateFileW(TConfiguration::File().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                           0, nullptr);
    };
    HANDLE held = hold();
    session_.Start();
    CloseHandle(held);
    session_.CloseList();
    EXPECT_EQ(Content(), kBefore);

    held = hold();
    session_.Start();
    {
        const TBoxAnswerer boxes;
        SendMessageW(session_.List(), WM_COMMAND, kSettingsCommand, 0);
        EXPECT_EQ(boxes.Seen().size(), 1U);
    }
    CloseHandle(held);
    // Readable again, it is read before the editor opens.
    OpenSettings({[](HWND window) { EXPECT_EQ(TextOf(window, "edtScaleName"), "SCALE 3"); },
                  Pressing("btnCancel")});
    session_.CloseList();
    EXPECT_EQ(TConfiguration::Value("SCALE3", "TCPAddress"), "10.0.0.5");
    EXPECT_EQ(TConfiguration::Value("SCALE3", "ScaleName"), "SCALE 3");
}

TEST_F(SettingsTest, EveryWindowCarriesItsName) {
    session_.Start();
    const auto expectNames = [](HWND window) {
        EXPECT_FALSE(ComponentNameOf(window).empty());
        for (HWND at = GetWindow(window, GW_CHILD); at != nullptr; at = GetWindow(at, GW_HWNDNEXT))
            EXPECT_FALSE(ComponentNameOf(at).empty()) << Utf8(ClassOf(at));
    };
    const TDialogScript hint(L"THintForm", {expectNames, Pressing("btnOk")});
    const TDialogScript find(L"TFindDevicesForm", {expectNames, Pressing("btnCancel")});
    const TDialogScript dialog(L"TfrmScaleSettings",
                               {expectNames, Pressing("btnHint"), Pressing("rbTCP"),
                                Pressing("btnFindDevices"), Pressing("btnCancel")});
    OpenSettings({expectNames, Pressing("btnAddScale"), Pressing("btnCancel")});
}

TEST_F(SettingsTest, DestroyingTheListWindowClosesTheEditor) {
    session_.Start();
    const TDialogScript script(L"TScaleComunicationForm", {[this](HWND) {
                                   SendMessageW(session_.host.Client(), WM_MDIDESTROY,
                                                reinterpret_cast<WPARAM>(session_.List()), 0);
                               }});
    SendMessageW(session_.List(), WM_COMMAND, kSettingsCommand, 0);
    RunLoopDry();
    EXPECT_EQ(session_.List(), nullptr);
    EXPECT_EQ(session_.Completions(), 1);
}

}  // namespace tolvane::test
