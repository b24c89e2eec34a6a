#include <gtest/gtest.h>

#include <windows.h>

#include "tests/support/module/Session.h"
#include "tests/support/window/BoxAnswerer.h"
#include "tests/support/window/Screenshot.h"

namespace tolvane::test {
namespace {

// Whether the first row's place is empty as drawn.
bool IsFirstRowEmpty(const TGridReader& grid, const RECT& row) {
    UpdateWindow(grid.Handle());
    RECT client{};
    GetClientRect(grid.Handle(), &client);
    const int y = (row.top + row.bottom) / 2;
    for (int x = 0; x < client.right; ++x) {
        if (PixelAt(grid.Handle(), {x, y}) != GetSysColor(COLOR_WINDOW)) return false;
    }
    return true;
}

}  // namespace

TEST(Redraw, ARefreshThatFindsNoArticlesLeavesAnEmptyList) {
    TSession session;
    session.Start();
    const TGridReader grid = session.Grid();
    const RECT row = grid.RowRect(0);
    ASSERT_GT(grid.RowCount(), 0);
    EXPECT_FALSE(IsFirstRowEmpty(grid, row));
    session.connection.Execute("update PLUES set PLU_IS_DELETED_ = PLU_IS_DELETED_ + 2");
    session.Click("RefreshBtn");
    EXPECT_EQ(grid.RowCount(), 0);
    EXPECT_TRUE(IsFirstRowEmpty(grid, row));
    session.connection.Execute("update PLUES set PLU_IS_DELETED_ = PLU_IS_DELETED_ - 2");
    session.Click("RefreshBtn");
    EXPECT_FALSE(IsFirstRowEmpty(grid, row));
}

// Looking for a control by its name asks every control of the window for its name.
TEST(Redraw, SizingTheListLooksForNoControlByItsName) {
    TSession session;
    session.Start();
    const HWND close = session.Control("btnCloseBtn");
    RECT before{};
    GetWindowRect(close, &before);
    const HANDLE name = RemovePropW(close, L"ComponentName");
    const TBoxAnswerer boxes;
    RECT list{};
    GetClientRect(session.List(), &list);
    SetWindowPos(session.List(), nullptr, 0, 0, list.right + 100, list.bottom + 100,
                 SWP_NOMOVE | SWP_NOZORDER);
    RunLoopDry();
    EXPECT_TRUE(boxes.Seen().empty());
    RECT after{};
    GetWindowRect(close, &after);
    EXPECT_GT(after.left, before.left);
    EXPECT_GT(after.top, before.top);
    SetPropW(close, L"ComponentName", name);
}

}  // namespace tolvane::test
