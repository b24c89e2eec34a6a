#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <string>

#include "tests/support/module/Session.h"

namespace tolvane::test {
namespace {

// A second main window of the same host, with a list window of its own.
class TwoFramesTest : public testing::Test {
protected:
    TwoFramesTest() {
        first_.Start();
        first_.StartIn(second_);
    }
    HWND SecondList() const { return second_.ChildOfClass(L"TElicomPluScaleListForm"); }
    TGridReader SecondGrid() const { return TGridReader(Component(SecondList(), "aDBGrid")); }

    TSession first_;
    THostFrame second_;
};

}  // namespace

TEST_F(TwoFramesTest, EachMainWindowHasItsOwnList) {
    ASSERT_NE(first_.List(), nullptr);
    ASSERT_NE(SecondList(), nullptr);
    EXPECT_NE(first_.List(), SecondList());
    EXPECT_EQ(first_.Grid().RowCount(), 6);
    EXPECT_EQ(SecondGrid().RowCount(), 6);
}

TEST_F(TwoFramesTest, SortingMarksAndSearchingAreEachWindowsOwn) {
    SecondGrid().ClickTitle(3);
    EXPECT_EQ(SecondGrid().Cell(0, 3), "Кашкавал");
    EXPECT_EQ(first_.Grid().Cell(0, 0), "11");
    EXPECT_EQ(first_.Grid().ColumnFormat(0) & (HDF_SORTUP | HDF_SORTDOWN), HDF_SORTUP);
    first_.Grid().ClickRow(2, 3);
    EXPECT_EQ(first_.Grid().SelectedRows(), std::vector<int>{2});
    EXPECT_TRUE(SecondGrid().SelectedRows().empty());
    EXPECT_EQ(Utf8TextOf(first_.Control("SearchButton")), "Търси по: Име (F3)");
    EXPECT_EQ(Utf8TextOf(Component(SecondList(), "SearchButton")), "Търси по: Арт.No: (F3)");
}

TEST_F(TwoFramesTest, ClosingOneLeavesTheOtherAtWork) {
    first_.CloseList();
    EXPECT_EQ(first_.List(), nullptr);
    EXPECT_EQ(first_.Completions(), 1);
    SendMessageW(Component(SecondList(), "RefreshBtn"), BM_CLICK, 0, 0);
    RunLoopDry();
    EXPECT_EQ(SecondGrid().RowCount(), 6);
    PressKey(SecondGrid().Handle(), VK_DOWN);
    EXPECT_EQ(SecondGrid().FocusedRow(), 1);
}

TEST_F(TwoFramesTest, StartingAgainReachesTheListOfItsOwnMainWindow) {
    first_.Grid().ClickTitle(3);
    first_.StartIn(second_);
    EXPECT_EQ(second_.ChildrenOfClass(L"TElicomPluScaleListForm"), 1);
    // The other list is not loaded anew.
    EXPECT_EQ(first_.Grid().Cell(0, 3), "Кашкавал");
}

TEST_F(TwoFramesTest, BothUseTheHostsOnePrintServiceWithTheirOwnGrid) {
    SendMessageW(Component(SecondList(), "PrintBtn"), BM_CLICK, 0, 0);
    first_.Click("PrintBtn");
    ASSERT_EQ(first_.printed.size(), 2U);
    EXPECT_EQ(first_.printed[0].grid, SecondGrid().Handle());
    EXPECT_EQ(first_.printed[1].grid, first_.Grid().Handle());
}

TEST_F(TwoFramesTest, TheApplicationIsNotifiedOfTheEndOfEither) {
    SendMessageW(SecondList(), WM_CLOSE, 0, 0);
    RunLoopDry();
    EXPECT_EQ(SecondList(), nullptr);
    EXPECT_EQ(first_.Completions(), 1);
    first_.CloseList();
    EXPECT_EQ(first_.Completions(), 2);
}

}  // namespace tolvane::test
