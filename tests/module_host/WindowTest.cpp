#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <string>

#include "host/HostMenu.h"
#include "tests/module_host/HostSession.h"
#include "tests/support/window/BoxAnswerer.h"
#include "tests/support/window/Controls.h"
#include "tests/support/window/HostFrame.h"
#include "tests/support/window/Screenshot.h"
#include "tests/support/window/UserScript.h"
#include "window/Dpi.h"

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

// At 96 dots per inch it is 1100 by 760, and never larger than the screen.
TEST(HostResolutionTest, TheWindowOfANewProgramHasItsSize) {
    THostSession session;
    session.Open();
    const TDpi dpi = TDpi::System();
    RECT screen{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &screen, 0);
    const RECT place = PlaceOfFrame(session);
    EXPECT_EQ(place.right - place.left,
              std::min<LONG>(dpi.Scale(1100), screen.right - screen.left));
    EXPECT_EQ(place.bottom - place.top, std::min<LONG>(dpi.Scale(760), screen.bottom - screen.top));
}

// Runs at whatever resolution the system has. What the line at the bottom says of a database is as
// long as its name.
TEST(HostResolutionTest, MenuAndStatusBarHaveRoomForTheirTexts) {
    THostSession session;
    session.OpenWorking();
    SaveScreenshot(session.Frame(), "host-at-" + std::to_string(TDpi::System().DotsPerInch()));
    const HMENU menu = GetMenu(session.Frame());
    RECT first{};
    GetMenuItemRect(session.Frame(), menu, 0, &first);
    LONG end = first.left;
    for (UINT i = 0; i < static_cast<UINT>(GetMenuItemCount(menu)); ++i) {
        RECT item{};
        GetMenuItemRect(session.Frame(), menu, i, &item);
        EXPECT_EQ(item.top, first.top) << i;
        EXPECT_GE(item.left, end) << i;
        EXPECT_GE(item.bottom - item.top, GetSystemMetrics(SM_CYMENU) - 1) << i;
        end = item.right;
    }
    const HWND bar = Component(session.Frame(), "StatusBar");
    const auto font = reinterpret_cast<HFONT>(SendMessageW(bar, WM_GETFONT, 0, 0));
    RECT part{};
    SendMessageW(bar, SB_GETRECT, 0, reinterpret_cast<LPARAM>(&part));
    EXPECT_GE(part.bottom - part.top, TextHeight(font));
    const std::wstring longest = L"Създаване на демо магазина...";
    const HDC dc = GetDC(bar);
    EXPECT_LT(TextWidth(dc, font, longest.c_str(), static_cast<int>(longest.size())),
              part.right - part.left);
    ReleaseDC(bar, dc);
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
