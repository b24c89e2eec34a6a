#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <cstdlib>
#include <string>

#include "articles/forms/uWaitForm.h"
#include "tests/support/module/Session.h"
#include "tests/support/window/Layout.h"
#include "tests/support/window/Screenshot.h"
#include "tests/support/window/UserScript.h"
#include "window/Dpi.h"

namespace tolvane::test {
namespace {

// Runs at whatever resolution the system has; the sizes are those of 96 dots per inch, scaled.
class ResolutionTest : public testing::Test {
protected:
    ResolutionTest() { session_.Start(); }

    int Scaled(int at96) const { return dpi_.Scale(at96); }
    SIZE SizeOf(const std::string& name) const {
        RECT rect{};
        GetClientRect(session_.Control(name), &rect);
        return {rect.right, rect.bottom};
    }
    LOGFONTW FontOf(const std::string& name) const {
        LOGFONTW description{};
        GetObjectW(reinterpret_cast<HFONT>(SendMessageW(session_.Control(name), WM_GETFONT, 0, 0)),
                   sizeof description, &description);
        return description;
    }
    // A control's rectangle in the list window's client area.
    RECT RectOf(const std::string& name) const {
        RECT rect{};
        GetWindowRect(session_.Control(name), &rect);
        MapWindowPoints(nullptr, session_.List(), reinterpret_cast<POINT*>(&rect), 2);
        return rect;
    }
    std::string Suffix() const { return "-" + std::to_string(dpi_.DotsPerInch()); }
    static void ExpectWholeLinesIn(HWND chooser) {
        ExpectWholeLines(ControlOf(chooser, "aCheckListBox"), 10);
    }
    // Its text is drawn in the middle, above the bar, with its colour on all four sides.
    static void ExpectWaitTextHasItsRoom(const TWaitForm& wait) {
        RECT area{};
        RECT bar{};
        GetClientRect(wait.Handle(), &area);
        GetClientRect(wait.Control("ProgressBar"), &bar);
        area.bottom -= bar.bottom;
        const int gap = wait.Dpi().Scale(8);
        UpdateWindow(wait.Handle());
        const auto isFree = [&](LONG x, LONG y) {
            return PixelAt(wait.Handle(), {x, y}) == RGB(240, 202, 166);
        };
        bool columns = true;
        for (LONG y = 0; y < area.bottom; ++y)
            columns = columns && isFree(gap, y) && isFree(area.right - gap, y);
        EXPECT_TRUE(columns);
        bool rows = true;
        bool middle = true;
        for (LONG x = 0; x < area.right; ++x) {
            rows = rows && isFree(x, gap) && isFree(x, area.bottom - 1);
            middle = middle && isFree(x, (area.bottom + bar.bottom) / 2);
        }
        EXPECT_TRUE(rows);
        EXPECT_FALSE(middle);
    }

    TDpi dpi_ = TDpi::System();
    TSession session_;
};

}  // namespace

TEST_F(ResolutionTest, TheListWindowHasItsSize) {
    RECT client{};
    GetClientRect(session_.List(), &client);
    EXPECT_EQ(client.right, Scaled(605));
    EXPECT_EQ(client.bottom, Scaled(305));
    SaveScreenshot(session_.host.Frame(), "list-at" + Suffix());
}

TEST_F(ResolutionTest, TheButtonsHaveTheirSizes) {
    EXPECT_EQ(SizeOf("SearchButton").cx, Scaled(180));
    EXPECT_EQ(SizeOf("SaveButton").cx, Scaled(242));
    EXPECT_EQ(SizeOf("SearchMenuButton").cx, Scaled(24));
    EXPECT_EQ(SizeOf("RefreshBtn").cx, Scaled(88));
    EXPECT_EQ(SizeOf("RefreshBtn").cy, Scaled(25));
}

TEST_F(ResolutionTest, TypeAndRowsFollowTheResolution) {
    const LOGFONTW button = FontOf("RefreshBtn");
    EXPECT_EQ(button.lfHeight, -MulDiv(8, dpi_.DotsPerInch(), 72));  // 8 points
    EXPECT_STREQ(button.lfFaceName, L"Tahoma");
    LOGFONTW list{};
    SystemParametersInfoW(SPI_GETICONTITLELOGFONT, sizeof list, &list, 0);
    EXPECT_EQ(FontOf("aDBGrid").lfHeight, list.lfHeight);
    EXPECT_STREQ(FontOf("aDBGrid").lfFaceName, list.lfFaceName);
    const RECT row = session_.Grid().RowRect(1);
    EXPECT_GE(row.bottom - row.top, std::abs(list.lfHeight) + Scaled(5));
    EXPECT_LE(row.bottom - row.top, 2 * std::abs(list.lfHeight));
    EXPECT_EQ(session_.Grid().ColumnWidth(28), Scaled(126));
}

TEST_F(ResolutionTest, TheScalesButtonAloneIsBold) {
    EXPECT_EQ(FontOf("SaveButton").lfWeight, FW_BOLD);
    EXPECT_EQ(FontOf("SearchButton").lfWeight, FW_NORMAL);
}

TEST_F(ResolutionTest, TheWindowIsNeverSmallerThanItsLeast) {
    SetWindowPos(session_.List(), nullptr, 0, 0, 10, 10, SWP_NOZORDER | SWP_NOMOVE);
    RECT outer{};
    GetWindowRect(session_.List(), &outer);
    EXPECT_EQ(outer.right - outer.left, Scaled(520));
    EXPECT_EQ(outer.bottom - outer.top, Scaled(305));
}

TEST_F(ResolutionTest, TheGridFillsTheMiddleAndTheCloseButtonStaysAtTheRight) {
    // Controls are placed in whole pixels of 96 dots per inch.
    const int unit = Scaled(1);
    for (const SIZE size : {SIZE{640, 360}, SIZE{900, 600}}) {
        SetWindowPos(session_.List(), nullptr, 0, 0, Scaled(size.cx), Scaled(size.cy),
                     SWP_NOZORDER | SWP_NOMOVE);
        RECT client{};
        GetClientRect(session_.List(), &client);
        const RECT grid = RectOf("aDBGrid");
        EXPECT_EQ(grid.left, 0);
        EXPECT_EQ(grid.top, Scaled(33));
        EXPECT_NEAR(grid.right, client.right, unit);
        EXPECT_NEAR(grid.bottom, client.bottom - Scaled(33), unit);
        EXPECT_NEAR(RectOf("btnCloseBtn").right, client.right - Scaled(4), unit);
        EXPECT_NEAR(RectOf("RefreshBtn").left, Scaled(4), unit);
    }
}

TEST_F(ResolutionTest, EveryCaptionFitsItsButton) {
    for (const char* name : {"SearchButton", "RefreshBtn", "ColBtn", "PrintBtn", "btnCloseBtn"}) {
        const HWND button = session_.Control(name);
        const HDC dc = GetDC(button);
        const HGDIOBJ before =
            SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(button, WM_GETFONT, 0, 0)));
        std::wstring text(128, L'\0');
        text.resize(static_cast<std::size_t>(
            GetWindowTextW(button, text.data(), static_cast<int>(text.size()))));
        SIZE size{};
        GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size);
        SelectObject(dc, before);
        ReleaseDC(button, dc);
        EXPECT_LT(size.cx, SizeOf(name).cx) << name;
        EXPECT_LT(size.cy, SizeOf(name).cy) << name;
    }
}

