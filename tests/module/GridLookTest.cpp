#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <set>
#include <string>

#include "tests/module/BareGrid.h"
#include "tests/support/window/HostFrame.h"
#include "tests/support/window/Input.h"

namespace tolvane::test {
namespace {

constexpr int kIndicator = 12;
constexpr int kMiddle = 9;  // of a row of 18 pixels

// A point of the second column that no text and no line covers.
constexpr POINT kEmptySpot{kIndicator + 100 + 90, 3};

// Gives the system another font for lists while it lives.
class TListFont {
public:
    explicit TListFont(int points) {
        SystemParametersInfoW(SPI_GETICONTITLELOGFONT, sizeof before_, &before_, 0);
        LOGFONTW other = before_;
        other.lfHeight = -MulDiv(points, 96, 72);
        SystemParametersInfoW(SPI_SETICONTITLELOGFONT, sizeof other, &other, 0);
    }
    TListFont(const TListFont&) = delete;
    TListFont& operator=(const TListFont&) = delete;
    ~TListFont() { SystemParametersInfoW(SPI_SETICONTITLELOGFONT, sizeof before_, &before_, 0); }

private:
    LOGFONTW before_{};
};

int RowHeight(const TBareGrid& grid) {
    const RECT row = grid.Reader().RowRect(0);
    return row.bottom - row.top;
}

// How many pixels of the upper edge of a cell in the first column are not its background.
int FramePixels(const TBareGrid& grid, int row) {
    constexpr int kFirst = kIndicator + 2;
    constexpr int kLast = kIndicator + 96;
    const COLORREF background = grid.Pixel(row, kEmptySpot);
    int count = 0;
    for (int x = kFirst; x < kLast; ++x)
        count += grid.Pixel(row, {x, 0}) != background ? 1 : 0;
    return count;
}

}  // namespace

TEST(GridLook, AnArrowPointsAtTheCurrentRowAndADotStandsBesideAMarkedOne) {
    TBareGrid grid(10);
    grid.Reader().ClickRow(3, 1);
    grid.Reader().ClickRow(5, 1, true);
    const COLORREF mark = GetSysColor(COLOR_BTNTEXT);
    const COLORREF empty = GetSysColor(COLOR_BTNFACE);
    EXPECT_EQ(grid.Pixel(5, {5, kMiddle}), mark);
    EXPECT_EQ(grid.Pixel(3, {6, kMiddle}), mark);
    // The base of an arrow is taller than a dot.
    EXPECT_EQ(grid.Pixel(5, {4, kMiddle - 3}), mark);
    EXPECT_EQ(grid.Pixel(3, {4, kMiddle - 3}), empty);
    EXPECT_EQ(grid.Pixel(1, {6, kMiddle}), empty);
}

TEST(GridLook, MarksAreSeenWithoutTheFocusToo) {
    TBareGrid grid(10);
    grid.Reader().ClickRow(3, 1);
    EXPECT_EQ(grid.Pixel(3, kEmptySpot), GetSysColor(COLOR_HIGHLIGHT));
    SetFocus(GetParent(grid.List()));
    RunLoopDry();
    EXPECT_EQ(grid.Pixel(3, kEmptySpot), GetSysColor(COLOR_HIGHLIGHT));
}

TEST(GridLook, TheCurrentCellHasAFrameWhileTheGridHasTheFocus) {
    TBareGrid grid(10);
    EXPECT_GT(FramePixels(grid, 0), 30);
    EXPECT_EQ(FramePixels(grid, 1), 0);
    // The test looks at what the screen still shows, so nothing may ask for painting here.
    SetFocus(GetParent(grid.List()));
    EXPECT_EQ(FramePixels(grid, 0), 0);
}

TEST(GridLook, APromotedRowHasItsColourUnlessItIsHighlighted) {
    TBareGrid grid(10);
    grid.promoted = [](TRowId row) { return row == 2 || row == 4; };
    InvalidateRect(grid.List(), nullptr, FALSE);
    EXPECT_EQ(grid.Pixel(4, kEmptySpot), RGB(1, 2, 3));
    EXPECT_EQ(grid.Pixel(3, kEmptySpot), GetSysColor(COLOR_WINDOW));
    grid.Reader().ClickRow(4, 1);
    EXPECT_EQ(grid.Pixel(4, kEmptySpot), GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_EQ(grid.Pixel(2, kEmptySpot), RGB(1, 2, 3));
}

// Whether a row is marked decides how the current one looks, and no other.
TEST(GridLook, AnArrowKeyDrawsTheTwoRowsThatChange) {
    TBareGrid grid(1000);
    RunLoopDry();
    std::set<TRowId> drawn;
    grid.text = [&drawn](TRowId row, std::size_t) {
        drawn.insert(row);
        return std::string("text");
    };
    for (const TRowId row : {1, 2, 3}) {
        drawn.clear();
        PressKey(grid.List(), VK_DOWN);
        RunLoopDry();
        EXPECT_EQ(drawn, (std::set<TRowId>{row - 1, row}));
    }
}

TEST(GridLook, TheCurrentRowLooksOtherWithAndWithoutMarks) {
    TBareGrid grid(10);
    grid.Reader().ClickRow(3, 1);
    grid.Grid().SetCurrentRow(5);
    RunLoopDry();
    EXPECT_NE(grid.Pixel(5, kEmptySpot), GetSysColor(COLOR_HIGHLIGHT));
    LVITEMW unmarked{};
    unmarked.stateMask = LVIS_SELECTED;
    SendMessageW(grid.List(), LVM_SETITEMSTATE, 3, reinterpret_cast<LPARAM>(&unmarked));
    RunLoopDry();
    EXPECT_EQ(grid.Pixel(5, kEmptySpot), GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_EQ(grid.Pixel(3, kEmptySpot), GetSysColor(COLOR_WINDOW));
}

TEST(GridLook, AutoFitMeasuresTheRowsInViewOnly) {
    const std::wstring wide = L"a text much wider than any other in the column";
    TBareGrid grid(1000);
    grid.text = [](TRowId row, std::size_t) {
        return row == 500 ? "a text much wider than any other in the column" : "some text";
    };
    grid.Reader().DoubleClickTitle(1);
    EXPECT_EQ(grid.Reader().ColumnWidth(1), grid.Reader().TextWidth(L"some text") + 8);
    SendMessageW(grid.List(), LVM_ENSUREVISIBLE, 500, FALSE);
    grid.Reader().DoubleClickTitle(1);
    EXPECT_EQ(grid.Reader().ColumnWidth(1), grid.Reader().TextWidth(wide) + 8);
    // Rows that come into view later change nothing.
    SendMessageW(grid.List(), LVM_ENSUREVISIBLE, 0, FALSE);
    UpdateWindow(grid.List());
    EXPECT_EQ(grid.Reader().ColumnWidth(1), grid.Reader().TextWidth(wide) + 8);
}

TEST(GridLook, AutoFitMeasuresNoRowBelowTheLastDrawnOne) {
    constexpr int kRows = 7;
    TBareGrid grid(1000);
    grid.text = [](TRowId row, std::size_t) {
        return row == kRows ? "the row below the last one" : "some text";
    };
    const int narrow = grid.Reader().TextWidth(L"some text") + 8;
    const int wide = grid.Reader().TextWidth(L"the row below the last one") + 8;
    const int exact = grid.Reader().RowRect(0).top + kRows * RowHeight(grid);
    const auto fitted = [&](int height) {
        SetWindowPos(grid.List(), nullptr, 0, 0, 380, height, SWP_NOMOVE | SWP_NOZORDER);
        RunLoopDry();
        RECT client{};
        GetClientRect(grid.List(), &client);
        EXPECT_EQ(client.bottom, height);
        grid.Reader().DoubleClickTitle(1);
        return grid.Reader().ColumnWidth(1);
    };
    EXPECT_EQ(fitted(exact), narrow);
    // The row below is visible by one pixel.
    EXPECT_EQ(fitted(exact + 1), wide);
    EXPECT_EQ(fitted(exact - 1), narrow);
}

TEST(GridLook, AutoFitOfTheFirstColumnLeavesRoomForTheIndicator) {
    TBareGrid grid(10);
    grid.text = [](TRowId, std::size_t) { return "some wide text"; };
    grid.Reader().DoubleClickTitle(0);
    EXPECT_EQ(grid.Reader().ColumnWidth(0),
              grid.Reader().TextWidth(L"some wide text") + 8 + kIndicator);
    EXPECT_EQ(grid.Reader().ColumnWidth(1), 100);
}

TEST(GridLook, AutoFitTakesTheTitleWhenItIsTheWidest) {
    TBareGrid grid(10);
    grid.text = [](TRowId, std::size_t) { return "i"; };
    grid.Reader().DoubleClickTitle(1);
    EXPECT_EQ(grid.Reader().ColumnWidth(1), grid.Reader().TextWidth(L"Other") + 8);
}

TEST(GridLook, ATitlesEdgeDragsTheWidth) {
    TBareGrid grid(10);
    grid.Reader().DragTitleEdge(1, 50);
    EXPECT_EQ(grid.Reader().ColumnWidth(1), 150);
    grid.Reader().DragTitleEdge(0, -20);
    EXPECT_EQ(grid.Grid().Columns()[0].width, 80);
    EXPECT_EQ(grid.Grid().Columns()[1].width, 150);
    EXPECT_TRUE(grid.clickedTitles.empty());
}

TEST(GridLook, TypeAndRowHeightFollowTheFontOfTheSystemsLists) {
    const TListFont large(14);
    TBareGrid grid(10);
    const HDC dc = GetDC(grid.List());
    const auto font = reinterpret_cast<HFONT>(SendMessageW(grid.List(), WM_GETFONT, 0, 0));
    const HGDIOBJ before = SelectObject(dc, font);
    TEXTMETRICW metrics{};
    GetTextMetricsW(dc, &metrics);
    SelectObject(dc, before);
    ReleaseDC(grid.List(), dc);
    LOGFONTW description{};
    GetObjectW(font, sizeof description, &description);
    EXPECT_EQ(description.lfHeight, -MulDiv(14, 96, 72));
    EXPECT_EQ(RowHeight(grid), metrics.tmHeight + 5);
}

TEST(GridLook, CtrlEnterIsAClickOnTheTitleOfTheCurrentColumn) {
    TBareGrid grid(10);
    grid.Grid().ClickCurrentTitle();
    grid.Reader().ClickRow(2, 1);
    grid.Grid().ClickCurrentTitle();
    EXPECT_EQ(grid.clickedTitles, (std::vector<std::size_t>{0, 1}));
}

}  // namespace tolvane::test
