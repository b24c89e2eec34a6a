#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/support/module/Session.h"
#include "tests/support/window/Screenshot.h"
#include "window/Placement.h"

namespace tolvane::test {
namespace {

RECT PlaceOf(const TSession& session) {
    RECT rect{};
    GetWindowRect(session.List(), &rect);
    MapWindowPoints(nullptr, session.host.Client(), reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

void Resize(const TSession& session, int column, int width) {
    SendMessageW(session.Grid().Handle(), LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(column), width);
}

int IndicatorWidth(const TSession& session) {
    return session.Grid().ColumnWidth(0) - 88;
}

}  // namespace

TEST(KeptLayout, WidthsOrderAndPlaceComeBackWithTheNextOpening) {
    TSession session;
    session.Start();
    Resize(session, 3, 177);
    Resize(session, 0, 60);
    SetWindowPos(session.List(), nullptr, 15, 25, 640, 360, SWP_NOZORDER);
    session.CloseList();
    session.Start();
    EXPECT_EQ(session.Grid().ColumnWidth(3), 177);
    EXPECT_EQ(session.Grid().ColumnWidth(0), 60);
    const RECT place = PlaceOf(session);
    EXPECT_EQ(place.left, 15);
    EXPECT_EQ(place.top, 25);
    EXPECT_EQ(place.right - place.left, 640);
    EXPECT_EQ(place.bottom - place.top, 360);
}

TEST(KeptLayout, AMaximizedWindowComesBackMaximizedAndKeepsItsNormalPlace) {
    TSession session;
    session.Start();
    SetWindowPos(session.List(), nullptr, 15, 25, 640, 360, SWP_NOZORDER);
    SendMessageW(session.host.Client(), WM_MDIMAXIMIZE, reinterpret_cast<WPARAM>(session.List()),
                 0);
    session.CloseList();
    session.Start();
    EXPECT_NE(IsZoomed(session.List()), 0);
    SendMessageW(session.host.Client(), WM_MDIRESTORE, reinterpret_cast<WPARAM>(session.List()), 0);
    const RECT place = PlaceOf(session);
    EXPECT_EQ(place.left, 15);
    EXPECT_EQ(place.right - place.left, 640);
}

// A new window beside a maximized one of the host comes up maximized, before it has read its stored
// position.
class KeptPlaceTest : public testing::Test {
protected:
    KeptPlaceTest() {
        session_.Start();
        SetWindowPos(session_.List(), nullptr, 15, 25, 640, 360, SWP_NOZORDER);
        session_.CloseList();
        const HWND other = session_.host.AddChild(nullptr);
        SendMessageW(session_.host.Client(), WM_MDIMAXIMIZE, reinterpret_cast<WPARAM>(other), 0);
        GetWindowRect(other, &maximized_);
        SetWindowSubclass(session_.host.Client(), &Maximize, 1, reinterpret_cast<DWORD_PTR>(this));
        session_.Start();
        RemoveWindowSubclass(session_.host.Client(), &Maximize, 1);
    }

    TSession session_;
    RECT maximized_{};

private:
    // Maximizes the new window, as only some systems do by themselves.
    static LRESULT CALLBACK Maximize(HWND client, UINT id, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                     DWORD_PTR test) {
        const HWND list = reinterpret_cast<KeptPlaceTest*>(test)->session_.List();
        if (id == WM_MDIREFRESHMENU && list != nullptr && IsZoomed(list) == 0)
            SendMessageW(client, WM_MDIMAXIMIZE, reinterpret_cast<WPARAM>(list), 0);
        return DefSubclassProc(client, id, wParam, lParam);
    }
};

TEST_F(KeptPlaceTest, IsTakenWhenAWindowThatCameUpMaximizedIsRestored) {
    const std::string before = TConfiguration::Bytes();
    EXPECT_NE(IsZoomed(session_.List()), 0);
    RECT list{};
    GetWindowRect(session_.List(), &list);
    EXPECT_NE(EqualRect(&list, &maximized_), 0)
        << list.left << " " << list.top << " " << list.right << " " << list.bottom << " not "
        << maximized_.left << " " << maximized_.top << " " << maximized_.right << " "
        << maximized_.bottom;
    SendMessageW(session_.host.Client(), WM_MDIRESTORE, reinterpret_cast<WPARAM>(session_.List()),
                 0);
    const RECT place = PlaceOf(session_);
    const RECT kept{15, 25, 15 + 640, 25 + 360};
    EXPECT_NE(EqualRect(&place, &kept), 0) << place.left << " " << place.top;
    session_.CloseList();
    EXPECT_EQ(TConfiguration::Bytes(), before);
}

TEST_F(KeptPlaceTest, OutlivesAWindowThatCameUpMaximizedAndClosesSo) {
    ASSERT_NE(IsZoomed(session_.List()), 0);
    session_.CloseList();
    const auto kept = [](const char* key) {
        return TConfiguration::Value("PLUGRID", std::string("ElicomPluScaleListForm_") + key);
    };
    EXPECT_EQ(kept("Left"), "15");
    EXPECT_EQ(kept("Top"), "25");
    EXPECT_EQ(kept("Width"), "640");
    EXPECT_EQ(kept("Height"), "360");
    EXPECT_EQ(kept("Maximized"), "1");
}

// A window cannot be restored to less than its smallest size.
TEST(KeptPlace, OfAMaximizedWindowIsNoSmallerThanItMayBe) {
    TSession session;
    session.Start();
    SendMessageW(session.host.Client(), WM_MDIMAXIMIZE, reinterpret_cast<WPARAM>(session.List()),
                 0);
    MoveTo(session.List(), {.left = 15, .top = 25, .width = 100, .height = 100});
    EXPECT_NE(IsZoomed(session.List()), 0);
    SendMessageW(session.host.Client(), WM_MDIRESTORE, reinterpret_cast<WPARAM>(session.List()), 0);
    const RECT place = PlaceOf(session);
    EXPECT_EQ(place.left, 15);
    EXPECT_EQ(place.right - place.left, 520);
    EXPECT_EQ(place.bottom - place.top, 305);
}

TEST(KeptLayout, APlaceOutOfSightIsNotTaken) {
    TSession session;
    TConfiguration::Write(
        "[PLUGRID]\r\nElicomPluScaleListForm_Left=20000\r\n"
        "ElicomPluScaleListForm_Top=30\r\nElicomPluScaleListForm_Width=640\r\n"
        "ElicomPluScaleListForm_Height=360\r\n");
    session.Start();
    EXPECT_LT(PlaceOf(session).left, 2000);
}

TEST(KeptLayout, DestroyingTheHostsMainWindowSavesTheLayoutToo) {
    TSession session;
    session.Start();
    Resize(session, 3, 177);
    SendMessageW(session.host.Client(), WM_MDIDESTROY, reinterpret_cast<WPARAM>(session.List()), 0);
    RunLoopDry();
    EXPECT_EQ(TConfiguration::Value("PLUGRID", "aDBGrid_Column4"), "PLU_NAME,177");
}

TEST(KeptLayout, AShortHiddenRowsHidesNothingBeyondItsLength) {
    TSession session;
    TConfiguration::Write("[PLUGRID]\r\nHiddenRows=01\r\n");
    session.Start();
    const std::vector<std::string> titles = session.Grid().Titles();
    EXPECT_EQ(titles.size(), 31U);
    EXPECT_EQ(session.Grid().ColumnByTitle("Номенкл.No"), -1);
}

TEST(KeptLayout, ALongHiddenRowsIsIgnoredPastTheLastColumn) {
    TSession session;
    TConfiguration::Write("[PLUGRID]\r\nHiddenRows=00000000000000000000000000000001111111\r\n");
    session.Start();
    EXPECT_EQ(session.Grid().Titles().size(), 31U);
    EXPECT_EQ(session.Grid().ColumnByTitle("Партида (самок.)"), -1);
    session.CloseList();
    // Only the chooser changes it.
    EXPECT_EQ(TConfiguration::Value("PLUGRID", "HiddenRows"),
              "00000000000000000000000000000001111111");
}

TEST(KeptLayout, AllColumnsHiddenLeavesAnEmptyGridThatStillWorks) {
    TSession session;
    TConfiguration::Write("[PLUGRID]\r\nHiddenRows=11111111111111111111111111111111\r\n");
    session.Start();
    EXPECT_TRUE(session.Grid().Titles().empty());
    EXPECT_EQ(session.Grid().RowCount(), 6);
    UpdateWindow(session.Grid().Handle());
    PressKey(session.Grid().Handle(), VK_RIGHT);
    PressKey(session.Grid().Handle(), VK_DOWN);
    EXPECT_EQ(session.Grid().FocusedRow(), 1);
}

TEST(KeptLayout, OtherSectionsStayByteForByte) {
    const std::string before = "; by hand\r\n[OTHER]\r\n key = value ; x\r\n\r\n[other 2]\nplain\n";
    TSession session;
    TConfiguration::Write(before);
    session.Start();
    session.CloseList();
    EXPECT_EQ(TConfiguration::Bytes().substr(0, before.size()), before);
}

TEST(GridStyle, WithoutTheIndicatorTheFirstColumnHasItsWidthForItself) {
    TSession session;
    session.Start();
    const int indicator = IndicatorWidth(session);
    EXPECT_GT(indicator, 0);
    session.CloseList();
    TConfiguration::Write("");
    TConfiguration::WriteHostSettings("[PLU_LIST_STYLE]\r\nGRID_Nav=0\r\n");
    session.Start();
    EXPECT_EQ(session.Grid().ColumnWidth(0), 88);
    SaveScreenshot(session.host.Frame(), "list-no-indicator");
}

TEST(GridStyle, ATitleDoubleClickWithoutIndicatorFitsTheClickedColumn) {
    TSession session;
    TConfiguration::WriteHostSettings("[PLU_LIST_STYLE]\r\nGRID_Nav=0\r\n");
    session.Start();
    const int before = session.Grid().ColumnWidth(1);
    Resize(session, 0, 300);
    session.Grid().DoubleClickTitle(0);
    EXPECT_LT(session.Grid().ColumnWidth(0), 100);
    EXPECT_EQ(session.Grid().ColumnWidth(1), before);
}

TEST(GridStyle, LinesAreDrawnAsTheHostsSettingsSay) {
    // The right and the lower line of the cell in the second column of the second row.
    const auto lines = [](const std::string& settings) {
        TSession session;
        TConfiguration::WriteHostSettings(settings);
        session.Start();
        UpdateWindow(session.Grid().Handle());
        RECT cell{LVIR_BOUNDS, 1, 0, 0};
        SendMessageW(session.Grid().Handle(), LVM_GETSUBITEMRECT, 1,
                     reinterpret_cast<LPARAM>(&cell));
        return std::pair(PixelAt(session.Grid().Handle(), {cell.right - 1, cell.top + 3}),
                         PixelAt(session.Grid().Handle(), {cell.right - 4, cell.bottom - 1}));
    };
    const COLORREF line = GetSysColor(COLOR_BTNFACE);
    const COLORREF window = GetSysColor(COLOR_WINDOW);
    EXPECT_EQ(lines(""), std::pair(line, line));
    EXPECT_EQ(lines("[PLU_LIST_STYLE]\r\nGRID_H_Line=0\r\n"), std::pair(line, window));
    EXPECT_EQ(lines("[PLU_LIST_STYLE]\r\nGRID_V_Line=0\r\n"), std::pair(window, line));
}

TEST(GridStyle, SwitchingTheIndicatorOffLeavesTheLines) {
    TSession session;
    TConfiguration::WriteHostSettings("[PLU_LIST_STYLE]\r\nGRID_Nav=0\r\n");
    session.Start();
    UpdateWindow(session.Grid().Handle());
    RECT cell{LVIR_BOUNDS, 1, 0, 0};
    SendMessageW(session.Grid().Handle(), LVM_GETSUBITEMRECT, 1, reinterpret_cast<LPARAM>(&cell));
    const COLORREF line = GetSysColor(COLOR_BTNFACE);
    EXPECT_EQ(PixelAt(session.Grid().Handle(), {cell.right - 1, cell.top + 3}), line);
    EXPECT_EQ(PixelAt(session.Grid().Handle(), {cell.right - 4, cell.bottom - 1}), line);
}

}  // namespace tolvane::test
