#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <string>

#include "tests/module/MessageCount.h"
#include "tests/support/module/Session.h"

namespace tolvane::test {
namespace {

constexpr int kRows = 100000;
constexpr int kName = 3;

// One load serves all: the list is opened once for the suite.
class BigListTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        session_ = new TSession("big.fdb");
        session_->Start();
    }
    static void TearDownTestSuite() {
        delete session_;
        session_ = nullptr;
    }

    static TGridReader Grid() { return session_->Grid(); }
    static void SetMark(int row, bool marked) {
        LVITEMW item{};
        item.state = marked ? LVIS_SELECTED : 0;
        item.stateMask = LVIS_SELECTED;
        SendMessageW(Grid().Handle(), LVM_SETITEMSTATE, static_cast<WPARAM>(row),
                     reinterpret_cast<LPARAM>(&item));
    }
    static bool IsMarked(int row) {
        return SendMessageW(Grid().Handle(), LVM_GETITEMSTATE, static_cast<WPARAM>(row),
                            LVIS_SELECTED) != 0;
    }
    static LRESULT MarkCount() { return SendMessageW(Grid().Handle(), LVM_GETSELECTEDCOUNT, 0, 0); }

    static TSession* session_;
};

TSession* BigListTest::session_ = nullptr;

}  // namespace

TEST_F(BigListTest, LoadingDrawsTheGridAFewTimesOnly) {
    const TMessageCount paints(Grid().Handle(), WM_PAINT);
    session_->Click("RefreshBtn");
    ASSERT_EQ(Grid().RowCount(), kRows);
    EXPECT_EQ(Grid().Cell(0, 0), "1");
    EXPECT_EQ(Grid().Cell(kRows - 1, 0), "100000");
    EXPECT_LE(paints.Count(), 5);
}

TEST_F(BigListTest, SortingDrawsTheGridAFewTimesOnly) {
    const TMessageCount paints(Grid().Handle(), WM_PAINT);
    Grid().ClickTitle(kName);
    EXPECT_EQ(Grid().Cell(0, kName), "Артикул 000001");
    EXPECT_EQ(Grid().Cell(0, 0), "100000");
    EXPECT_EQ(Grid().Cell(kRows - 1, 0), "1");
    EXPECT_LE(paints.Count(), 5);
    Grid().ClickTitle(0);
    EXPECT_EQ(Grid().Cell(0, 0), "1");
}

TEST_F(BigListTest, ThousandsOfMarksFollowTheirRowsThroughSorting) {
    for (int row = 0; row < kRows; row += 100)
        SetMark(row, true);
    Grid().ClickTitle(kName);
    EXPECT_EQ(MarkCount(), kRows / 100);
    EXPECT_TRUE(IsMarked(99999));
    EXPECT_TRUE(IsMarked(99));
    EXPECT_FALSE(IsMarked(100));
    SetMark(-1, false);
    Grid().ClickTitle(0);
}

TEST_F(BigListTest, AllRowsAreMarkedAndUnmarkedWithTheListDrawnOnce) {
    const HWND list = Grid().Handle();
    PressKey(list, VK_HOME);
    for (const bool marked : {true, false}) {
        // Off and on again.
        const TMessageCount pauses(list, WM_SETREDRAW);
        const TMessageCount paints(list, WM_PAINT);
        PressKey(list, marked ? VK_END : VK_HOME, false, marked);
        EXPECT_EQ(MarkCount(), marked ? kRows : 1);
        EXPECT_EQ(pauses.Count(), 2);
        EXPECT_LE(paints.Count(), 2);
    }
}

TEST_F(BigListTest, AFewRowsAreMarkedOneByOne) {
    const HWND list = Grid().Handle();
    PressKey(list, VK_HOME);
    const TMessageCount pauses(list, WM_SETREDRAW);
    PressKey(list, VK_DOWN, false, true);
    PressKey(list, VK_NEXT, false, true);
    Grid().ClickRow(2, kName, false, true);
    EXPECT_EQ(MarkCount(), 3);
    EXPECT_EQ(pauses.Count(), 0);
}

TEST_F(BigListTest, AClickWithShiftFarAwayMarksWithTheListDrawnOnce) {
    const HWND list = Grid().Handle();
    PressKey(list, VK_HOME);
    PressKey(list, VK_END, true);
    const TMessageCount pauses(list, WM_SETREDRAW);
    Grid().ClickRow(kRows - 1, kName, false, true);
    EXPECT_EQ(MarkCount(), kRows);
    EXPECT_EQ(pauses.Count(), 2);
    PressKey(list, VK_HOME);
}

TEST_F(BigListTest, AClickOnOneRowUnmarksTheOthersWithTheListDrawnOnce) {
    const HWND list = Grid().Handle();
    PressKey(list, VK_HOME);
    PressKey(list, VK_END, false, true);
    ASSERT_EQ(MarkCount(), kRows);
    const TMessageCount pauses(list, WM_SETREDRAW);
    Grid().ClickRow(kRows - 1, kName);
    EXPECT_EQ(MarkCount(), 1);
    EXPECT_EQ(pauses.Count(), 2);
    PressKey(list, VK_HOME);
}

TEST_F(BigListTest, TheListIsDrawnAgainWhileTheButtonIsStillDown) {
    const HWND list = Grid().Handle();
    PressKey(list, VK_HOME);
    PressKey(list, VK_END, true);
    const RECT row = Grid().RowRect(kRows - 1);
    const LPARAM at = MAKELPARAM(row.left + 20, (row.top + row.bottom) / 2);
    const TMessageCount pauses(list, WM_SETREDRAW);
    {
        const THeldKey shift(VK_SHIFT);
        SendMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON | MK_SHIFT, at);
        RunLoopDry();
        EXPECT_EQ(pauses.Count(), 2);
        EXPECT_FALSE(GetUpdateRect(list, nullptr, FALSE));
        EXPECT_EQ(MarkCount(), kRows);
        SendMessageW(list, WM_LBUTTONUP, MK_SHIFT, at);
        RunLoopDry();
    }
    EXPECT_EQ(MarkCount(), kRows);
    PressKey(list, VK_HOME);
}

TEST_F(BigListTest, ARefreshForgetsThatAllRowsWereMarked) {
    PressKey(Grid().Handle(), VK_END, false, true);
    ASSERT_EQ(MarkCount(), kRows);
    session_->Click("RefreshBtn");
    EXPECT_EQ(MarkCount(), 0);
    EXPECT_EQ(Grid().FocusedRow(), 0);
    EXPECT_EQ(SendMessageW(Grid().Handle(), LVM_GETTOPINDEX, 0, 0), 0);
}

TEST_F(BigListTest, TheKeysReachBothEndsAndThePageBetween) {
    PressKey(Grid().Handle(), VK_END);
    EXPECT_EQ(Grid().FocusedRow(), kRows - 1);
    PressKey(Grid().Handle(), VK_HOME);
    EXPECT_EQ(Grid().FocusedRow(), 0);
    PressKey(Grid().Handle(), VK_NEXT);
    EXPECT_GT(Grid().FocusedRow(), 3);
}

}  // namespace tolvane::test
