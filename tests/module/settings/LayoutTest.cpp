#include <gtest/gtest.h>

#include <windows.h>

#include "settings/forms/ScaleComunicationForm.h"
#include "settings/forms/uHint.h"
#include "tests/support/scales/TestScales.h"
#include "tests/support/window/Controls.h"
#include "tests/support/window/HintText.h"
#include "tests/support/window/HostFrame.h"
#include "tests/support/window/Layout.h"
#include "tests/support/window/UserScript.h"
#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

class LayoutTest : public testing::Test {
protected:
    THostFrame host_;
    TDeviceSearch search_ = [](const std::atomic<bool>&, const TProbeReport&) {};
};

}  // namespace

TEST_F(LayoutTest, ConnectionDialog) {
    TfrmScaleSettings form(host_.Frame(), {}, {}, {},
                           {[](bool, std::vector<std::string>&) {}, search_});
    ExpectTextsFit(form.Handle());
    ExpectControlsApart(form.Handle());
}

// At whatever resolution the system has, and the host is told of another one.
TEST_F(LayoutTest, TheWindowsFollowTheirMonitors) {
    const TfrmScaleSettings settings(host_.Frame(), {}, {}, {},
                                     {[](bool, std::vector<std::string>&) {}, search_});
    ExpectFollowsMonitors(settings.Handle());
    const TScaleComunicationForm list(host_.Frame(), {}, SystemScaleListServices());
    ExpectFollowsMonitors(list.Handle());
    const TFindDevicesForm devices(host_.Frame(), search_);
    ExpectFollowsMonitors(devices.Handle());
    const THintForm hint(host_.Frame());
    ExpectFollowsMonitors(hint.Handle(), false);
}

TEST_F(LayoutTest, NoCaptionHasAnIcon) {
    const TfrmScaleSettings settings(host_.Frame(), {}, {}, {},
                                     {[](bool, std::vector<std::string>&) {}, search_});
    EXPECT_FALSE(HasCaptionIcon(settings.Handle()));
    const TScaleComunicationForm list(host_.Frame(), {}, SystemScaleListServices());
    EXPECT_FALSE(HasCaptionIcon(list.Handle()));
    const TFindDevicesForm devices(host_.Frame(), search_);
    EXPECT_FALSE(HasCaptionIcon(devices.Handle()));
    const THintForm hint(host_.Frame());
    EXPECT_FALSE(HasCaptionIcon(hint.Handle()));
}

TEST_F(LayoutTest, ButtonsOfOneLetterSayWhatTheyAreFor) {
    TfrmScaleSettings form(host_.Frame(), {}, {}, {},
                           {[](bool, std::vector<std::string>&) {}, search_});
    const auto hint = [&](const char* name) { return HintText(form.Handle(), name); };
    EXPECT_EQ(hint("btnRefreshComList"), "Прочитане отново на COM портовете");
    EXPECT_EQ(hint("btnFindDevices"), "Търсене на везни в мрежата");
    EXPECT_EQ(hint("btnHint"), "Помощ за настройката на връзката");
    EXPECT_EQ(hint("btnOk"), "");
}

TEST_F(LayoutTest, ScaleList) {
    const TScaleComunicationForm form(host_.Frame(), {}, SystemScaleListServices());
    ExpectTextsFit(form.Handle());
    ExpectControlsApart(form.Handle());
}

// The longest address and speed.
TEST_F(LayoutTest, ScaleListWithScales) {
    const TScaleRec network = NetworkScale(60, "Щанд месо"_cp1251, "255.255.255.255", 65535);
    TScaleRec serial = SerialScale(59, "Щанд риба"_cp1251, "COM255");
    serial.BaudRate = 4;
    for (const TScaleRec& rec : {network, serial}) {
        TScaleComunicationForm form(host_.Frame(), {{rec}}, SystemScaleListServices());
        const TDialogScript user(L"TScaleComunicationForm", {[](HWND window) {
                                     EXPECT_NE(TextOf(window, "edtScaleAddress"), "");
                                     ExpectTextsFit(window);
                                     Press(window, "btnCancel");
                                 }});
        form.ShowModal();
    }
}

TEST_F(LayoutTest, FindDevices) {
    const TFindDevicesForm form(host_.Frame(), search_);
    ExpectTextsFit(form.Handle());
    ExpectControlsApart(form.Handle());
}

TEST_F(LayoutTest, Hint) {
    // The texts lie on the page control.
    const THintForm form(host_.Frame());
    ExpectTextsFit(form.Handle());
}

}  // namespace tolvane::test
