#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <numeric>
#include <vector>

#include "articles/forms/ArticleGrid.h"
#include "tests/module/GridReader.h"
#include "tests/module/HostFrame.h"
#include "window/VisualStyle.h"

namespace tolvane::test {
namespace {

constexpr const wchar_t* kParentClass = L"TestGridParent";

// The grid on a real list view over rows that are just numbers.
class TMarksGrid {
public:
    explicit TMarksGrid(std::size_t rows) : order_(rows), grid_(TDpi(96), Source()) {
        std::iota(order_.begin(), order_.end(), 0U);
        WNDCLASSW definition{};
        definition.lpfnWndProc = &Procedure;
        definition.hInstance = GetModuleHandleW(nullptr);
        definition.lpszClassName = kParentClass;
        RegisterClassW(&definition);
        parent_ = CreateWindowW(kParentClass, L"Marks", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 400,
                                400, nullptr, nullptr, GetModuleHandleW(nullptr), this);
        InitCommonControlClasses();
        list_ = CreateWindowW(WC_LISTVIEWW, L"", WS_CHILD | WS_VISIBLE | kGridListStyle, 0, 0, 380,
                              360, parent_, nullptr, GetModuleHandleW(nullptr), nullptr);
        grid_.Attach(list_);
        grid_.SetColumns({{0, L"Number", 100, true, true}, {1, L"Other", 100, false, true}});
        grid_.RowsReplaced();
        SetFocus(list_);
        RunLoopDry();
    }
    TMarksGrid(const TMarksGrid&) = delete;
    TMarksGrid& operator=(const TMarksGrid&) = delete;
    ~TMarksGrid() { DestroyWindow(parent_); }

    void Reverse() {
        std::reverse(order_.begin(), order_.end());
        grid_.RowsReordered();
    }
    TGridReader Reader() const { return TGridReader(list_); }
    TArticleGrid& Grid() { return grid_; }
    HWND List() const { return list_; }

private:
    TGridSource Source() {
        TGridSource source;
        source.rowCount = [this] { return order_.size(); };
        source.rowAt = [this](std::size_t place) { return order_[place]; };
        source.placeOf = [this](TRowId row) {
            return static_cast<std::size_t>(std::find(order_.begin(), order_.end(), row) -
                                            order_.begin());
        };
        source.text = [](TRowId row, std::size_t) { return std::to_string(row); };
        source.promoted = [](TRowId) { return false; };
        source.promotionColour = [] { return GetSysColor(COLOR_WINDOW); };
        source.titleClicked = [](std::size_t) {};
        source.columnEntered = [](std::size_t) {};
        return source;
    }
    static LRESULT CALLBACK Procedure(HWND window, UINT id, WPARAM wParam, LPARAM lParam) {
        if (id == WM_NCCREATE)
            SetWindowLongPtrW(window, GWLP_USERDATA,
                              reinterpret_cast<LONG_PTR>(
                                  reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams));
        auto* self = reinterpret_cast<TMarksGrid*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (self != nullptr && id == WM_NOTIFY)
            return self->grid_.HandleNotify(*reinterpret_cast<NMHDR*>(lParam)).value_or(0);
        return DefWindowProcW(window, id, wParam, lParam);
    }

