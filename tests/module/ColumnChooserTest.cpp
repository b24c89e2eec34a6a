#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "tests/module/LoopWatch.h"
#include "tests/module/MessageCount.h"
#include "tests/support/module/Session.h"
#include "tests/support/window/BoxAnswerer.h"
#include "tests/support/window/Layout.h"
#include "tests/support/window/Screenshot.h"
#include "tests/support/window/UserScript.h"

namespace tolvane::test {
namespace {

const wchar_t* const kChooserClass = L"TColListForm";
constexpr int kColumns = 32;

HWND Lines(HWND chooser) {
    return ControlOf(chooser, "aCheckListBox");
}

bool IsLineChecked(HWND chooser, int line) {
    return ListView_GetCheckState(Lines(chooser), line) == 1;
}

TDialogScript::TStep Checking(int line, bool checked) {
    return
        [=](HWND window) { ListView_SetCheckState(Lines(window), line, checked ? TRUE : FALSE); };
}

// The middle of a line's text.
POINT PointOn(HWND chooser, int line) {
    SendMessageW(Lines(chooser), LVM_ENSUREVISIBLE, static_cast<WPARAM>(line), FALSE);
    RECT label{LVIR_LABEL, 0, 0, 0};
    SendMessageW(Lines(chooser), LVM_GETITEMRECT, static_cast<WPARAM>(line),
                 reinterpret_cast<LPARAM>(&label));
    return {label.left + 30, (label.top + label.bottom) / 2};
}

// The middle of a line's check box.
POINT BoxOf(HWND chooser, int line) {
    const POINT text = PointOn(chooser, line);
    LVHITTESTINFO hit{};
    hit.pt = {8, text.y};
    SendMessageW(Lines(chooser), LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
    EXPECT_EQ(hit.flags & LVHT_ONITEM, static_cast<UINT>(LVHT_ONITEMSTATEICON));
    EXPECT_EQ(hit.iItem, line);
    return hit.pt;
}

LPARAM PointParam(POINT at) {
    return MAKELPARAM(static_cast<WORD>(at.x), static_cast<WORD>(at.y));
}

void Drag(HWND chooser, POINT from, POINT to, WPARAM buttons = MK_LBUTTON) {
    const HWND lines = Lines(chooser);
    if (buttons != MK_LBUTTON) PostMessageW(lines, WM_LBUTTONUP, 0, PointParam(from));
    SendMessageW(lines, WM_LBUTTONDOWN, buttons, PointParam(from));
    SendMessageW(lines, WM_MOUSEMOVE, buttons, PointParam(to));
    SendMessageW(lines, WM_LBUTTONUP, 0, PointParam(to));
}

TDialogScript::TStep Dragging(int from, int to) {
    return [=](HWND window) { Drag(window, PointOn(window, from), PointOn(window, to)); };
}

class ColumnChooserTest : public testing::Test {
protected:
    ColumnChooserTest() { session_.Start(); }

    void Choose(std::vector<TDialogScript::TStep> steps) const {
        const TDialogScript script(kChooserClass, std::move(steps));
        session_.Click("ColBtn");
    }
    TGridReader Grid() const { return session_.Grid(); }
    static std::string Stored() { return TConfiguration::Value("PLUGRID", "HiddenRows"); }

    TSession session_;
};

}  // namespace

TEST_F(ColumnChooserTest, NoLineIsCutAtTheLowerEdge) {
    Choose({[](HWND window) { ExpectWholeLines(Lines(window), 15); }, Pressing("btnCancel")});
}

// Each line takes longer to measure than to add.
TEST_F(ColumnChooserTest, TheLinesScrollUpAndDownOnly) {
    Choose({[](HWND window) {
                const LONG style = GetWindowLongW(Lines(window), GWL_STYLE);
                EXPECT_NE(style & WS_VSCROLL, 0);
                EXPECT_EQ(style & WS_HSCROLL, 0);
            },
            Pressing("btnCancel")});
}

TEST_F(ColumnChooserTest, OpeningMeasuresTheLinesOnce) {
    const TSentCount measurements(LVM_SETCOLUMNWIDTH);
    Choose({Pressing("btnCancel")});
    EXPECT_EQ(measurements.Count(), 1);
}

// Wine would look for ever for the control whose letter this is.
TEST_F(ColumnChooserTest, AnAltKeyWithinADisabledListIsHandled) {
    const TLoopWatch endsAHangingTest;
    Choose({[](HWND window) {
                const HWND titles = GetWindow(Lines(window), GW_CHILD);
                ASSERT_NE(titles, nullptr);
                EnableWindow(Lines(window), FALSE);
                PostMessageW(titles, WM_SYSCHAR, 'q', LPARAM{1} << 29);
            },
            Pressing("btnCancel")});
}

TEST_F(ColumnChooserTest, LooksAsAskedFor) {
    Choose({[](HWND window) {
                EXPECT_EQ(Utf8TextOf(window), "Видими колони");
                RECT client{};
                GetClientRect(window, &client);
                EXPECT_EQ(client.right, 201);
                EXPECT_EQ(client.bottom, 383);
                const LONG style = GetWindowLongW(window, GWL_STYLE);
                EXPECT_EQ(style & (WS_SYSMENU | WS_MINIMIZEBOX | WS_MAXIMIZEBOX), 0);
                EXPECT_NE(GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_TOOLWINDOW, 0);
                EXPECT_EQ(TextOf(window, "SelAllBtn"), "Всички");
                EXPECT_EQ(TextOf(window, "SelNoneBtn"), "Нищо");
                EXPECT_EQ(TextOf(window, "btnCancel"), "Отказ");
                EXPECT_EQ(TextOf(window, "btnOK"), "Потвърди");
                RECT button{};
                GetClientRect(ControlOf(window, "SelAllBtn"), &button);
                EXPECT_EQ(button.right, 75);
                EXPECT_EQ(button.bottom, 20);
            },
            Pressing("btnCancel")});
}

TEST_F(ColumnChooserTest, ListsEveryColumnByItsTitleWithACheckForTheVisibleOnes) {
    const std::vector<std::string> titles = Grid().Titles();
    Choose({Checking(1, false), Pressing("btnOK")});
    Choose({[&](HWND window) {
                const TGridReader lines(Lines(window));
                ASSERT_EQ(lines.RowCount(), kColumns);
                for (int line = 0; line < kColumns; ++line) {
                    EXPECT_EQ(lines.Cell(line, 0), titles[static_cast<std::size_t>(line)]);
                    EXPECT_EQ(IsLineChecked(window, line), line != 1) << line;
                }
            },
            Pressing("btnCancel")});
}

TEST_F(ColumnChooserTest, ConfirmingHidesWhatIsNotCheckedAndStoresIt) {
    Choose({Checking(1, false), Checking(31, false), Pressing("btnOK")});
    EXPECT_EQ(Grid().Titles().size(), 30U);
    EXPECT_EQ(Grid().ColumnByTitle("Номенкл.No"), -1);
    EXPECT_EQ(Grid().ColumnByTitle("Партида (самок.)"), -1);
    EXPECT_EQ(Grid().Cell(0, 1), "101");
    // 32 columns: the second and the last are hidden.
    EXPECT_EQ(Stored(), "01000000000000000000000000000001");
    SaveScreenshot(session_.host.Frame(), "list-hidden-columns");
}

TEST_F(ColumnChooserTest, AllAndNothingSetEveryCheck) {
    Choose({Pressing("SelNoneBtn"),
            [](HWND window) {
                for (int line = 0; line < kColumns; ++line)
                    EXPECT_FALSE(IsLineChecked(window, line)) << line;
            },
            Pressing("SelAllBtn"),
            [](HWND window) {
                for (int line = 0; line < kColumns; ++line)
                    EXPECT_TRUE(IsLineChecked(window, line)) << line;
            },
            Pressing("btnCancel")});
}

TEST_F(ColumnChooserTest, AnEmptyChoiceIsRefusedAndCancellingLeavesTheGrid) {
    const TBoxAnswerer boxes;
    const std::vector<std::string> titles = Grid().Titles();
    Choose({Pressing("SelNoneBtn"), Pressing("btnOK"),
            [&](HWND window) {
                ASSERT_EQ(boxes.Seen().size(), 1U);
                EXPECT_EQ(boxes.Seen()[0].text, "Поне едно поле трябва да бъде избрано !");
                EXPECT_EQ(boxes.Seen()[0].buttons, std::vector<int>{IDOK});
                EXPECT_EQ(boxes.Seen()[0].icon, TBoxIcon::Error);
                EXPECT_NE(IsWindowVisible(window), 0);
            },
            Pressing("btnCancel")});
    EXPECT_EQ(Grid().Titles(), titles);
    EXPECT_EQ(Stored(), "00000000000000000000000000000000");
}

TEST_F(ColumnChooserTest, WhatIsPressedBehindTheErrorBoxOpensNoOther) {
    const TBoxAnswerer boxes;
    Choose({Pressing("SelNoneBtn"),
            [](HWND window) {
                for (int i = 0; i < 3; ++i)
                    PostMessageW(ControlOf(window, "btnOK"), BM_CLICK, 0, 0);
            },
            [&](HWND) { EXPECT_EQ(boxes.Seen().size(), 1U); }, Pressing("btnCancel")});
}

TEST_F(ColumnChooserTest, ADraggedLineMovesItsColumnAtOnceAndStaysMovedAfterCancelling) {
    Choose({Dragging(3, 0),
            [this](HWND window) {
                EXPECT_EQ(TGridReader(Lines(window)).Cell(0, 0), "Име");
                EXPECT_EQ(TGridReader(Lines(window)).Cell(1, 0), "Арт.No:");
                EXPECT_EQ(Grid().ColumnByTitle("Име"), 0);
            },
            Pressing("btnCancel")});
    EXPECT_EQ(Grid().ColumnByTitle("Име"), 0);
    EXPECT_EQ(Grid().ColumnByTitle("Арт.No:"), 1);
    EXPECT_EQ(Grid().Cell(0, 0), "Ябълки червени");
}

TEST_F(ColumnChooserTest, ALineMovesDownToTheTargetsPlaceWithItsCheck) {
    Choose({Checking(0, false), Dragging(0, 2),
            [](HWND window) {
                const TGridReader lines(Lines(window));
                EXPECT_EQ(lines.Cell(0, 0), "Номенкл.No");
                EXPECT_EQ(lines.Cell(1, 0), "No: за везна");
                EXPECT_EQ(lines.Cell(2, 0), "Арт.No:");
                EXPECT_FALSE(IsLineChecked(window, 2));
            },
            Pressing("btnOK")});
    EXPECT_EQ(Grid().ColumnByTitle("Арт.No:"), -1);
    EXPECT_EQ(Stored(), "00100000000000000000000000000000");
}

TEST_F(ColumnChooserTest, TheSortMarkMovesWithItsColumn) {
    Choose({Dragging(0, 2), Pressing("btnOK")});
    EXPECT_EQ(Grid().ColumnFormat(2) & (HDF_SORTUP | HDF_SORTDOWN), HDF_SORTUP);
    EXPECT_EQ(Grid().ColumnFormat(0) & (HDF_SORTUP | HDF_SORTDOWN), 0);
}

TEST_F(ColumnChooserTest, DroppingALineOnItselfOrOutsideTheLinesChangesNothing) {
    const std::vector<std::string> titles = Grid().Titles();
    Choose({[](HWND window) {
                const POINT line = PointOn(window, 3);
                Drag(window, line, {line.x + 40, line.y});
                Drag(window, line, {line.x, -30});
                Drag(window, line, {line.x, 5000});
            },
            Pressing("btnCancel")});
    EXPECT_EQ(Grid().Titles(), titles);
}

// Moving a column leaves the current column what it was.
TEST_F(ColumnChooserTest, WhatIsSearchedStaysWhenAColumnMoves) {
    SendMessageW(session_.List(), WM_COMMAND, 2003, 0);
    ASSERT_EQ(Utf8TextOf(session_.Control("SearchButton")), "Търси по: Име (F3)");
    Choose({Dragging(0, 2), Dragging(3, 0), Pressing("btnCancel")});
    EXPECT_EQ(Utf8TextOf(session_.Control("SearchButton")), "Търси по: Име (F3)");
}

TEST_F(ColumnChooserTest, ADragBeginsAfterTenPixels) {
    const std::vector<std::string> titles = Grid().Titles();
    Choose({[](HWND window) {
                // From the last pixel row of a line, so that the next line is near.
                POINT from = PointOn(window, 3);
                RECT bounds{LVIR_BOUNDS, 0, 0, 0};
                SendMessageW(Lines(window), LVM_GETITEMRECT, 3, reinterpret_cast<LPARAM>(&bounds));
                from.y = bounds.bottom - 1;
                Drag(window, from, {from.x, from.y + 9});
            },
            [&](HWND window) {
                EXPECT_EQ(TGridReader(Lines(window)).Cell(3, 0), "Име");
                POINT from = PointOn(window, 3);
                RECT bounds{LVIR_BOUNDS, 0, 0, 0};
                SendMessageW(Lines(window), LVM_GETITEMRECT, 3, reinterpret_cast<LPARAM>(&bounds));
                from.y = bounds.bottom - 1;
                Drag(window, from, {from.x, from.y + 10});
                EXPECT_EQ(TGridReader(Lines(window)).Cell(4, 0), "Име");
            },
            Pressing("btnCancel")});
    EXPECT_EQ(Grid().ColumnByTitle("Име"), 4);
}

TEST_F(ColumnChooserTest, ADragBeginsOnALinesCheckBoxTooAndTicksNothing) {
    Choose({Checking(3, false),
            [](HWND window) {
                Drag(window, BoxOf(window, 3), BoxOf(window, 0));
                EXPECT_EQ(TGridReader(Lines(window)).Cell(0, 0), "Име");
                EXPECT_FALSE(IsLineChecked(window, 0));
                EXPECT_TRUE(IsLineChecked(window, 1));
            },
            [](HWND window) {
                const POINT box = BoxOf(window, 0);
                Drag(window, box, {box.x + 10, box.y});
                EXPECT_EQ(TGridReader(Lines(window)).Cell(0, 0), "Име");
                EXPECT_FALSE(IsLineChecked(window, 0));
            },
            Pressing("btnOK")});
    EXPECT_EQ(Grid().Titles()[0], "Арт.No:");
    EXPECT_EQ(Stored(), "10000000000000000000000000000000");
}

TEST_F(ColumnChooserTest, AClickOnACheckBoxTicksItWhenTheButtonGoesUp) {
    Choose({[](HWND window) {
                const HWND lines = Lines(window);
                const POINT box = BoxOf(window, 3);
                SendMessageW(lines, WM_LBUTTONDOWN, MK_LBUTTON, PointParam(box));
                EXPECT_TRUE(IsLineChecked(window, 3));
                SendMessageW(lines, WM_LBUTTONUP, 0, PointParam(box));
                EXPECT_FALSE(IsLineChecked(window, 3));
                EXPECT_EQ(TGridReader(lines).FocusedRow(), 3);
                // A quick second click.
                SendMessageW(lines, WM_LBUTTONDBLCLK, MK_LBUTTON, PointParam(box));
                SendMessageW(lines, WM_LBUTTONUP, 0, PointParam(box));
                EXPECT_TRUE(IsLineChecked(window, 3));
            },
            [](HWND window) {
                // Nine pixels are too few for a drag.
                const POINT box = BoxOf(window, 3);
                Drag(window, box, {box.x + 9, box.y - 9});
                EXPECT_FALSE(IsLineChecked(window, 3));
                EXPECT_EQ(TGridReader(Lines(window)).Cell(3, 0), "Име");
                EXPECT_TRUE(IsLineChecked(window, 2));
            },
            [](HWND window) {
                // A press that another window takes over does not change the check box.
                SendMessageW(Lines(window), WM_LBUTTONDOWN, MK_LBUTTON,
                             PointParam(BoxOf(window, 3)));
                ReleaseCapture();
                SendMessageW(Lines(window), WM_LBUTTONUP, 0, PointParam(BoxOf(window, 3)));
                EXPECT_FALSE(IsLineChecked(window, 3));
            },
            Pressing("btnOK")});
    EXPECT_EQ(Grid().ColumnByTitle("Име"), -1);
    EXPECT_EQ(Stored(), "00010000000000000000000000000000");
}

TEST_F(ColumnChooserTest, AnotherButtonOrKeyDragsNothing) {
    Choose({[](HWND window) {
                Drag(window, PointOn(window, 3), PointOn(window, 0), MK_LBUTTON | MK_CONTROL);
                Drag(window, PointOn(window, 3), PointOn(window, 0), MK_LBUTTON | MK_RBUTTON);
                Drag(window, PointOn(window, 3), PointOn(window, 0), MK_LBUTTON | MK_SHIFT);
            },
            [](HWND window) {
                const THeldKey alt(VK_MENU);
                const POINT from = PointOn(window, 3);
                // If the list handles the press itself, it waits for the button to go up.
                PostMessageW(Lines(window), WM_LBUTTONUP, 0, PointParam(from));
                Drag(window, from, PointOn(window, 0));
            },
            [](HWND window) { EXPECT_EQ(TGridReader(Lines(window)).Cell(3, 0), "Име"); },
            Pressing("btnCancel")});
}

TEST_F(ColumnChooserTest, EscapeGivesADragUpFirst) {
    Choose({[](HWND window) {
                const HWND lines = Lines(window);
                SendMessageW(lines, WM_LBUTTONDOWN, MK_LBUTTON, PointParam(PointOn(window, 3)));
                SendMessageW(lines, WM_MOUSEMOVE, MK_LBUTTON, PointParam(PointOn(window, 0)));
                PostKey(VK_ESCAPE);
            },
            [](HWND window) {
                EXPECT_NE(IsWindowVisible(window), 0);
                SendMessageW(Lines(window), WM_LBUTTONUP, 0, PointParam(PointOn(window, 0)));
                EXPECT_EQ(TGridReader(Lines(window)).Cell(3, 0), "Име");
                PostKey(VK_ESCAPE);
            }});
}

TEST_F(ColumnChooserTest, WorksByKeyboardAlone) {
    Choose({[](HWND) { PostKey(VK_DOWN); }, [](HWND) { PostKey(VK_SPACE); },
            [](HWND window) {
                EXPECT_FALSE(IsLineChecked(window, 1));
                const THeldKey control(VK_CONTROL);
                SendMessageW(Lines(window), WM_KEYDOWN, VK_DOWN, 1);
                EXPECT_EQ(TGridReader(Lines(window)).Cell(2, 0), "Номенкл.No");
            },
            [](HWND) { PostKey(VK_RETURN); }});
    EXPECT_EQ(Grid().ColumnByTitle("Номенкл.No"), -1);
    EXPECT_EQ(Stored(), "00100000000000000000000000000000");
}

TEST_F(ColumnChooserTest, SearchingByAColumnFollowsTheFieldWhereverItStands) {
    Choose({Dragging(3, 0), Pressing("btnOK")});
    SendMessageW(session_.List(), WM_COMMAND, 2000, 0);
    EXPECT_EQ(Utf8TextOf(session_.Control("SearchButton")), "Търси по: Име (F3)");
}

TEST_F(ColumnChooserTest, WhatIsStoredIsWrittenAtOnce) {
    Choose({Checking(1, false), Dragging(3, 0), Pressing("btnOK")});
    // The window is still open.
    EXPECT_EQ(Stored(), "00100000000000000000000000000000");
    EXPECT_EQ(TConfiguration::Value("PLUGRID", "aDBGrid_Column1").substr(0, 9), "PLU_NAME,");
}

TEST_F(ColumnChooserTest, StandsInTheMiddleOfTheListWindow) {
    SetWindowPos(session_.List(), nullptr, 0, 0, 700, 500, SWP_NOZORDER);
    Choose({[this](HWND window) {
                RECT chooser{};
                RECT list{};
                GetWindowRect(window, &chooser);
                GetWindowRect(session_.List(), &list);
                EXPECT_NEAR(chooser.left + chooser.right, list.left + list.right, 1);
                EXPECT_NEAR(chooser.top + chooser.bottom, list.top + list.bottom, 1);
                SaveScreenshot(window, "column-chooser");
            },
            Pressing("btnCancel")});
}

TEST_F(ColumnChooserTest, NeverStandsBeyondTheScreen) {
    RECT screen{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &screen, 0);
    SetWindowPos(session_.host.Frame(), nullptr, screen.right - 200, screen.bottom - 100, 0, 0,
                 SWP_NOZORDER | SWP_NOSIZE);
    Choose({[&](HWND window) {
                RECT chooser{};
                GetWindowRect(window, &chooser);
                EXPECT_LE(chooser.right, screen.right);
                EXPECT_LE(chooser.bottom, screen.bottom);
            },
            Pressing("btnCancel")});
}

TEST_F(ColumnChooserTest, CancellingAfterADragReturnsTheStringBuiltOnOpening) {
    Choose({Checking(1, false), Pressing("btnOK")});
    Choose({Dragging(3, 0), Pressing("btnCancel")});
    // The hidden column is the third now; the stored text is still the earlier one.
    EXPECT_EQ(Stored(), "01000000000000000000000000000000");
    EXPECT_EQ(Grid().ColumnByTitle("Номенкл.No"), -1);
    EXPECT_EQ(Grid().ColumnByTitle("Име"), 0);
}

TEST_F(ColumnChooserTest, AnEmptyChoiceAfterADragLeavesTheMoveOnly) {
    const TBoxAnswerer boxes;
    Choose({Dragging(3, 0), Pressing("SelNoneBtn"), Pressing("btnOK"), Pressing("btnCancel")});
    EXPECT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(Grid().Titles().size(), 32U);
    EXPECT_EQ(Grid().ColumnByTitle("Име"), 0);
}

TEST_F(ColumnChooserTest, TheLineUnderTheMouseIsTheCurrentOneDuringADrag) {
    Choose({[](HWND window) {
                const HWND lines = Lines(window);
                const POINT target = PointOn(window, 5);
                SendMessageW(lines, WM_LBUTTONDOWN, MK_LBUTTON, PointParam(PointOn(window, 3)));
                SendMessageW(lines, WM_MOUSEMOVE, MK_LBUTTON, PointParam(target));
                EXPECT_EQ(TGridReader(lines).FocusedRow(), 5);
                EXPECT_EQ(TGridReader(lines).Cell(3, 0), "Име");
                SendMessageW(lines, WM_LBUTTONUP, 0, PointParam(target));
                EXPECT_EQ(TGridReader(lines).Cell(5, 0), "Име");
            },
            Pressing("btnCancel")});
}

TEST_F(ColumnChooserTest, WidthsAndThePlaceOfTheWindowAreWrittenAtOnceToo) {
    SetWindowPos(session_.List(), nullptr, 15, 25, 640, 360, SWP_NOZORDER);
    SendMessageW(Grid().Handle(), LVM_SETCOLUMNWIDTH, 3, 177);
    Choose({Pressing("btnCancel")});
    EXPECT_EQ(TConfiguration::Value("PLUGRID", "aDBGrid_Column4"), "PLU_NAME,177");
    EXPECT_EQ(TConfiguration::Value("PLUGRID", "ElicomPluScaleListForm_Left"), "15");
    EXPECT_EQ(TConfiguration::Value("PLUGRID", "ElicomPluScaleListForm_Width"), "640");
}

TEST_F(ColumnChooserTest, OrderAndHiddenColumnsComeBackWithTheNextOpening) {
    Choose({Checking(1, false), Dragging(3, 0), Pressing("btnOK")});
    const std::vector<std::string> titles = Grid().Titles();
    session_.CloseList();
    session_.Start();
    EXPECT_EQ(Grid().Titles(), titles);
    EXPECT_EQ(Grid().ColumnByTitle("Име"), 0);
    EXPECT_EQ(Grid().ColumnByTitle("Номенкл.No"), -1);
    EXPECT_EQ(Grid().Cell(0, 0), "Ябълки червени");
}

}  // namespace tolvane::test