TEST_F(ResolutionTest, EveryTextOfTheListWindowHasItsRoom) {
    ExpectTextsFit(session_.List());
    ExpectControlsApart(session_.List());
}

TEST_F(ResolutionTest, EveryTextOfTheColumnChooserHasItsRoom) {
    const TDialogScript script(L"TColListForm", {[](HWND window) {
                                   ExpectTextsFit(window);
                                   ExpectControlsApart(window);
                                   ExpectWholeLinesIn(window);
                                   Press(window, "btnCancel");
                               }});
    session_.Click("ColBtn");
}

TEST_F(ResolutionTest, EveryTextOfTheSearchBoxHasItsRoom) {
    const TDialogScript script(L"TInputBoxForm", {[](HWND window) {
                                   ExpectTextsFit(window);
                                   ExpectControlsApart(window);
                                   Press(window, "CancelButton");
                               }});
    PressKey(session_.Control("aDBGrid"), 'F', true);
}

TEST_F(ResolutionTest, TheTextOfTheWaitWindowHasItsRoom) {
    TWaitForm wait(session_.List());
    wait.Show(1);
    ExpectWaitTextHasItsRoom(wait);
    for (const int dotsPerInch : {120, 144, 192, dpi_.DotsPerInch()}) {
        TellDpi(wait.Handle(), dotsPerInch);
        ExpectWaitTextHasItsRoom(wait);
    }
}

// In a host that is told of each monitor's resolution, or passes such a message on.
TEST_F(ResolutionTest, TheListWindowFollowsItsMonitor) {
    const TDpi other(dpi_.DotsPerInch() == 144 ? 192 : 144);
    const int width = session_.Grid().ColumnWidth(28);
    TellDpi(session_.List(), other.DotsPerInch());
    EXPECT_EQ(SizeOf("SearchButton").cx, other.Scale(180));
    EXPECT_EQ(SizeOf("RefreshBtn").cy, other.Scale(25));
    EXPECT_EQ(FontOf("RefreshBtn").lfHeight, -MulDiv(8, other.DotsPerInch(), 72));
    EXPECT_EQ(FontOf("SaveButton").lfWeight, FW_BOLD);
    EXPECT_EQ(session_.Grid().ColumnWidth(28), other.Scale(126));
    const RECT row = session_.Grid().RowRect(1);
    EXPECT_GE(row.bottom - row.top, std::abs(FontOf("aDBGrid").lfHeight) + other.Scale(5));
    ExpectTextsFit(session_.List());
    ExpectControlsApart(session_.List());
    SaveScreenshot(session_.host.Frame(), "list-on-another-monitor" + Suffix());
    TellDpi(session_.List(), dpi_.DotsPerInch());
    ExpectFollowsMonitors(session_.List());
    EXPECT_EQ(session_.Grid().ColumnWidth(28), width);
}

TEST_F(ResolutionTest, TheColumnChooserAndTheSearchBoxFollowTheirMonitors) {
    {
        const TDialogScript script(L"TColListForm", {[](HWND window) {
                                       ExpectFollowsMonitors(window);
                                       for (const int dotsPerInch : {120, 144}) {
                                           TellDpi(window, dotsPerInch);
                                           ExpectWholeLinesIn(window);
                                       }
                                       Press(window, "btnCancel");
                                   }});
        session_.Click("ColBtn");
    }
    const TDialogScript script(L"TInputBoxForm", {[](HWND window) {
                                   ExpectFollowsMonitors(window);
                                   Press(window, "CancelButton");
                               }});
    PressKey(session_.Control("aDBGrid"), 'F', true);
}

TEST_F(ResolutionTest, WidthsOfAnotherResolutionAreConverted) {
    session_.CloseList();
    TConfiguration::Write(
        "[PLUGRID]\r\naDBGrid_PixelsPerInch=192\r\n"
        "aDBGrid_Column1=PLU_NUMB,100\r\naDBGrid_Column2=PLU_NAME,200\r\n");
    session_.Start();
    EXPECT_EQ(session_.Grid().ColumnWidth(1), Scaled(100));
}

}  // namespace tolvane::test
