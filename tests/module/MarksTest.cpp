#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <numeric>
#include <vector>

#include "tests/module/BareGrid.h"
#include "tests/support/window/GridReader.h"
#include "tests/support/window/HostFrame.h"

namespace tolvane::test {
namespace {

using TRows = std::vector<TRowId>;

}  // namespace

TEST(Marks, ThereAreNoneAfterALoad) {
    TBareGrid marks(10);
    EXPECT_EQ(marks.Grid().MarkedRows(), TRows());
    EXPECT_EQ(marks.Grid().CurrentRow(), 0U);
}

TEST(Marks, StandInTheOrderOfMarking) {
    TBareGrid marks(10);
    marks.Reader().ClickRow(7, 0);
    marks.Reader().ClickRow(2, 0, true);
    marks.Reader().ClickRow(5, 0, true);
    EXPECT_EQ(marks.Grid().MarkedRows(), (TRows{7, 2, 5}));
}

TEST(Marks, KeepTheirOrderThroughSorting) {
    TBareGrid marks(10);
    marks.Reader().ClickRow(7, 0);
    marks.Reader().ClickRow(2, 0, true);
    marks.Reverse();
    EXPECT_EQ(marks.Grid().MarkedRows(), (TRows{7, 2}));
    EXPECT_EQ(marks.Reader().SelectedRows(), (std::vector<int>{2, 7}));
    marks.Reader().ClickRow(0, 0, true);
    EXPECT_EQ(marks.Grid().MarkedRows(), (TRows{7, 2, 9}));
}

TEST(Marks, PlainClickForgetsTheOthers) {
    TBareGrid marks(10);
    marks.Reader().ClickRow(7, 0);
    marks.Reader().ClickRow(2, 0, true);
    marks.Reader().ClickRow(4, 0);
    EXPECT_EQ(marks.Grid().MarkedRows(), TRows{4});
}

TEST(Marks, SecondCtrlClickTakesTheMarkBack) {
    TBareGrid marks(10);
    marks.Reader().ClickRow(7, 0);
    marks.Reader().ClickRow(2, 0, true);
    marks.Reader().ClickRow(7, 0, true);
    EXPECT_EQ(marks.Grid().MarkedRows(), TRows{2});
    marks.Reader().ClickRow(7, 0, true);
    EXPECT_EQ(marks.Grid().MarkedRows(), (TRows{2, 7}));
}

TEST(Marks, ShiftClickMarksTheRangeFromTheTop) {
    TBareGrid marks(10);
    marks.Reader().ClickRow(6, 0);
    marks.Reader().ClickRow(3, 0, false, true);
    EXPECT_EQ(marks.Reader().SelectedRows(), (std::vector<int>{3, 4, 5, 6}));
    TRows rows = marks.Grid().MarkedRows();
    std::sort(rows.begin(), rows.end());
    EXPECT_EQ(rows, (TRows{3, 4, 5, 6}));
}

TEST(Marks, ShorterRangeUnmarksTheRest) {
    TBareGrid marks(10);
    marks.Reader().ClickRow(2, 0);
    marks.Reader().ClickRow(8, 0, false, true);
    marks.Reader().ClickRow(4, 0, false, true);
    EXPECT_EQ(marks.Grid().MarkedRows(), (TRows{2, 3, 4}));
}

TEST(Marks, ArrowKeyMovesTheOnlyMark) {
    TBareGrid marks(10);
    marks.Reader().ClickRow(2, 0);
    PressKey(marks.List(), VK_DOWN);
    EXPECT_EQ(marks.Grid().MarkedRows(), TRows{3});
    EXPECT_EQ(marks.Grid().CurrentRow(), 3U);
}

TEST(Marks, CtrlAndArrowMovesOnAndSpaceMarksAsWell) {
    TBareGrid marks(10);
    PressKey(marks.List(), VK_SPACE);
    PressKey(marks.List(), VK_DOWN, true);
    PressKey(marks.List(), VK_DOWN, true);
    PressKey(marks.List(), VK_SPACE, true);
    EXPECT_EQ(marks.Grid().MarkedRows(), (TRows{0, 2}));
    PressKey(marks.List(), VK_SPACE, true);
    EXPECT_EQ(marks.Grid().MarkedRows(), TRows{0});
}

TEST(Marks, ShiftAndArrowMarksTheRange) {
    TBareGrid marks(10);
    marks.Reader().ClickRow(4, 0);
    PressKey(marks.List(), VK_DOWN, false, true);
    PressKey(marks.List(), VK_DOWN, false, true);
    EXPECT_EQ(marks.Grid().MarkedRows(), (TRows{4, 5, 6}));
}

TEST(Marks, HomeEndAndPageKeysMoveTheCurrentRow) {
    TBareGrid marks(1000);
    PressKey(marks.List(), VK_END);
    EXPECT_EQ(marks.Grid().CurrentRow(), 999U);
    PressKey(marks.List(), VK_HOME);
    EXPECT_EQ(marks.Grid().CurrentRow(), 0U);
    PressKey(marks.List(), VK_NEXT);
    const TRowId page = marks.Grid().CurrentRow().value_or(0);
    EXPECT_GT(page, 5U);
    EXPECT_LT(page, 100U);
    PressKey(marks.List(), VK_PRIOR);
    EXPECT_EQ(marks.Grid().CurrentRow(), 0U);
}

TEST(Marks, TheWheelScrollsTheRows) {
    TBareGrid marks(1000);
    SendMessageW(marks.List(), WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)), 0);
    EXPECT_GT(SendMessageW(marks.List(), LVM_GETTOPINDEX, 0, 0), 0);
    EXPECT_EQ(marks.Grid().CurrentRow(), 0U);
}

