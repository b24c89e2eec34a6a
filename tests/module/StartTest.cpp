#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/module/Session.h"
#include "tests/support/window/BoxAnswerer.h"
#include "tests/support/window/Screenshot.h"

namespace tolvane::test {
namespace {

const wchar_t* const kListClass = L"TElicomPluScaleListForm";

HWND ActiveChild(const THostFrame& host) {
    return reinterpret_cast<HWND>(SendMessageW(host.Client(), WM_MDIGETACTIVE, 0, 0));
}

BOOL CALLBACK CollectUnnamed(HWND window, LPARAM parameter) {
    // The title row is the list view's own.
    if (ComponentNameOf(window).empty() && ClassOf(window) != L"SysHeader32")
        reinterpret_cast<std::vector<std::string>*>(parameter)->push_back(Utf8(ClassOf(window)));
    return TRUE;
}

// A host's print service that counts its calls in its object.
void TOLVANE_STDCALL CountPrint(void* object, const std::uint8_t*, const std::uint8_t*, void*) {
    ++*static_cast<int*>(object);
}

}  // namespace

class MessageNameTest : public testing::TestWithParam<std::pair<std::int32_t, const char*>> {};

TEST_P(MessageNameTest, IsDllAndTheOperationNumber) {
    TSession session;
    session.Start(GetParam().first);
    EXPECT_EQ(session.messageId, RegisterWindowMessageA(GetParam().second));
}

INSTANTIATE_TEST_SUITE_P(Numbers, MessageNameTest,
                         testing::Values(std::pair(17, "DLL_17"), std::pair(0, "DLL_0"),
                                         std::pair(-5, "DLL_-5")));

TEST(Start, ShowsTheListWindowAsAnMdiChild) {
    TSession session;
    session.Start();
    ASSERT_NE(session.List(), nullptr);
    EXPECT_EQ(ComponentNameOf(session.List()), "ElicomPluScaleListForm");
    EXPECT_EQ(Utf8TextOf(session.List()), "Списък ТЕГЛОВИ артикули");
    EXPECT_NE(IsWindowVisible(session.List()), 0);
    EXPECT_EQ(ActiveChild(session.host), session.List());
    EXPECT_EQ(GetFocus(), session.Control("aDBGrid"));
    EXPECT_EQ(session.Completions(), 0);
    SaveScreenshot(session.host.Frame(), "list-window");
}

TEST(Start, WindowHasTheSizeOfTheForm) {
    TSession session;
    session.Start();
    RECT client{};
    GetClientRect(session.List(), &client);
    EXPECT_EQ(client.right, 605);
    EXPECT_EQ(client.bottom, 305);
    SetWindowPos(session.List(), nullptr, 0, 0, 100, 100, SWP_NOMOVE | SWP_NOZORDER);
    RECT outer{};
    GetWindowRect(session.List(), &outer);
    EXPECT_EQ(outer.right - outer.left, 520);
    EXPECT_EQ(outer.bottom - outer.top, 305);
}

TEST(Start, EveryWindowCarriesItsComponentName) {
    TSession session;
    session.Start();
    std::vector<std::string> unnamed;
    EnumChildWindows(session.List(), CollectUnnamed, reinterpret_cast<LPARAM>(&unnamed));
    EXPECT_EQ(unnamed, std::vector<std::string>());
    for (const char* name : {"SearchButton", "aDBGrid", "RefreshBtn", "ColBtn", "PrintBtn"})
        EXPECT_NE(session.Control(name), nullptr) << name;
}

TEST(Start, SecondCallLeavesOneWindowInFrontAndLoadsItAnew) {
    TSession session;
    session.Start();
    const HWND first = session.List();
    const HWND other = session.host.AddChild("SomeOtherForm");
    SendMessageW(session.host.Client(), WM_MDIACTIVATE, reinterpret_cast<WPARAM>(other), 0);
    session.connection.Execute("update PLUES set PLU_FORSCALES = '9' where PLU_NUMB = 12");
    session.Start();
    session.connection.Execute("update PLUES set PLU_FORSCALES = '1,2' where PLU_NUMB = 12");
    EXPECT_EQ(session.host.ChildrenOfClass(kListClass), 1);
    EXPECT_EQ(session.List(), first);
    EXPECT_EQ(ActiveChild(session.host), first);
    const TGridReader grid = session.Grid();
    EXPECT_EQ(grid.Cell(1, grid.ColumnByTitle("За везни")), "9");
    EXPECT_EQ(session.Completions(), 0);
}

TEST(Start, WindowOfAnotherNameIsNotReused) {
    TSession session;
    session.host.AddChild("elicompluscalelistform");
    session.host.AddChild("ElicomPluScaleListForm2");
    session.host.AddChild(nullptr);
    session.Start();
    EXPECT_EQ(session.host.ChildrenOfClass(kListClass), 1);
}

TEST(Start, ListWindowOfAnotherFrameIsNotReused) {
    TSession session;
    session.Start();
    THostFrame second;
    std::uint32_t id = 0;
    session.module.Start(session.host.Frame(), 17, &id, second.Frame(),
                         session.connection.Database(), nullptr, {nullptr, nullptr});
    EXPECT_EQ(session.host.ChildrenOfClass(kListClass), 1);
    EXPECT_EQ(second.ChildrenOfClass(kListClass), 1);
}

TEST(Start, ClosedWindowPostsTheCompletionMessageOnce) {
    TSession session;
    session.Start();
    session.CloseList();
    EXPECT_EQ(session.List(), nullptr);
    EXPECT_EQ(session.Completions(), 1);
}

TEST(Start, CompletionIsPostedWithBothParametersZero) {
    TSession session;
    session.Start();
    SendMessageW(session.List(), WM_CLOSE, 0, 0);
    EXPECT_EQ(session.List(), nullptr);
    // The message waits, and is not handled yet.
    EXPECT_EQ(session.Completions(), 0);
    MSG message{};
    ASSERT_NE(PeekMessageW(&message, session.host.Frame(), session.messageId, session.messageId,
                           PM_NOREMOVE),
              0);
    EXPECT_EQ(message.wParam, 0U);
    EXPECT_EQ(message.lParam, 0);
    RunLoopDry();
    EXPECT_EQ(session.Completions(), 1);
}

TEST(Start, AMinimizedWindowIsBroughtBackByASecondCall) {
    TSession session;
    session.Start();
    RECT before{};
    GetWindowRect(session.List(), &before);
    ShowWindow(session.List(), SW_MINIMIZE);
    ASSERT_NE(IsIconic(session.List()), 0);
    session.Start();
    EXPECT_EQ(IsIconic(session.List()), 0);
    EXPECT_EQ(ActiveChild(session.host), session.List());
    RECT after{};
    GetWindowRect(session.List(), &after);
    EXPECT_NE(EqualRect(&after, &before), 0);
}

TEST(Start, ASecondCallsOperationNumberAndPrintServiceHoldForTheOpenWindow) {
    TSession session;
    session.Start(17);
    int prints = 0;
    session.module.Start(session.host.Frame(), 18, &session.messageId, session.host.Frame(),
                         session.connection.Database(), nullptr, {&CountPrint, &prints});
    EXPECT_EQ(session.messageId, RegisterWindowMessageA("DLL_18"));
    session.Click("PrintBtn");
    EXPECT_EQ(prints, 1);
    EXPECT_TRUE(session.printed.empty());
    session.CloseList();
    EXPECT_EQ(session.host.Received(RegisterWindowMessageA("DLL_18")), 1);
    EXPECT_EQ(session.host.Received(RegisterWindowMessageA("DLL_17")), 0);
}

TEST(Start, StartsAgainAfterTheWindowWasClosed) {
    TSession session;
    session.Start();
    session.CloseList();
    session.Start();
    EXPECT_EQ(session.host.ChildrenOfClass(kListClass), 1);
    EXPECT_EQ(session.Grid().RowCount(), 6);
    EXPECT_EQ(session.Completions(), 1);
}

TEST(Start, FrameThatGoesTakesTheWindowAlong) {
    TSession session;
    THostFrame application;
    session.module.Start(application.Frame(), 17, &session.messageId, session.host.Frame(),
                         session.connection.Database(), nullptr, {nullptr, nullptr});
    DestroyWindow(session.host.Frame());
    RunLoopDry();
    EXPECT_EQ(application.Received(session.messageId), 1);
}

TEST(Start, MakesTheIndexOfTheSupplyTableOnce) {
    TSession session;
    const char* const count =
        "select count(*) from RDB$INDICES where RDB$RELATION_NAME = 'SUPPLIES_PLUCONTROL' and "
        "RDB$INDEX_NAME = 'SUPPLIES_PLUCONTROL_PLUIDX'";
    const TBoxAnswerer answerer;
    session.Start();
    EXPECT_EQ(session.connection.Number(count), 1);
    session.Start();
    EXPECT_EQ(session.connection.Number(count), 1);
    EXPECT_TRUE(answerer.Seen().empty());
}

}  // namespace tolvane::test
