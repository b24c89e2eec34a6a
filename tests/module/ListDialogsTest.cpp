// The list's own modal windows: the scale list editor, the column chooser and the search box, and
// what the host's code may do while one of them is open.
#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/support/module/Commands.h"
#include "tests/support/module/Session.h"
#include "tests/support/window/BoxAnswerer.h"
#include "tests/support/window/Layout.h"
#include "tests/support/window/UserScript.h"

namespace tolvane::test {
namespace {

const wchar_t* const kEditorClass = L"TScaleComunicationForm";
const wchar_t* const kChooserClass = L"TColListForm";
const wchar_t* const kSearchBoxClass = L"TInputBoxForm";

struct TClassCount {
    std::wstring className;
    int count = 0;
};

BOOL CALLBACK CountWindow(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<TClassCount*>(parameter);
    if (ClassOf(window) == search.className && IsWindowVisible(window) != 0) ++search.count;
    return TRUE;
}

int WindowsOfClass(const std::wstring& className) {
    TClassCount search{className};
    EnumThreadWindows(GetCurrentThreadId(), &CountWindow, reinterpret_cast<LPARAM>(&search));
    return search.count;
}

struct TDialogCase {
    const char* name;
    const wchar_t* className;
    // Returns when the window is closed.
    std::function<void(const TSession&)> open;
};

std::ostream& operator<<(std::ostream& out, const TDialogCase& dialog) {
    return out << dialog.name;
}

const std::vector<TDialogCase> kDialogs = {
    {"Editor", kEditorClass,
     [](const TSession& session) {
         SendMessageW(session.List(), WM_COMMAND, kSettingsCommand, 0);
         RunLoopDry();
     }},
    {"Chooser", kChooserClass, [](const TSession& session) { session.Click("ColBtn"); }},
    {"SearchBox", kSearchBoxClass, [](const TSession& session) { session.Click("SearchButton"); }},
    {"SearchBoxByKey", kSearchBoxClass,
     [](const TSession& session) { PressKey(session.Control("aDBGrid"), VK_F3); }}};

void PostClose(HWND window) {
    PostMessageW(window, WM_CLOSE, 0, 0);
}

}  // namespace

class ListDialogsTest : public testing::TestWithParam<TDialogCase> {
protected:
    ListDialogsTest() { session_.Start(); }