    std::vector<TRowId> order_;
    TArticleGrid grid_;
    HWND parent_ = nullptr;
    HWND list_ = nullptr;
};

using TRows = std::vector<TRowId>;

}  // namespace

TEST(Marks, ThereAreNoneAfterALoad) {
    TMarksGrid marks(10);
    EXPECT_EQ(marks.Grid().MarkedRows(), TRows());
    EXPECT_EQ(marks.Grid().CurrentRow(), 0U);
}

TEST(Marks, StandInTheOrderOfMarking) {
    TMarksGrid marks(10);
    marks.Reader().ClickRow(7, 0);
    marks.Reader().ClickRow(2, 0, true);
    marks.Reader().ClickRow(5, 0, true);
    EXPECT_EQ(marks.Grid().MarkedRows(), (TRows{7, 2, 5}));
}

TEST(Marks, KeepTheirOrderThroughSorting) {
    TMarksGrid marks(10);
    marks.Reader().ClickRow(7, 0);
    marks.Reader().ClickRow(2, 0, true);
    marks.Reverse();
    EXPECT_EQ(marks.Grid().MarkedRows(), (TRows{7, 2}));
    EXPECT_EQ(marks.Reader().SelectedRows(), (std::vector<int>{2, 7}));
    marks.Reader().ClickRow(0, 0, true);
    EXPECT_EQ(marks.Grid().MarkedRows(), (TRows{7, 2, 9}));
}

TEST(Marks, PlainClickForgetsTheOthers) {
    TMarksGrid marks(10);
    marks.Reader().ClickRow(7, 0);
    marks.Reader().ClickRow(2, 0, true);
    marks.Reader().ClickRow(4, 0);
    EXPECT_EQ(marks.Grid().MarkedRows(), TRows{4});
}

TEST(Marks, SecondCtrlClickTakesTheMarkBack) {
    TMarksGrid marks(10);
    marks.Reader().ClickRow(7, 0);
    marks.Reader().ClickRow(2, 0, true);
    marks.Reader().ClickRow(7, 0, true);
    EXPECT_EQ(marks.Grid().MarkedRows(), TRows{2});
    marks.Reader().ClickRow(7, 0, true);
    EXPECT_EQ(marks.Grid().MarkedRows(), (TRows{2, 7}));
}

TEST(Marks, ShiftClickMarksTheRangeFromTheTop) {
    TMarksGrid marks(10);
    marks.Reader().ClickRow(6, 0);
    marks.Reader().ClickRow(3, 0, false, true);
    EXPECT_EQ(marks.Reader().SelectedRows(), (std::vector<int>{3, 4, 5, 6}));
    TRows rows = marks.Grid().MarkedRows();
    std::sort(rows.begin(), rows.end());
    EXPECT_EQ(rows, (TRows{3, 4, 5, 6}));
}

TEST(Marks, ShorterRangeUnmarksTheRest) {
    TMarksGrid marks(10);
    marks.Reader().ClickRow(2, 0);
    marks.Reader().ClickRow(8, 0, false, true);
    marks.Reader().ClickRow(4, 0, false, true);
    EXPECT_EQ(marks.Grid().MarkedRows(), (TRows{2, 3, 4}));
}

TEST(Marks, ArrowKeyMovesTheOnlyMark) {
    TMarksGrid marks(10);
    marks.Reader().ClickRow(2, 0);
    PressKey(marks.List(), VK_DOWN);
    EXPECT_EQ(marks.Grid().MarkedRows(), TRows{3});
    EXPECT_EQ(marks.Grid().CurrentRow(), 3U);
}

TEST(Marks, CtrlAndArrowMovesOnAndSpaceMarksAsWell) {
    TMarksGrid marks(10);
    PressKey(marks.List(), VK_SPACE);
    PressKey(marks.List(), VK_DOWN, true);
    PressKey(marks.List(), VK_DOWN, true);
    PressKey(marks.List(), VK_SPACE, true);
    EXPECT_EQ(marks.Grid().MarkedRows(), (TRows{0, 2}));
    PressKey(marks.List(), VK_SPACE, true);
    EXPECT_EQ(marks.Grid().MarkedRows(), TRows{0});
}

TEST(Marks, ShiftAndArrowMarksTheRange) {
    TMarksGrid marks(10);
    marks.Reader().ClickRow(4, 0);
    PressKey(marks.List(), VK_DOWN, false, true);
    PressKey(marks.List(), VK_DOWN, false, true);
    EXPECT_EQ(marks.Grid().MarkedRows(), (TRows{4, 5, 6}));
}

TEST(Marks, HomeEndAndPageKeysMoveTheCurrentRow) {
    TMarksGrid marks(1000);
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
    TMarksGrid marks(1000);
    SendMessageW(marks.List(), WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)), 0);
    EXPECT_GT(SendMessageW(marks.List(), LVM_GETTOPINDEX, 0, 0), 0);
    EXPECT_EQ(marks.Grid().CurrentRow(), 0U);
}

TEST(Marks, MarkedByMessageCountsToo) {
    TMarksGrid marks(10);
    for (const int row : {4, 1}) {
        LVITEMW item{};
        item.state = item.stateMask = LVIS_SELECTED;
        SendMessageW(marks.List(), LVM_SETITEMSTATE, static_cast<WPARAM>(row),
                     reinterpret_cast<LPARAM>(&item));
    }
    EXPECT_EQ(marks.Grid().MarkedRows(), (TRows{4, 1}));
}

TEST(Marks, AllRowsAtOnceStandInTheirOrder) {
    TMarksGrid marks(1000);
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

TEST(Marks, LoadForgetsThem) {
    TMarksGrid marks(10);
    marks.Reader().ClickRow(7, 0);
    marks.Grid().RowsReplaced();
    EXPECT_EQ(marks.Grid().MarkedRows(), TRows());
    EXPECT_EQ(marks.Reader().SelectedRows(), std::vector<int>());
    EXPECT_EQ(marks.Grid().CurrentRow(), 0U);
}

TEST(Marks, CurrentRowMovesWithoutThem) {
    TMarksGrid marks(10);
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