TEST(Marks, ATypedLetterMarksAndMovesNothing) {
    TBareGrid marks(10);
    marks.Reader().ClickRow(7, 0);
    marks.Reader().ClickRow(2, 0, true);
    SendMessageW(marks.List(), WM_CHAR, 'x', 1);
    RunLoopDry();
    EXPECT_EQ(marks.Grid().MarkedRows(), (TRows{7, 2}));
    EXPECT_EQ(marks.Grid().CurrentRow(), 2U);
    LVFINDINFOW sought{};
    sought.flags = LVFI_STRING;
    sought.psz = L"x";
    EXPECT_EQ(SendMessageW(marks.List(), LVM_FINDITEMW, static_cast<WPARAM>(-1),
                           reinterpret_cast<LPARAM>(&sought)),
              -1);
}

TEST(Marks, MarkedByMessageCountsToo) {
    TBareGrid marks(10);
    for (const int row : {4, 1}) {
        LVITEMW item{};
        item.state = item.stateMask = LVIS_SELECTED;
        SendMessageW(marks.List(), LVM_SETITEMSTATE, static_cast<WPARAM>(row),
                     reinterpret_cast<LPARAM>(&item));
    }
    EXPECT_EQ(marks.Grid().MarkedRows(), (TRows{4, 1}));
}

TEST(Marks, AllRowsAtOnceStandInTheirOrder) {
    TBareGrid marks(1000);
    LVITEMW item{};
    item.state = item.stateMask = LVIS_SELECTED;
    SendMessageW(marks.List(), LVM_SETITEMSTATE, static_cast<WPARAM>(-1),
                 reinterpret_cast<LPARAM>(&item));
    TRows all(1000);
    std::iota(all.begin(), all.end(), 0U);
    EXPECT_EQ(marks.Grid().MarkedRows(), all);
    item.state = 0;
    SendMessageW(marks.List(), LVM_SETITEMSTATE, static_cast<WPARAM>(-1),
                 reinterpret_cast<LPARAM>(&item));
    EXPECT_EQ(marks.Grid().MarkedRows(), TRows());
}

TEST(Marks, AllButAFewFollowTheirRowsThroughSorting) {
    TBareGrid marks(1000);
    LVITEMW item{};
    item.state = item.stateMask = LVIS_SELECTED;
    SendMessageW(marks.List(), LVM_SETITEMSTATE, static_cast<WPARAM>(-1),
                 reinterpret_cast<LPARAM>(&item));
    marks.Reader().ClickRow(10, 0, true);
    marks.Reader().ClickRow(12, 0, true);
    marks.Reverse();
    std::vector<int> expected(1000);
    std::iota(expected.begin(), expected.end(), 0);
    // 10 of 1,000 from the other end is 989.
    std::erase(expected, 989);
    std::erase(expected, 987);
    EXPECT_EQ(marks.Reader().SelectedRows(), expected);
    EXPECT_EQ(marks.Grid().MarkedRows().size(), 998U);
}

TEST(Marks, LoadForgetsThem) {
    TBareGrid marks(10);
    marks.Reader().ClickRow(7, 0);
    marks.Grid().RowsReplaced();
    EXPECT_EQ(marks.Grid().MarkedRows(), TRows());
    EXPECT_EQ(marks.Reader().SelectedRows(), std::vector<int>());
    EXPECT_EQ(marks.Grid().CurrentRow(), 0U);
}

TEST(Marks, ARangeStartsAtTheFirstRowAfterALoad) {
    TBareGrid marks(10);
    PressKey(marks.List(), VK_DOWN, false, true);
    EXPECT_EQ(marks.Grid().MarkedRows(), (TRows{0, 1}));
    marks.Reader().ClickRow(7, 0);
    marks.Grid().RowsReplaced();
    PressKey(marks.List(), VK_DOWN, false, true);
    EXPECT_EQ(marks.Grid().MarkedRows(), (TRows{0, 1}));
}

TEST(Marks, AListWithoutRowsHasNoStartOfARange) {
    const TBareGrid marks(0);
    EXPECT_EQ(SendMessageW(marks.List(), LVM_GETSELECTIONMARK, 0, 0), -1);
}

TEST(Marks, CurrentRowMovesWithoutThem) {
    TBareGrid marks(10);
    marks.Reader().ClickRow(7, 0);
    marks.Grid().SetCurrentRow(3);
    EXPECT_EQ(marks.Grid().CurrentRow(), 3U);
    EXPECT_EQ(marks.Grid().MarkedRows(), TRows{7});
}

TEST(RowMarks, MarkingAgainKeepsThePlace) {
    TRowMarks marks;
    marks.Reset(3);
    marks.Mark(2);
    marks.Mark(0);
    marks.Mark(2);
    EXPECT_EQ(marks.InOrder(), (TRows{2, 0}));
    EXPECT_EQ(marks.Count(), 2U);
}

TEST(RowMarks, RowsBeyondTheTableAreIgnored) {
    TRowMarks marks;
    marks.Reset(3);
    marks.Mark(3);
    marks.Unmark(7);
    EXPECT_EQ(marks.Count(), 0U);
    EXPECT_FALSE(marks.IsMarked(3));
}

}  // namespace tolvane::test
