#include <gtest/gtest.h>

#include <windows.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/module/Session.h"
#include "tests/support/window/BoxAnswerer.h"
#include "tests/support/window/Screenshot.h"
#include "tests/support/window/UserScript.h"

namespace tolvane::test {
namespace {

constexpr UINT kGetMenuOfPopup = 0x01E1;  // MN_GETHMENU
const wchar_t* const kPopupClass = L"#32768";
const wchar_t* const kRunClass = L"TSetPluForm";

struct TItem {
    UINT command;
    std::string caption;
    bool operator==(const TItem&) const = default;
};

std::vector<TItem> ItemsOf(HMENU menu) {
    std::vector<TItem> items;
    const int count = GetMenuItemCount(menu);
    items.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        std::array<wchar_t, 128> text{};
        GetMenuStringW(menu, static_cast<UINT>(i), text.data(), static_cast<int>(text.size()),
                       MF_BYPOSITION);
        items.push_back({GetMenuItemID(menu, i), Utf8(text.data())});
    }
    return items;
}

// What a drop-down button of the list window opens.
std::vector<TItem> PopupOf(const TSession& session, const std::string& button,
                           const std::string& screenshot = {}) {
    std::vector<TItem> items;
    const TUserScript actor(kPopupClass, [&](HWND popup) {
        items = ItemsOf(reinterpret_cast<HMENU>(SendMessageW(popup, kGetMenuOfPopup, 0, 0)));
        if (!screenshot.empty()) SaveScreenshot(session.host.Frame(), screenshot);
        EndMenu();
    });
    session.Click(button);
    return items;
}

// Sends a command of the menu and closes the run window that it opens. Returns that window's
// caption.
std::string RunCaption(const TSession& session, int command) {
    std::string caption;
    const TUserScript actor(kRunClass, [&](HWND window) {
        caption = Utf8TextOf(window);
        EXPECT_EQ(IsWindowEnabled(session.host.Frame()), 0);
        PostMessageW(window, WM_CLOSE, 0, 0);
    });
    SendMessageW(session.List(), WM_COMMAND, static_cast<WPARAM>(command), 0);
    RunLoopDry();
    return caption;
}

}  // namespace

TEST(SavePopup, HasTheFiveCommandsInOrder) {
    TSession session;
    session.Start();
    const std::vector<TItem> expected = {{1002, "Запис на всички артикули"},
                                         {1001, "Запис на маркираните артикули"},
                                         {0, ""},
                                         {1004, "Изтриване всички артикули"},
                                         {1003, "Изтриване на маркираните артикули"},
                                         {0, ""},
                                         {1005, "Настройка на комуникацията със везните"}};
    EXPECT_EQ(PopupOf(session, "SaveButton", "save-popup"), expected);
}

TEST(SearchMenu, HasAnItemPerColumnCaptionedByTheFieldsLabel) {
    TSession session;
    session.Start();
    const std::vector<TItem> items = PopupOf(session, "SearchMenuButton");
    ASSERT_EQ(items.size(), 32U);
    EXPECT_EQ(items[0], (TItem{2000, "Арт.No:"}));
    EXPECT_EQ(items[1], (TItem{2001, "Ном.код"}));
    EXPECT_EQ(items[31], (TItem{2031, "Партида (самок.)"}));
}

TEST(SearchMenu, FollowsTheStoredOrderAndHasHiddenColumnsToo) {
    TSession session;
    TConfiguration::Write(
        "[PLUGRID]\r\nHiddenRows=01\r\naDBGrid_Column1=PLU_NAME,90\r\n"
        "aDBGrid_Column2=PLU_NUMB,90\r\n");
    session.Start();
    ASSERT_EQ(session.Grid().Titles().size(), 31U);
    const std::vector<TItem> items = PopupOf(session, "SearchMenuButton");
    ASSERT_EQ(items.size(), 32U);
    EXPECT_EQ(items[0], (TItem{2000, "Име"}));
    EXPECT_EQ(items[1], (TItem{2001, "Арт.No:"}));
    EXPECT_EQ(items[2], (TItem{2002, "Ном.код"}));
    EXPECT_EQ(Utf8TextOf(session.Control("SearchButton")), "Търси по: Име (F3)");
}

class RunCommandTest : public testing::TestWithParam<std::pair<int, const char*>> {};

TEST_P(RunCommandTest, OpensTheRunWindowOfItsKindModally) {
    TSession session;
    session.Start();
    EXPECT_EQ(RunCaption(session, GetParam().first), GetParam().second);
    EXPECT_NE(IsWindowEnabled(session.host.Frame()), 0);
    EXPECT_NE(session.List(), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Commands, RunCommandTest,
    testing::Values(std::pair(1001, "Запис на избраните артикули във везните"),
                    std::pair(1002, "Запис на всички артикули във везните"),
                    std::pair(1003, "Изтриване на избраните артикули от везните"),
                    std::pair(1004, "Изтриване на всички артикули от везните")));

TEST(RunCommand, DoesNothingWithoutArticles) {
    TSession session("bare.fdb");
    session.Start();
    EXPECT_EQ(RunCaption(session, 1002), "");
}

TEST(RunCommand, FrameThatGoesTakesTheOpenRunWindowAlong) {
    TSession session;
    THostFrame application;
    session.module.Start(application.Frame(), 17, &session.messageId, session.host.Frame(),
                         session.connection.Database(), nullptr, {nullptr, nullptr});
    const TUserScript actor(kRunClass, [&](HWND) { DestroyWindow(session.host.Frame()); });
    SendMessageW(session.List(), WM_COMMAND, 1002, 0);
    RunLoopDry();
    EXPECT_TRUE(actor.IsDone());
    EXPECT_EQ(application.Received(session.messageId), 1);
    EXPECT_NE(IsWindowEnabled(application.Frame()), 0);
}

TEST(RunCommand, SecondStartDuringARunWindowOnlyComesToTheFront) {
    TSession session;
    session.Start();
    const TBoxAnswerer answerer;
    const TUserScript actor(kRunClass, [&](HWND window) {
        session.Start();
        PostMessageW(window, WM_CLOSE, 0, 0);
    });
    SendMessageW(session.List(), WM_COMMAND, 1002, 0);
    EXPECT_TRUE(actor.IsDone());
    EXPECT_TRUE(answerer.Seen().empty());
    EXPECT_EQ(session.Grid().RowCount(), 6);
}

TEST(RunCommand, QuitDuringARunWindowReachesTheHostsLoop) {
    TSession session;
    session.Start();
    const TUserScript actor(kRunClass, [](HWND) { PostQuitMessage(42); });
    SendMessageW(session.List(), WM_COMMAND, 1002, 0);
    MSG message{};
    bool quit = false;
    while (!quit && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0)
        quit = message.message == WM_QUIT;
    EXPECT_TRUE(quit);
    EXPECT_EQ(message.wParam, 42U);
}

}  // namespace tolvane::test