    TSession session_;
};

TEST_P(ListDialogsTest, GoesWithTheListWindow) {
    {
        const TDialogScript script(GetParam().className, {[this](HWND) {
                                       SendMessageW(session_.host.Client(), WM_MDIDESTROY,
                                                    reinterpret_cast<WPARAM>(session_.List()), 0);
                                   }});
        GetParam().open(session_);
        RunLoopDry();
    }
    EXPECT_EQ(session_.List(), nullptr);
    EXPECT_EQ(WindowsOfClass(GetParam().className), 0);
    EXPECT_NE(IsWindowEnabled(session_.host.Frame()), 0);
    EXPECT_EQ(session_.Completions(), 1);
    session_.module.Unload();
    EXPECT_TRUE(RunLoopUntil(TLoadedModule::IsGone));
}

TEST_P(ListDialogsTest, HasNoIconInItsCaption) {
    EXPECT_TRUE(HasCaptionIcon(session_.List()));
    const TDialogScript script(
        GetParam().className,
        {[](HWND window) { EXPECT_FALSE(HasCaptionIcon(window)); }, &PostClose});
    GetParam().open(session_);
}

TEST_P(ListDialogsTest, KeepsTheFocusAndTheMarksWhenTheHostStartsAgain) {
    session_.Grid().ClickRow(4, 0);
    session_.Grid().ClickRow(2, 0, true);
    const TDialogScript script(GetParam().className, {[this](HWND window) {
                                                          const HWND focus = GetFocus();
                                                          EXPECT_NE(IsChild(window, focus), 0);
                                                          session_.Start();
                                                          EXPECT_EQ(GetFocus(), focus);
                                                      },
                                                      &PostClose});
    GetParam().open(session_);
    EXPECT_EQ(session_.Grid().RowCount(), 6);
    EXPECT_EQ(session_.Grid().SelectedRows(), (std::vector<int>{2, 4}));
}

TEST_P(ListDialogsTest, TheHostsCommandsOpenNothingOverIt) {
    const TUserScript run(L"TSetPluForm", &PostClose);
    const TDialogScript script(GetParam().className,
                               {[this](HWND) {
                                    PostMessageW(session_.List(), WM_COMMAND, kWriteAll, 0);
                                    PostMessageW(session_.List(), WM_COMMAND, kSettingsCommand, 0);
                                },
                                [](HWND window) {
                                    EXPECT_EQ(WindowsOfClass(kEditorClass),
                                              ClassOf(window) == kEditorClass ? 1 : 0);
                                    PostClose(window);
                                }});
    const TUserScript editor(kEditorClass, [&](HWND window) {
        if (GetParam().className != std::wstring(kEditorClass)) PostClose(window);
    });
    GetParam().open(session_);
    EXPECT_FALSE(run.IsDone());
    EXPECT_EQ(editor.IsDone(), GetParam().className == std::wstring(kEditorClass));
}

INSTANTIATE_TEST_SUITE_P(Windows, ListDialogsTest, testing::ValuesIn(kDialogs),
                         [](const auto& test) { return test.param.name; });

TEST(ListDialogs, TwoPostedSettingsCommandsOpenOneEditor) {
    TSession session;
    session.Start();
    const TDialogScript script(
        kEditorClass,
        {[](HWND) { EXPECT_EQ(WindowsOfClass(kEditorClass), 1); }, Pressing("btnCancel")});
    PostMessageW(session.List(), WM_COMMAND, kSettingsCommand, 0);
    PostMessageW(session.List(), WM_COMMAND, kSettingsCommand, 0);
    RunLoopDry();
    EXPECT_EQ(WindowsOfClass(kEditorClass), 0);
}

class ChooserClosingTest : public testing::Test {
protected:
    ChooserClosingTest() { session_.Start(); }

    static TDialogScript::TStep Hiding(int line) {
        return [=](HWND window) {
            ListView_SetCheckState(ControlOf(window, "aCheckListBox"), line, FALSE);
        };
    }
    // Unchecks the second line before the last step.
    void ExpectNothingChanges(const TDialogScript::TStep& close) {
        const std::vector<std::string> titles = session_.Grid().Titles();
        {
            const TDialogScript script(kChooserClass, {Hiding(1), close});
            session_.Click("ColBtn");
        }
        EXPECT_EQ(session_.Grid().Titles(), titles);
        EXPECT_EQ(TConfiguration::Value("PLUGRID", "HiddenRows"),
                  "00000000000000000000000000000000");
    }

    TSession session_;
};

TEST_F(ChooserClosingTest, EscapeHidesNothing) {
    ExpectNothingChanges([](HWND) { PostKey(VK_ESCAPE); });
}

TEST_F(ChooserClosingTest, TheSystemsCloseHidesNothing) {
    ExpectNothingChanges(&PostClose);
}

TEST_F(ChooserClosingTest, HidingTheCurrentColumnSearchesByTheNewCurrentOne) {
    session_.Grid().ClickRow(0, 3);
    ASSERT_EQ(Utf8TextOf(session_.Control("SearchButton")), "Търси по: Име (F3)");
    {
        const TDialogScript script(kChooserClass, {Hiding(3), Pressing("btnOK")});
        session_.Click("ColBtn");
    }
    EXPECT_EQ(Utf8TextOf(session_.Control("SearchButton")), "Търси по: Арт.No: (F3)");
    // Ctrl+Enter sorts by the same column.
    PressKey(session_.Control("aDBGrid"), VK_RETURN, true);
    EXPECT_EQ(session_.Grid().ColumnFormat(0) & (HDF_SORTUP | HDF_SORTDOWN), HDF_SORTDOWN);
}

}  // namespace tolvane::test
