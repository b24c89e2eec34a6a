#include <gtest/gtest.h>

#include <windows.h>

#include "tests/support/module/Session.h"
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

}  // namespace tolvane::test
