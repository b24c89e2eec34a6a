#include <gtest/gtest.h>

#include <windows.h>

#include "tests/support/module/SettingsSession.h"
#include "tests/support/window/Screenshot.h"

namespace tolvane::test {

using SettingsTest = TSettingsSession;

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
    // The file's own scale has moved to the first slot; what belongs to no scale has stayed.
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
    DeleteTheScale();
    EXPECT_EQ(Content(), kWithoutScale);
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
