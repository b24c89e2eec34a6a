#include <gtest/gtest.h>

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/support/module/Session.h"
#include "tests/support/window/BoxAnswerer.h"
#include "tests/support/window/Screenshot.h"
#include "tests/support/window/UserScript.h"

namespace tolvane::test {
namespace {

constexpr int kSearchCommands = 2000;
constexpr int kNameColumn = 3;
constexpr int kPriceColumn = 10;
constexpr int kPromotionColumn = 18;
constexpr int kDisabledColumn = 25;

// What the input box showed, and the answer that the user gives in it.
struct TDialog {
    std::string title;
    std::string prompt;
    std::string initial;
    int shown = 0;
};

class SearchTest : public testing::Test {
protected:
    SearchTest() { session_.Start(); }

    void Command(int number) const {
        SendMessageW(session_.List(), WM_COMMAND, static_cast<WPARAM>(number), 0);
    }
    void SearchByName() const { Command(kSearchCommands + kNameColumn); }
    std::string Caption() const { return Utf8TextOf(session_.Control("SearchButton")); }

    // Opens the dialog by `open` and answers it; a null answer is Esc.
    template <class Open>
    TDialog Answer(const wchar_t* answer, Open open) {
        TDialog seen;
        const TUserScript actor(L"TInputBoxForm", [&](HWND dialog) {
            ++seen.shown;
            seen.title = Utf8TextOf(dialog);
            seen.prompt = Utf8TextOf(Component(dialog, "PromptLabel"));
            const HWND edit = Component(dialog, "ValueEdit");
            seen.initial = Utf8TextOf(edit);
            if (screenshots_) SaveScreenshot(dialog, "input-box");
            if (answer != nullptr) SetWindowTextW(edit, answer);
            ReleaseKeys();  // the user lets Ctrl go before typing
            PostMessageW(edit, WM_KEYDOWN, answer != nullptr ? VK_RETURN : VK_ESCAPE, 1);
        });
        open();
        RunLoopDry();
        return seen;
    }
    TDialog Search(const wchar_t* answer) {
        return Answer(answer, [&] { PressKey(session_.Control("aDBGrid"), 'F', true); });
    }
    std::string CurrentArticle() const {
        const TGridReader grid = session_.Grid();
        return grid.Cell(grid.FocusedRow(), 0);
    }
    void PressF3() const { PressKey(session_.Control("aDBGrid"), VK_F3); }

