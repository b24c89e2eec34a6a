#include <gtest/gtest.h>

#include <string>

#include "host/HostMenu.h"
#include "tests/module_host/HostSession.h"
#include "tests/support/window/BoxAnswerer.h"
#include "tests/support/window/HostFrame.h"

namespace tolvane::test {
namespace {

constexpr int kFirst = host::kFirstOperation;

TEST(HostOperationsTest, TheMenuShowsTheTitlesOfTheModules) {
    THostSession session;
    session.AddModule("FakeOperation.dll");
    session.Open();
    const HMENU menu = session.Menu(kOperationsMenu);
    ASSERT_EQ(GetMenuItemCount(menu), 1);
    // A doubled ampersand is shown as one.
    EXPECT_EQ(MenuText(menu, 0), "Справки && печат");
    EXPECT_FALSE(IsGreyed(menu, 0));
}

TEST(HostOperationsTest, WithoutModulesTheMenuSaysSo) {
    THostSession session;
    session.Open();
    const HMENU menu = session.Menu(kOperationsMenu);
    ASSERT_EQ(GetMenuItemCount(menu), 1);
    EXPECT_EQ(MenuText(menu, 0), "Няма модули в папка Operations");
    EXPECT_TRUE(IsGreyed(menu, 0));
}

TEST(HostOperationsTest, FilesThatAreNoOperationsAreListedWithTheReason) {
    THostSession session;
    session.AddFile("Broken.dll", "no library");
    session.AddFile("Readme.txt", "no library");
    session.AddModule("FakeOperation.dll");
    session.AddModule("HalfOperation.dll");
    session.AddModule("OtherType.dll");
    session.Open();
    EXPECT_EQ(GetMenuItemCount(session.Menu(kOperationsMenu)), 1);
    const TBoxAnswerer boxes;
    session.Command(host::kModules);
    ASSERT_EQ(boxes.Seen().size(), 1U);
    const std::string& text = boxes.Seen()[0].text;
    EXPECT_TRUE(Contains(text, "1. Справки & печат"));
    EXPECT_TRUE(Contains(text, "- Broken.dll: не е 32-битова библиотека за Windows")) << text;
    EXPECT_TRUE(Contains(text, "- HalfOperation.dll: няма функция SetTQ4ModuleString")) << text;
    EXPECT_TRUE(Contains(text, "- OtherType.dll: видът на модула е \"Report\"")) << text;
    EXPECT_FALSE(Contains(text, "Readme.txt"));
}

TEST(HostOperationsTest, AModuleGetsItsNumberAndTheHostsString) {
    THostSession session;
    session.AddModule("FakeOperation.dll");
    session.Open();
    EXPECT_EQ(THostSession::Fake().moduleString, "TradeHost");
    EXPECT_EQ(THostSession::Fake().moduleNumber, 1);
}

TEST(HostOperationsTest, AnOperationGetsTheFrameTheConnectionAndThePrintService) {
    THostSession session;
    session.OpenWorking();
    session.Command(kFirst);
    const TFakeState& fake = THostSession::Fake();
    EXPECT_EQ(fake.starts, 1);
    EXPECT_EQ(fake.operationNo, 1);
    EXPECT_EQ(fake.appHandle, session.Frame());
    EXPECT_EQ(fake.mainForm, session.Frame());
    EXPECT_EQ(fake.database.Size, 12U);
    ASSERT_NE(fake.database.Handle, nullptr);
    EXPECT_NE(*static_cast<const std::uint32_t*>(fake.database.Handle), 0U);
    EXPECT_STREQ(fake.database.ClientLibrary, "fbclient.dll");
    EXPECT_TRUE(fake.textIsNull);
    EXPECT_NE(fake.print.Code, nullptr);
    EXPECT_NE(session.Child(), nullptr);
}

TEST(HostOperationsTest, TheEntryIsGreyUntilTheCompletionMessage) {
    THostSession session;
    session.OpenWorking();
    const HMENU menu = session.Menu(kOperationsMenu);
    session.Command(kFirst);
    EXPECT_TRUE(IsGreyed(menu, 0));
    SendMessageW(session.Child(), WM_CLOSE, 0, 0);
    RunLoopDry();
    EXPECT_EQ(session.Child(), nullptr);
    EXPECT_FALSE(IsGreyed(menu, 0));
    session.Command(kFirst);
    EXPECT_TRUE(IsGreyed(menu, 0));
    EXPECT_NE(session.Child(), nullptr);
}

TEST(HostOperationsTest, ACompletionMessageThatComesTwiceIsAccepted) {
    THostSession session;
    session.OpenWorking();
    THostSession::Fake().fail = true;
    session.Command(kFirst);
    EXPECT_FALSE(IsGreyed(session.Menu(kOperationsMenu), 0));
    EXPECT_EQ(session.Child(), nullptr);
    THostSession::Fake().fail = false;
    session.Command(kFirst);
    EXPECT_TRUE(IsGreyed(session.Menu(kOperationsMenu), 0));
}

TEST(HostOperationsTest, AnotherOperationsCompletionChangesNothing) {
    THostSession session;
    session.OpenWorking();
    session.Command(kFirst);
    PostMessageW(session.Frame(), RegisterWindowMessageW(L"DLL_2"), 0, 0);
    RunLoopDry();
    EXPECT_TRUE(IsGreyed(session.Menu(kOperationsMenu), 0));
}

TEST(HostOperationsTest, WithoutAConnectionTheUserIsToldHowToConnect) {
    THostSession session;
    session.AddModule("FakeOperation.dll");
    session.Open();
    const TBoxAnswerer boxes;
    session.Command(kFirst);
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(boxes.Seen()[0].text,
              "Няма връзка с базата данни. Изберете \"Връзка с базата\", \"Свързване\".");
    EXPECT_EQ(THostSession::Fake().starts, 0);
    EXPECT_FALSE(IsGreyed(session.Menu(kOperationsMenu), 0));
}

TEST(HostOperationsTest, ANumberThatNoOperationHasIsReported) {
    THostSession session;
    session.OpenWorking();
    const TBoxAnswerer boxes;
    session.Form().StartOperation(2);
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(boxes.Seen()[0].text, "Няма операция с номер 2.");
}

TEST(HostOperationsTest, ClosingAllWindowsEndsTheOperation) {
    THostSession session;
    session.OpenWorking();
    session.Command(kFirst);
    session.Command(host::kCloseAll);
    EXPECT_EQ(session.Child(), nullptr);
    EXPECT_FALSE(IsGreyed(session.Menu(kOperationsMenu), 0));
}

TEST(HostOperationsTest, TheWindowsMenuListsTheOpenWindows) {
    THostSession session;
    session.OpenWorking();
    const HMENU menu = session.Menu(kWindowsMenu);
    const int before = GetMenuItemCount(menu);
    session.Command(kFirst);
    ASSERT_EQ(GetMenuItemCount(menu), before + 2);  // a separator and the window
    EXPECT_EQ(MenuText(menu, before + 1), "&1 Fake");
}

TEST(HostOperationsTest, TilingFillsTheMiddleWithTheWindow) {
    THostSession session;
    session.OpenWorking();
    session.Command(kFirst);
    session.Command(host::kTileVertically);
    RECT client{};
    RECT child{};
    GetClientRect(session.Form().MdiClient(), &client);
    GetWindowRect(session.Child(), &child);
    EXPECT_EQ(child.right - child.left, client.right);
    EXPECT_EQ(child.bottom - child.top, client.bottom);
}

TEST(HostOperationsTest, ClosingTheHostClosesItsWindowsFirstAndUnloadsTheModules) {
    THostSession session;
    session.OpenWorking();
    session.Command(kFirst);
    const HWND frame = session.Frame();
    const HWND child = session.Child();
    SendMessageW(frame, WM_CLOSE, 0, 0);
    EXPECT_EQ(IsWindow(child), 0);
    EXPECT_EQ(IsWindow(frame), 0);
    EXPECT_NE(GetModuleHandleW(L"FakeOperation.dll"), nullptr);
    session.Close();
    EXPECT_EQ(GetModuleHandleW(L"FakeOperation.dll"), nullptr);
}

}  // namespace
}  // namespace tolvane::test
