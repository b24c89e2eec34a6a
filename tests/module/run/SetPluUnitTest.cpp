#include "upload/forms/SetPluUnit.h"

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "RunWindowFixture.h"
#include "config/IniFile.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/window/Layout.h"
#include "tests/support/window/Screenshot.h"
#include "text/Cp1251.h"
#include "window/CheckList.h"

namespace tolvane::test {
namespace {

using SetPluUnit = TRunWindowTest;

const std::vector<std::string> kNameChoices = {"КАСОВО ИМЕ", "ИМЕ", "ЕТИКЕТНО ИМЕ",
                                               "АРТИКУЛЕН НОМЕР"};

TEST_F(SetPluUnit, TheWindowShowsItsKindAndTheUsableScales) {
    scales_[5] = scales_[2];
    scales_[5].TCPPort = 0;
    script_.When(
        [] { return IsAtRest(); },
        [] {
            EXPECT_EQ(Utf8TextOf(Form()), "Запис на избраните артикули във везните");
            EXPECT_EQ(ComponentName(Form()), "SetPluForm");
            EXPECT_FALSE(HasCaptionIcon(Form()));
            EXPECT_EQ(Utf8TextOf(Part("SaveBtn")), "Запис");
            EXPECT_EQ(Utf8TextOf(Part("DeleteBtn")), "Изтриване на всички артикули");
            EXPECT_EQ(Utf8TextOf(Part("OkBtn")), "Затвори");
            EXPECT_EQ(Utf8TextOf(Part("StopReadBtn")), "Прекъсни");
            EXPECT_FALSE(IsEnabled("StopReadBtn"));
            for (const char* name : {"SaveBtn", "DeleteBtn", "OkBtn", "ScaleList", "PriceRadio",
                                     "PriceRadio0", "PriceRadio1", "cbPluName1", "cbPluName2"})
                EXPECT_TRUE(IsEnabled(name)) << name;
            const TCheckList list(Part("ScaleList"));
            ASSERT_EQ(list.Count(), 2);
            EXPECT_EQ(ToUtf8(list.Text(0)), "Везна 1");
            EXPECT_TRUE(list.IsChecked(0));
            EXPECT_EQ(ToUtf8(list.Text(1)), "Везна 2");
            EXPECT_FALSE(list.IsChecked(1));
            for (const char* name : {"cbPluName1", "cbPluName2"})
                EXPECT_EQ(ComboItems(Form(), name), kNameChoices) << name;
            EXPECT_EQ(TextOf("PriceRadio0"), "ПРОДАЖНА ЦЕНА ДРЕБНО (ЛВ)");
            EXPECT_EQ(TextOf("PriceRadio1"), "ПРОДАЖНА ЦЕНА ЕДРО (ЛВ)");
            EXPECT_EQ(SendMessageW(Part("cbPluName1"), CB_GETCURSEL, 0, 0), 1);
            EXPECT_EQ(SendMessageW(Part("cbPluName2"), CB_GETCURSEL, 0, 0), 2);
            EXPECT_EQ(SendMessageW(Part("PriceRadio0"), BM_GETCHECK, 0, 0), BST_CHECKED);
            EXPECT_FALSE(IsWindowEnabled(GetWindow(Form(), GW_OWNER)) != 0);
            Click(Part("OkBtn"));
        });
    Show(1);
    EXPECT_TRUE(IsWindowEnabled(frame_) != 0);
}

TEST_F(SetPluUnit, EachKindHasItsCaptionAndItsSaveButton) {
    struct TExpected {
        int kind;
        const char* caption;
        const char* save;
        bool saveVisible;
    };
    for (const TExpected& expected :
         {TExpected{1, "Запис на избраните артикули във везните", "Запис", true},
          TExpected{2, "Запис на всички артикули във везните", "Запис", true},
          TExpected{3, "Изтриване на избраните артикули от везните", "Изтрий", true},
          TExpected{4, "Изтриване на всички артикули от везните", "Изтрий", false}}) {
        script_.When([] { return IsAtRest(); },
                     [expected] {
                         EXPECT_EQ(Utf8TextOf(Form()), expected.caption);
                         EXPECT_EQ(TextOf("SaveBtn"), expected.save);
                         EXPECT_EQ(IsWindowVisible(Part("SaveBtn")) != 0, expected.saveVisible);
                         ExpectControls(false);
                         Click(Part("OkBtn"));
                     });
        Show(expected.kind);
    }
}

// At whatever resolution the system has.
TEST_F(SetPluUnit, EveryTextHasItsRoomAtEachWidth) {
    const auto widen = [](int width) {
        SetWindowPos(Form(), nullptr, 0, 0, width, 1, SWP_NOZORDER | SWP_NOMOVE);
        SetWindowTextW(Part("ReadPropLabel"), L"Хост: 192.168.100.200 Скорост: 576000 bps");
        for (const char* name : {"RunBar", "lblRunCount"})
            ShowWindow(Part(name), SW_SHOWNA);
        RECT room{};
        RECT button{};
        GetClientRect(Part("lblRunCount"), &room);
        GetClientRect(Part("OkBtn"), &button);
        const bool twoLines = room.bottom >= button.bottom;
        SetWindowTextW(Part("lblRunCount"), twoLines ? L"19999 от 99999\r\nоще 23 ч 59 мин"
                                                     : L"9999 от 9999, още 2 ч 59 мин");
        ExpectTextsFit(Form());
        ExpectControlsApart(Form());
    };
    for (const int kind : {2, 3, 4}) {
        script_.When([] { return IsAtRest(); },
                     [&] {
                         widen(GetSystemMetrics(SM_CXSCREEN));
                         widen(1);
                         SaveScreenshot(Form(), "run-narrow-" + std::to_string(kind));
                         PostKey(VK_ESCAPE);
                     });
        Show(kind);
    }
}

TEST_F(SetPluUnit, TheWindowFollowsItsMonitor) {
    script_.When([] { return IsAtRest(); },
                 [] {
                     ExpectFollowsMonitors(Form());
                     PostKey(VK_ESCAPE);
                 });
    Show(2);
}

TEST_F(SetPluUnit, AnotherKindOpensNothing) {
    Show(0);
    Show(5);
    EXPECT_EQ(Form(), nullptr);
}

TEST_F(SetPluUnit, WithoutArticlesNoWindowComes) {
    SetArticles({});
    Show(1);
    EXPECT_EQ(Form(), nullptr);
}

TEST_F(SetPluUnit, CheckMarksAndChoicesAreKept) {
    script_.When([] { return IsAtRest(); },
                 [] {
                     TCheckList list(Part("ScaleList"));
                     list.SetChecked(0, false);
                     list.SetChecked(1, true);
                     SendMessageW(Part("PriceRadio1"), BM_CLICK, 0, 0);
                     SendMessageW(Part("cbPluName1"), CB_SETCURSEL, 3, 0);
                     SendMessageW(Part("cbPluName2"), CB_SETCURSEL, 0, 0);
                     SetWindowPos(Form(), nullptr, 60, 40, 800, 600, SWP_NOZORDER);
                     PostMessageW(Form(), WM_CLOSE, 0, 0);
                 });
    Show(1);
    EXPECT_FALSE(scales_[1].Checked);
    EXPECT_TRUE(scales_[2].Checked);
    const std::string ini = Ini();
    for (const char* line : {"[SCALESETTINGS]", "PriceRadio_ItemIndex=1", "cbPluName1_ItemIndex=3",
                             "cbPluName2_ItemIndex=0"})
        EXPECT_NE(ini.find(line), std::string::npos) << line;
    script_.When([] { return IsAtRest(); },
                 [] {
                     EXPECT_EQ(SendMessageW(Part("PriceRadio1"), BM_GETCHECK, 0, 0), BST_CHECKED);
                     EXPECT_EQ(SendMessageW(Part("PriceRadio0"), BM_GETCHECK, 0, 0), BST_UNCHECKED);
                     EXPECT_EQ(SendMessageW(Part("cbPluName1"), CB_GETCURSEL, 0, 0), 3);
                     EXPECT_EQ(SendMessageW(Part("cbPluName2"), CB_GETCURSEL, 0, 0), 0);
                     RECT rect{};
                     GetWindowRect(Form(), &rect);
                     EXPECT_EQ(rect.left, 60);
                     EXPECT_EQ(rect.top, 40);
                     EXPECT_EQ(rect.right - rect.left, 800);
                     EXPECT_EQ(rect.bottom - rect.top, 600);
                     Click(Part("OkBtn"));
                 });
    Show(1);
}

TEST_F(SetPluUnit, ASettingsFileThatCannotBeWrittenIsReportedAfterTheCheckMarksAreBack) {
    context_.iniFile = context_.iniFile / "no folder" / "x.ini";
    script_.When([] { return IsAtRest(); },
                 [] {
                     TCheckList(Part("ScaleList")).SetChecked(1, true);
                     Click(Part("OkBtn"));
                 });
    EXPECT_THROW(ShowRunWindow(owner_, TRunNumber{1}, context_), std::runtime_error);
    EXPECT_TRUE(scales_[2].Checked);
}

// Another program holds the file for a moment. With default settings the run would write other
// prices than the shop has chosen, and closing the window would save those settings.
TEST_F(SetPluUnit, WithSettingsThatCannotBeReadNoWindowComesAndTheyAreKept) {
    const std::string kept = "[SCALESETTINGS]\r\nPriceRadio_ItemIndex=1\r\n";
    PutFile(context_.iniFile, kept);
    const HANDLE held =
        CreateFileW(context_.iniFile.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    EXPECT_THROW(ShowRunWindow(owner_, TRunNumber{2}, context_), TFileError);
    CloseHandle(held);
    EXPECT_EQ(Form(), nullptr);
    EXPECT_TRUE(IsWindowEnabled(frame_) != 0);
    EXPECT_EQ(Ini(), kept);
}

TEST_F(SetPluUnit, AMaximizedWindowComesBackMaximizedOverItsOldPlace) {
    script_.When([] { return IsAtRest(); },
                 [] {
                     SetWindowPos(Form(), nullptr, 70, 50, 760, 560, SWP_NOZORDER);
                     ShowWindow(Form(), SW_SHOWMAXIMIZED);
                     PostKey(VK_ESCAPE);
                 });
    Show(2);
    script_.When([] { return IsAtRest(); },
                 [] {
                     EXPECT_NE(IsZoomed(Form()), 0);
                     ShowWindow(Form(), SW_RESTORE);
                     RECT rect{};
                     GetWindowRect(Form(), &rect);
                     EXPECT_EQ(rect.left, 70);
                     EXPECT_EQ(rect.top, 50);
                     EXPECT_EQ(rect.right - rect.left, 760);
                     EXPECT_EQ(rect.bottom - rect.top, 560);
                     PostKey(VK_ESCAPE);
                 });
    Show(2);
}

TEST_F(SetPluUnit, TheCloseBoxClosesAWindowAtRest) {
    script_.When([] { return IsAtRest(); },
                 [] {
                     TCheckList(Part("ScaleList")).SetChecked(0, false);
                     PostMessageW(Form(), WM_SYSCOMMAND, SC_CLOSE, 0);
                 });
    Show(2);
    EXPECT_FALSE(scales_[1].Checked);
}

// Neither slot has a port: no scale can be used.
TEST_F(SetPluUnit, WithNoUsableScaleEitherButtonOnlyLogsThat) {
    const std::string only = "Не е дефинирана нито една везна.\r\n";
    scales_[1].TCPPort = 0;
    scales_[2].TCPPort = 0;
    script_.When([] { return IsAtRest(); },
                 [] {
                     EXPECT_EQ(TCheckList(Part("ScaleList")).Count(), 0);
                     Click(Part("SaveBtn"));
                 });
    script_.When([=] { return Log() == only; },
                 [] {
                     ExpectControls(false);
                     SetWindowTextW(Part("StatusMemo"), L"");
                     Click(Part("DeleteBtn"));
                 });
    ThenAnswer(IDYES);
    script_.When([=] { return Box() == nullptr && Log() == only; },
                 [] {
                     ExpectControls(false);
                     PostKey(VK_ESCAPE);
                 });
    Show(2);
    EXPECT_EQ(scales_[1].ScaleName.Str(), std::string("Везна 1"_cp1251));
    EXPECT_TRUE(scales_[1].Checked);
}

}  // namespace
}  // namespace tolvane::test