    TSession session_;
    bool screenshots_ = false;
};

}  // namespace

TEST_F(SearchTest, StartsWithTheArticleNumber) {
    EXPECT_EQ(Caption(), "Търси по: Арт.No: (F3)");
}

TEST_F(SearchTest, MenuCommandSelectsTheColumnByItsLabel) {
    Command(kSearchCommands + 1);
    EXPECT_EQ(Caption(), "Търси по: Ном.код (F3)");
    Command(kSearchCommands + 31);
    EXPECT_EQ(Caption(), "Търси по: Партида (самок.) (F3)");
}

TEST_F(SearchTest, MenuCommandBeyondTheColumnsDoesNothing) {
    Command(kSearchCommands + 32);
    EXPECT_EQ(Caption(), "Търси по: Арт.No: (F3)");
}

TEST_F(SearchTest, EnteringAColumnSelectsItForSearching) {
    session_.Grid().ClickRow(0, kNameColumn);
    EXPECT_EQ(Caption(), "Търси по: Име (F3)");
}

TEST_F(SearchTest, AClickBelowTheRowsEntersNoColumn) {
    session_.Grid().ClickRow(0, kNameColumn);
    RECT client{};
    GetClientRect(session_.Grid().Handle(), &client);
    const LPARAM at = MAKELPARAM(150, client.bottom - 5);
    PostMessageW(session_.Grid().Handle(), WM_LBUTTONUP, 0, at);
    SendMessageW(session_.Grid().Handle(), WM_LBUTTONDOWN, MK_LBUTTON, at);
    RunLoopDry();
    EXPECT_EQ(Caption(), "Търси по: Име (F3)");
}

TEST_F(SearchTest, ArrowKeysEnterTheNextColumn) {
    PressKey(session_.Control("aDBGrid"), VK_RIGHT);
    EXPECT_EQ(Caption(), "Търси по: Ном.код (F3)");
    PressKey(session_.Control("aDBGrid"), VK_LEFT);
    EXPECT_EQ(Caption(), "Търси по: Арт.No: (F3)");
}

TEST_F(SearchTest, DialogShowsTheButtonsCaptionAndAnEmptyValue) {
    SearchByName();
    screenshots_ = true;
    const TDialog dialog = Search(nullptr);
    EXPECT_EQ(dialog.shown, 1);
    EXPECT_EQ(dialog.title, "Търси по: Име (F3)");
    EXPECT_EQ(dialog.prompt, "Стойност");
    EXPECT_EQ(dialog.initial, "");
}

TEST_F(SearchTest, ButtonOpensTheDialogToo) {
    SearchByName();
    const TDialog dialog = Answer(L"Кашкавал", [&] { session_.Click("SearchButton"); });
    EXPECT_EQ(dialog.shown, 1);
    EXPECT_EQ(CurrentArticle(), "14");
    EXPECT_EQ(GetFocus(), session_.Control("aDBGrid"));
    SaveScreenshot(session_.host.Frame(), "list-searched");
}

TEST_F(SearchTest, FindsWithoutRegardToCase) {
    SearchByName();
    Search(L"ябълк");
    EXPECT_EQ(CurrentArticle(), "11");
}

TEST_F(SearchTest, F3FindsTheNextAndWrapsToTheFirst) {
    SearchByName();
    Search(L"ябълк");
    PressF3();
    EXPECT_EQ(CurrentArticle(), "15");
    PressF3();
    EXPECT_EQ(CurrentArticle(), "11");
}

TEST_F(SearchTest, F3WithoutASearchTextOpensTheDialog) {
    SearchByName();
    const TDialog dialog = Answer(L"круши", [&] { PressF3(); });
    EXPECT_EQ(dialog.shown, 1);
    EXPECT_EQ(CurrentArticle(), "12");
}

TEST_F(SearchTest, UnknownValueIsReported) {
    SearchByName();
    session_.Grid().ClickRow(1, kNameColumn);
    const TBoxAnswerer answerer;
    Search(L"няма такъв");
    ASSERT_EQ(answerer.Seen().size(), 1U);
    EXPECT_EQ(answerer.Seen()[0].text, "Не е намерен артикул.");
    EXPECT_EQ(answerer.Seen()[0].icon, TBoxIcon::Information);
    EXPECT_EQ(CurrentArticle(), "12");
}

TEST_F(SearchTest, F3WithoutAMatchIsSilent) {
    SearchByName();
    {
        const TBoxAnswerer answerer;
        Search(L"няма такъв");
    }
    const TBoxAnswerer answerer;
    PressF3();
    EXPECT_TRUE(answerer.Seen().empty());
    EXPECT_EQ(CurrentArticle(), "11");
}

TEST_F(SearchTest, BlanksClearTheSearchText) {
    SearchByName();
    Search(L"ябълк");
    const TBoxAnswerer answerer;
    Search(L"   ");
    EXPECT_TRUE(answerer.Seen().empty());
    EXPECT_EQ(CurrentArticle(), "11");
    const TDialog dialog = Answer(nullptr, [&] { PressF3(); });
    EXPECT_EQ(dialog.shown, 1);
}

TEST_F(SearchTest, SelectingAColumnClearsTheSearchText) {
    SearchByName();
    Search(L"ябълк");
    SearchByName();
    const TDialog dialog = Answer(nullptr, [&] { PressF3(); });
    EXPECT_EQ(dialog.shown, 1);
}

TEST_F(SearchTest, EnteringAColumnKeepsTheSearchText) {
    SearchByName();
    Search(L"ябълк");
    session_.Grid().ClickRow(0, 4);
    const TDialog dialog = Answer(nullptr, [&] { PressF3(); });
    EXPECT_EQ(dialog.shown, 0);
    EXPECT_EQ(CurrentArticle(), "15");
}

TEST_F(SearchTest, FoundRowLeavesTheMarksAlone) {
    SearchByName();
    session_.Grid().ClickRow(1, kNameColumn);
    Search(L"кашкавал");
    EXPECT_EQ(CurrentArticle(), "14");
    EXPECT_EQ(session_.Grid().SelectedRows(), std::vector<int>{1});
}

TEST_F(SearchTest, AnEmptyAnswerAndEscapeClearTheSearchText) {
    SearchByName();
    for (const wchar_t* answer : {L"", static_cast<const wchar_t*>(nullptr)}) {
        Search(L"ябълк");
        Search(answer);
        const TDialog dialog = Answer(nullptr, [&] { PressF3(); });
        EXPECT_EQ(dialog.shown, 1);
    }
}

TEST_F(SearchTest, ASecondStartSelectsTheFirstColumnAnewAndClearsTheSearchText) {
    SearchByName();
    Search(L"ябълк");
    session_.Start();
    EXPECT_EQ(Caption(), "Търси по: Арт.No: (F3)");
    const TDialog dialog = Answer(nullptr, [&] { PressF3(); });
    EXPECT_EQ(dialog.shown, 1);
}

TEST_F(SearchTest, OuterBlanksOfTheSearchTextCount) {
    SearchByName();
    Search(L" черв");
    EXPECT_EQ(CurrentArticle(), "11");
    const TBoxAnswerer answerer;
    Search(L"червени ");
    ASSERT_EQ(answerer.Seen().size(), 1U);
    EXPECT_EQ(answerer.Seen()[0].text, "Не е намерен артикул.");
}

// Shown as 15.50, and as "ДА" in both other columns.
TEST_F(SearchTest, SearchesWhatAFieldHoldsAndNotWhatItsCellShows) {
    struct TCase {
        int column;
        std::wstring held;
        std::wstring shown;
        const char* article;
    };
    const std::string number = Localised("15.5");
    const std::wstring price(number.begin(), number.end());
    const std::vector<TCase> cases = {{kPriceColumn, price, price + L"0", "14"},
                                      {kPromotionColumn, L"1", L"да", "14"},
                                      {kDisabledColumn, L"1", L"да", "13"}};
    for (const TCase& searched : cases) {
        session_.Grid().ClickRow(0, 0);
        Command(kSearchCommands + searched.column);
        const TBoxAnswerer boxes;
        Search(searched.held.c_str());
        EXPECT_EQ(CurrentArticle(), searched.article) << Caption();
        EXPECT_TRUE(boxes.Seen().empty()) << Caption();
        Search(searched.shown.c_str());
        EXPECT_EQ(boxes.Seen().size(), 1U) << Caption();
    }
}

TEST_F(SearchTest, AnotherModifierWithCtrlAndFOpensNothing) {
    const HWND grid = session_.Control("aDBGrid");
    const TUserScript actor(L"TInputBoxForm",
                            [](HWND dialog) { PostMessageW(dialog, WM_CLOSE, 0, 0); });
    PressKey(grid, 'F', true, true);
    {
        const THeldKey alt(VK_MENU);
        PressKey(grid, 'F', true);
    }
    EXPECT_FALSE(actor.IsDone());
    PressKey(grid, 'F', true);
    EXPECT_TRUE(actor.IsDone());
}

TEST_F(SearchTest, NothingOpensOverTheBoxThatNothingWasFound) {
    const std::vector<std::function<void()>> ways = {
        [this] { SendMessageW(session_.Control("SearchButton"), BM_CLICK, 0, 0); },
        [this] { PressKey(session_.Control("aDBGrid"), 'F', true); }};
    for (const std::function<void()>& ask : ways) {
        bool opened = false;
        TUserScript behind;
        behind.When([] { return ThreadWindow(kMessageBoxClass) != nullptr; }, ask);
        behind.When([] { return true; },
                    [&] {
                        const HWND input = ThreadWindow(L"TInputBoxForm");
                        opened = input != nullptr;
                        if (opened) PostMessageW(input, WM_CLOSE, 0, 0);
                        PostMessageW(ThreadWindow(kMessageBoxClass), WM_COMMAND, IDOK, 0);
                    });
        Search(L"няма такъв");
        EXPECT_TRUE(behind.IsDone());
        EXPECT_FALSE(opened);
    }
}

TEST(SearchInAnEmptyList, AsksAndFindsNothing) {
    TSession session("bare.fdb");
    session.Start();
    const TBoxAnswerer boxes;
    const TUserScript actor(L"TInputBoxForm", [](HWND dialog) {
        ReleaseKeys();
        SetWindowTextW(Component(dialog, "ValueEdit"), L"ябълк");
        PostMessageW(Component(dialog, "ValueEdit"), WM_KEYDOWN, VK_RETURN, 1);
    });
    PressKey(session.Control("aDBGrid"), 'F', true);
    EXPECT_TRUE(actor.IsDone());
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(boxes.Seen()[0].text, "Не е намерен артикул.");
}

}  // namespace tolvane::test
