#include <gtest/gtest.h>

#include <windows.h>

#include <cstdint>

#include "settings/forms/ScaleComunicationForm.h"
#include "settings/forms/uHint.h"
#include "tests/support/window/HostFrame.h"
#include "tests/support/window/ObjectCounts.h"
#include "tests/support/window/UserScript.h"

namespace tolvane::test {
namespace {

TScaleListServices Services() {
    TScaleListServices services;
    services.settings.listSerialPorts = [](bool, std::vector<std::string>& items) {
        items = {"COM1"};
    };
    services.settings.search = [](const std::atomic<bool>&, const TProbeReport& report) {
        report({{"10.0.0.7", TDeviceKind::UdpModule}});
    };
    return services;
}

// Every window of the settings once, with a search.
void OpenAndCloseAll(const THostFrame& host) {
    const TDialogScript hint(kHintFormClass, {Pressing("btnOk")});
    const TDialogScript find(kFindDevicesFormClass,
                             {Pressing("btnFind"), [](HWND window) {
                                  RunLoopUntil([&] { return IsEnabledIn(window, "btnFind"); });
                                  Press(window, "btnCancel");
                              }});
    const TDialogScript dialog(kScaleSettingsFormClass,
                               {Pressing("btnHint"), Pressing("rbTCP"), Pressing("btnFindDevices"),
                                Pressing("btnCancel")});
    const TDialogScript list(kScaleComunicationFormClass,
                             {Pressing("btnAddScale"), Pressing("btnOk")});
    TScaleComunicationForm(host.Frame(), {}, Services()).ShowModal();
}

}  // namespace

TEST(SettingsLeakTest, OpeningAndClosingLeavesNothingBehind) {
    constexpr int kWarmUp = 3;
    constexpr int kCycles = 10;
    const THostFrame host;
    for (int i = 0; i < kWarmUp; ++i)
        OpenAndCloseAll(host);
    const std::uintptr_t handle = NextHandle();
    const int windows = ThreadWindows();
    const int objects = GdiObjects();
    for (int i = 0; i < kCycles; ++i)
        OpenAndCloseAll(host);
    EXPECT_TRUE(RunLoopUntil([&] { return NextHandle() <= handle; }))
        << handle << " before, " << NextHandle() << " after";
    EXPECT_LE(ThreadWindows(), windows);
    EXPECT_LE(GdiObjects(), objects);
}

TEST(SettingsLeakTest, TheCountOfWindowsSeesAPlantedLeak) {
    // The first window makes the system create some windows of its own.
    const THostFrame host;
    const int windows = ThreadWindows();
    const HWND planted =
        CreateWindowW(L"Static", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(ThreadWindows(), windows + 1);
    DestroyWindow(planted);
    EXPECT_EQ(ThreadWindows(), windows);
}

}  // namespace tolvane::test
