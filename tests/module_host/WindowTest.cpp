#include <gtest/gtest.h>

#include <string>

#include "host/HostMenu.h"
#include "tests/module_host/HostSession.h"
#include "tests/support/window/BoxAnswerer.h"
#include "tests/support/window/Controls.h"
#include "tests/support/window/HostFrame.h"
#include "tests/support/window/Screenshot.h"
#include "tests/support/window/UserScript.h"

namespace tolvane::test {
namespace {

RECT PlaceOfFrame(const THostSession& session) {
    RECT place{};
    GetWindowRect(session.Frame(), &place);
    return place;
}

// As a user ends the program.
void CloseByUser(THostSession& session) {
    SendMessageW(session.Frame(), WM_CLOSE, 0, 0);
    session.Close();
}

TEST(HostWindowTest, TheWindowComesBackWhereItWas) {
    THostSession session;
    session.Open();
    MoveWindow(session.Frame(), 40, 30, 720, 510, TRUE);
    CloseByUser(session);
    session.Open();
    const RECT place = PlaceOfFrame(session);
    EXPECT_EQ(place.left, 40);
    EXPECT_EQ(place.top, 30);
    EXPECT_EQ(place.right - place.left, 720);
    EXPECT_EQ(place.bottom - place.top, 510);
    EXPECT_EQ(IsZoomed(session.Frame()), 0);
}

TEST(HostWindowTest, AMaximizedWindowComesBackMaximized) {
    THostSession session;
    session.Open();
    ShowWindow(session.Frame(), SW_SHOWMAXIMIZED);
    RunLoopDry();
    CloseByUser(session);
    session.Open();
    EXPECT_NE(IsZoomed(session.Frame()), 0);
}

TEST(HostWindowTest, ANewProgramHasAWindowOfUsualSize) {
    THostSession session;
    session.Open();
    const RECT place = PlaceOfFrame(session);
    EXPECT_EQ(place.right - place.left, 1100);
    EXPECT_EQ(place.bottom - place.top, 760);
}

// As Windows asks a program that is told of each monitor's resolution.
TEST(HostWindowTest, TheWindowFollowsItsMonitor) {
    THostSession session;
    session.Open();
    const HWND bar = Component(session.Frame(), "StatusBar");
    const auto heightOf = [](HWND window) {
        RECT rect{};
        GetWindowRect(window, &rect);
        return rect.bottom - rect.top;
    };
    const LONG before = heightOf(bar);
    RECT place{10, 20, 910, 720};
    SendMessageW(session.Frame(), WM_DPICHANGED, MAKEWPARAM(192, 192),
                 reinterpret_cast<LPARAM>(&place));
    RunLoopDry();
    const RECT found = PlaceOfFrame(session);
    EXPECT_EQ(EqualRect(&found, &place), TRUE);
    EXPECT_GT(heightOf(bar), before);
    RECT client{};
    GetClientRect(session.Frame(), &client);
    EXPECT_EQ(heightOf(session.Form().MdiClient()), client.bottom - heightOf(bar));
}

TEST(HostWindowTest, AboutTellsTheVersionsOfAllThatRuns) {
    THostSession session;
    session.OpenWorking();
    std::string text;
    {
        const TDialogScript user(kMessageBoxClass, {[&](HWND box) {
                                     SaveScreenshot(box, "host-about");
                                     text = ReadBox(box).text;
                                     PostMessageW(box, WM_COMMAND, IDOK, 0);
                                 }});
        session.Command(host::kAbout);
    }
    EXPECT_TRUE(Contains(text, "Търговска система (демо) " TOLVANE_VERSION)) << text;
    EXPECT_TRUE(Contains(text, "\r\nFakeOperation.dll " TOLVANE_VERSION "\r\n")) << text;
    EXPECT_TRUE(Contains(text, "fbclient.dll")) << text;
    EXPECT_TRUE(Contains(text, "Firebird 3.0")) << text;
}

}  // namespace
}  // namespace tolvane::test
