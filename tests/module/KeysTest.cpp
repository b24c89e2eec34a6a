#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <string>
#include <vector>

#include "tests/support/module/Session.h"
#include "tests/support/window/BoxAnswerer.h"
#include "tests/support/window/UserScript.h"

namespace tolvane::test {
namespace {

// The host's loop dispatches messages and knows nothing of the module.
class KeysTest : public testing::Test {
protected:
    KeysTest() { session_.Start(); }

    std::vector<std::string> TabThrough(int count, bool back) {
        std::vector<std::string> names;
        for (int i = 0; i < count; ++i) {
            PressKey(GetFocus(), VK_TAB, false, back);
            names.push_back(ComponentNameOf(GetFocus()));
        }
        return names;
    }

    TSession session_;
};

}  // namespace

TEST_F(KeysTest, TabGoesThroughTheControlsAndRound) {
    ASSERT_EQ(ComponentNameOf(GetFocus()), "aDBGrid");
    const std::vector<std::string> expected = {"RefreshBtn",  "ColBtn",       "PrintBtn",
                                               "btnCloseBtn", "SearchButton", "SearchMenuButton",
                                               "SaveButton",  "aDBGrid"};
    EXPECT_EQ(TabThrough(8, false), expected);
}

TEST_F(KeysTest, ShiftTabGoesBack) {
    const std::vector<std::string> expected = {"SaveButton", "SearchMenuButton", "SearchButton",
                                               "btnCloseBtn"};
    EXPECT_EQ(TabThrough(4, true), expected);
}

TEST_F(KeysTest, EscapeClosesTheWindow) {
    PressKey(session_.Control("aDBGrid"), VK_ESCAPE);
    EXPECT_EQ(session_.List(), nullptr);
    EXPECT_EQ(session_.Completions(), 1);
}

TEST_F(KeysTest, EnterPressesTheFocusedButton) {
    SetFocus(session_.Control("PrintBtn"));
    PressKey(session_.Control("PrintBtn"), VK_RETURN);
    EXPECT_EQ(session_.printed.size(), 1U);
}

TEST_F(KeysTest, F5LoadsAnew) {
    session_.connection.Execute("update PLUES set PLU_FORTERMINALS = '7' where PLU_NUMB = 15");
    PressKey(session_.Control("aDBGrid"), VK_F5);
    session_.connection.Execute("update PLUES set PLU_FORTERMINALS = '' where PLU_NUMB = 15");
    const TGridReader grid = session_.Grid();
    EXPECT_EQ(grid.Cell(5, grid.ColumnByTitle("За терм.")), "7");
}

TEST_F(KeysTest, KeysOfTheHostsOwnWindowsStayWithThem) {
    const HWND edit = CreateWindowW(L"Edit", L"", WS_CHILD | WS_VISIBLE, 0, 0, 100, 20,
                                    session_.host.AddChild(nullptr), nullptr, nullptr, nullptr);
    SetFocus(edit);
    PressKey(edit, VK_ESCAPE);
    PressKey(edit, VK_TAB);
    EXPECT_EQ(GetFocus(), edit);
    EXPECT_NE(session_.List(), nullptr);
}

TEST_F(KeysTest, KeysStayWithAnOpenMenu) {
    const HWND button = session_.Control("SaveButton");
    const TUserScript actor(L"#32768",
                            [&](HWND) { PostMessageW(button, WM_KEYDOWN, VK_ESCAPE, 1); });
    session_.Click("SaveButton");
    EXPECT_TRUE(actor.IsDone());
    EXPECT_NE(session_.List(), nullptr);
}

TEST_F(KeysTest, TheGridHasTheKeysAgainAfterTheSearchBoxAndItsMessage) {
    const HWND grid = session_.Control("aDBGrid");
    ASSERT_EQ(GetFocus(), grid);
    {
        const TUserScript cancels(L"TInputBoxForm", [](HWND) {
            ReleaseKeys();
            PostKey(VK_ESCAPE);
        });
        PressKey(grid, 'F', true);
    }
    EXPECT_EQ(GetFocus(), grid);
    {
        const TBoxAnswerer boxes;
        const TUserScript searches(L"TInputBoxForm", [](HWND dialog) {
            ReleaseKeys();
            SetWindowTextW(ControlOf(dialog, "ValueEdit"), L"няма такъв");
            PostKey(VK_RETURN);
        });
        PressKey(grid, 'F', true);
        EXPECT_EQ(boxes.Seen().size(), 1U);
    }
    EXPECT_EQ(GetFocus(), grid);
}

TEST_F(KeysTest, TheGridHasTheKeysAgainWhenTheHostComesBackToTheFront) {
    const HWND grid = session_.Control("aDBGrid");
    ASSERT_EQ(GetFocus(), grid);
    const HWND other = CreateWindowW(L"Static", L"other", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0,
                                     100, 100, nullptr, nullptr, nullptr, nullptr);
    SetActiveWindow(other);
    RunLoopDry();
    EXPECT_NE(GetFocus(), grid);
    SetActiveWindow(session_.host.Frame());
    RunLoopDry();
    EXPECT_EQ(GetFocus(), grid);
    DestroyWindow(other);
}

TEST_F(KeysTest, DownKeyMovesInTheGrid) {
    PressKey(session_.Control("aDBGrid"), VK_DOWN);
    EXPECT_EQ(session_.Grid().FocusedRow(), 1);
}

TEST_F(KeysTest, F5ClearsTheSort) {
    session_.Grid().ClickTitle(3);
    session_.Grid().ClickTitle(3);
    EXPECT_EQ(session_.Grid().Cell(0, 0), "11");
    EXPECT_EQ(session_.Grid().Cell(1, 0), "15");
    PressKey(session_.Control("aDBGrid"), VK_F5);
    EXPECT_EQ(session_.Grid().Cell(1, 0), "12");
    EXPECT_EQ(session_.Grid().ColumnFormat(0) & (HDF_SORTUP | HDF_SORTDOWN), HDF_SORTUP);
}

TEST_F(KeysTest, CtrlEnterSortsByTheCurrentColumn) {
    const HWND grid = session_.Control("aDBGrid");
    for (int i = 0; i < 3; ++i)
        PressKey(grid, VK_RIGHT);
    PressKey(grid, VK_RETURN, true);
    EXPECT_EQ(session_.Grid().Cell(0, 3), "Кашкавал");
    PressKey(grid, VK_RETURN, true);
    EXPECT_EQ(session_.Grid().Cell(5, 3), "Кашкавал");
    EXPECT_EQ(GetFocus(), grid);
}

TEST_F(KeysTest, EscapeOnAButtonClosesTheWindowAsTheCloseButtonDoes) {
    for (const char* name : {"RefreshBtn", "PrintBtn"}) {
        session_.Start();
        SetFocus(session_.Control(name));
        PressKey(GetFocus(), VK_ESCAPE);
        EXPECT_EQ(session_.List(), nullptr) << name;
    }
}

}  // namespace tolvane::test
