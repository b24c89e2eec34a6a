#include <windows.h>

#include <commctrl.h>

#include <string>
#include <vector>

#include "ControlRecorder.h"
#include "DeafListener.h"
#include "RunWindowFixture.h"
#include "simulator/CodePages.h"
#include "tests/support/window/Screenshot.h"
#include "text/Cp1251.h"
#include "window/CheckList.h"

namespace tolvane::test {
namespace {

using RunWindowRun = TRunWindowTest;

// A scale of three articles; deleting everything takes few exchanges.
simulator::TScaleOptions SmallScale() {
    simulator::TScaleOptions options;
    options.scale.capacity = 3;
    return options;
}

// Clicks a button of the form directly, not through the message queue.
void ClickAtOnce(HWND form, HWND button) {
    SendMessageW(form, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(button), BN_CLICKED),
                 reinterpret_cast<LPARAM>(button));
}

// Clicks the button the first time that the control which it watches becomes enabled.
LRESULT CALLBACK ClickWhenEnabled(HWND control, UINT id, WPARAM wParam, LPARAM lParam, UINT_PTR key,
                                  DWORD_PTR button) {
    const LRESULT result = DefSubclassProc(control, id, wParam, lParam);
    if (id == WM_NCDESTROY || (id == WM_ENABLE && wParam != 0)) {
        RemoveWindowSubclass(control, &ClickWhenEnabled, key);
        if (id == WM_ENABLE) ClickAtOnce(GetParent(control), reinterpret_cast<HWND>(button));
    }
    return result;
}

TEST_F(RunWindowRun, AWriteRunShowsItsLogAndFillsTheScales) {
    scales_[2].Checked = true;
    ThenStart("SaveBtn");
    script_.When([] { return IsRunning(); }, [] { ExpectControls(true); });
    ThenClose();
    Show(2);
    std::vector<std::string> expected;
    for (const std::string number : {"1", "2"}) {
        for (const std::string& line :
             {std::string("Обработени 2 артикула."), std::string("Валидни са 2 артикула."),
              std::string("Ще бъдат записани само валидните артикули"), std::string(kLogSeparator),
              "Старт на запис във везна: Везна " + number,
              std::string("Осъществена връзка с устройството за комуникация"),
              std::string("   Везна EVL - Ver: 1.04; Max.PLU: 4000; Mode: 2"),
              std::string("   Брой записани артикули: 2"),
              "Успешно записани артикули във везна: Везна " + number, std::string()})
            expected.push_back(line);
    }
    expected.emplace_back(kLogSeparator);
    EXPECT_EQ(log_, Lines(expected));
    for (int slot = 1; slot <= 2; ++slot) {
        const simulator::TScaleState state = Scale(slot).State();
        EXPECT_EQ(state.articles.size(), 2U);
        EXPECT_EQ(state.articles.at(12).price, 1234);
        EXPECT_EQ(state.articles.at(12).Text(0, simulator::TCodeTable::Pc866), "Домати");
        EXPECT_FALSE(state.programming);
    }
}

TEST_F(RunWindowRun, AfterARunEveryControlIsEnabledAndBothLabelsAreEmpty) {
    ThenStart("SaveBtn");
    std::string connection;
    script_.When([] { return !TextOf("lblStatus").empty(); },
                 [&] { connection = TextOf("ReadPropLabel"); });
    script_.When([] { return LogEnds(); },
                 [] {
                     ExpectControls(false);
                     EXPECT_EQ(TextOf("ReadPropLabel"), "");
                     EXPECT_EQ(TextOf("lblStatus"), "");
                 });
    // The window is ready for another run.
    ThenStart("SaveBtn");
    script_.When([] { return IsRunning(); }, [] { ExpectControls(true); });
    ThenClose();
    Show(2);
    EXPECT_EQ(connection, "Хост: 127.0.0.1 Порт: " + std::to_string(scales_[1].TCPPort));
    EXPECT_EQ(Scale(1).State().articles.at(12).priceWrites, 2);
}

TEST_F(RunWindowRun, ABarAndItsTextShowHowFarTheRunHasCome) {
    ShortenPauses();
    SetArticles(ManyGoods(40));
    const auto visible = [](const char* name) { return IsWindowVisible(Part(name)) != 0; };
    script_.When([] { return IsAtRest(); },
                 [&] {
                     EXPECT_FALSE(visible("RunBar"));
                     EXPECT_FALSE(visible("lblRunCount"));
                     Click(Part("SaveBtn"));
                 });
    std::string text;
    LRESULT position = 0;
    LRESULT all = 0;
    bool shown = false;
    script_.When([this] { return PriceWrites(1) > 20; },
                 [&] {
                     text = TextOf("lblRunCount");
                     position = SendMessageW(Part("RunBar"), PBM_GETPOS, 0, 0);
                     all = SendMessageW(Part("RunBar"), PBM_GETRANGE, FALSE, 0);
                     shown = visible("RunBar") && visible("lblRunCount");
                     SaveScreenshot(Form(), "run-bar");
                 });
    script_.When([] { return LogEnds(); },
                 [&] {
                     EXPECT_FALSE(visible("RunBar"));
                     EXPECT_FALSE(visible("lblRunCount"));
                     PostKey(VK_ESCAPE);
                 });
    Show(2);
    EXPECT_TRUE(shown);
    EXPECT_EQ(all, 40);
    EXPECT_GT(position, 10);
    EXPECT_LE(position, 40);
    EXPECT_EQ(text.substr(0, text.find("\r\n")), std::to_string(position) + " от 40");
}

TEST_F(RunWindowRun, TheTextOfTheBarTellsTheTimeLeftWhenItIsKnown) {
    simulator::TFault slow;
    slow.kind = simulator::TFaultKind::Slow;
    slow.ms = std::chrono::milliseconds(150);
    Scale(1).SetFaults({{slow}});
    SetArticles(ManyGoods(40));
    ThenStart("SaveBtn");
    std::string text;
    script_.When([] { return TextOf("lblRunCount").find("\r\n") != std::string::npos; },
                 [&] {
                     text = TextOf("lblRunCount");
                     Click(Part("StopReadBtn"));
                 });
    script_.When([] { return LogEnds(); }, [] { PostKey(VK_ESCAPE); });
    Show(2);
    EXPECT_TRUE(text.substr(text.find("\r\n") + 2).starts_with("още ")) << text;
    EXPECT_TRUE(text.ends_with(" сек") || text.ends_with(" мин")) << text;
}

// The text goes where it has room, and lies over no other control.
TEST_F(RunWindowRun, TheTextOfTheBarHasRoomInEveryWidth) {
    const auto rectOf = [](const char* name) {
        RECT rect{};
        GetWindowRect(Part(name), &rect);
        return rect;
    };
    script_.When([] { return IsAtRest(); },
                 [&] {
                     for (const int width : {620, 660, 686, 1000}) {
                         SetWindowPos(Form(), nullptr, 0, 0, width, 500, SWP_NOZORDER | SWP_NOMOVE);
                         const RECT text = rectOf("lblRunCount");
                         EXPECT_GE(text.right - text.left, 104) << width;
                         for (HWND other = GetWindow(Form(), GW_CHILD); other != nullptr;
                              other = GetWindow(other, GW_HWNDNEXT)) {
                             if (other == Part("lblRunCount") || IsWindowVisible(other) == 0)
                                 continue;
                             RECT rect{};
                             GetWindowRect(other, &rect);
                             RECT both{};
                             EXPECT_EQ(IntersectRect(&both, &rect, &text), FALSE)
                                 << width << ComponentName(other);
                             const RECT bar = rectOf("RunBar");
                             EXPECT_TRUE(other == Part("RunBar") ||
                                         IntersectRect(&both, &rect, &bar) == FALSE)
                                 << width << ComponentName(other);
                         }
                     }
                     PostKey(VK_ESCAPE);
                 });
    Show(2);
}

TEST_F(RunWindowRun, ARunOfMarkedArticlesTakesTheMarkedOnes) {
    ShortenPauses();
    context_.marked = {1};
    context_.current = 0;
    ThenStart("SaveBtn");
    ThenClose();
    Show(1);
    EXPECT_EQ(Scale(1).State().articles.count(7), 1U);
    EXPECT_EQ(Scale(1).State().articles.count(12), 0U);
}

TEST_F(RunWindowRun, ARunOfMarkedArticlesTakesTheCurrentOneWhenNoneIsMarked) {
    ShortenPauses();
    context_.current = 1;
    ThenStart("SaveBtn");
    ThenClose();
    Show(1);
    EXPECT_EQ(Scale(1).State().articles.count(7), 1U);
    EXPECT_EQ(Scale(1).State().articles.count(12), 0U);
}

TEST_F(RunWindowRun, TheThirdKindDeletesTheMarkedArticlesUnderTheWriteTexts) {
    context_.marked = {1};
    ThenStart("SaveBtn");
    script_.When([] { return IsRunning(); }, [] { ExpectControls(true); });
    ThenClose();
    Show(3);
    EXPECT_EQ(log_, Lines({"Обработени 1 артикула.", "Валидни са 1 артикула.",
                           "Ще бъдат записани само валидните артикули", kLogSeparator,
                           "Старт на запис във везна: Везна 1",
                           "Осъществена връзка с устройството за комуникация",
                           "   - Ver: 1.04; Max.PLU: 4000; Mode:2",
                           "Успешно записани артикули във везна: Везна 1", "", kLogSeparator}));
    EXPECT_TRUE(Scale(1).State().articles.at(7).IsCleared());
    EXPECT_EQ(Scale(1).State().articles.size(), 1U);
}

TEST_F(RunWindowRun, TheChosenPriceAndNamesReachTheScale) {
    ShortenPauses();
    TArticle article = Goods(12, "Домати"_cp1251);
    article.ecrName = "Cash";
    article.wholesale = 9.99;
    SetArticles({article});
    script_.When([] { return IsAtRest(); },
                 [] {
                     SendMessageW(Part("PriceRadio1"), BM_CLICK, 0, 0);
                     SendMessageW(Part("cbPluName1"), CB_SETCURSEL, 0, 0);
                     SendMessageW(Part("cbPluName2"), CB_SETCURSEL, 3, 0);
                 });
    ThenStart("SaveBtn");
    ThenClose();
    Show(2);
    const simulator::TArticle stored = Scale(1).State().articles.at(12);
    EXPECT_EQ(stored.price, 999);
    EXPECT_EQ(stored.Text(0, simulator::TCodeTable::Pc866), "Cash");
    EXPECT_EQ(stored.Text(1, simulator::TCodeTable::Pc866), "12");
}

TEST_F(RunWindowRun, EnterAnswersTheQuestionOfDeletingEverythingWithNo) {
    ThenStart("DeleteBtn");
    script_.When([] { return Box() != nullptr && IsChild(Box(), GetFocus()) != 0; },
                 [] {
                     EXPECT_EQ(GetFocus(), GetDlgItem(Box(), IDNO));
                     PostKey(VK_RETURN);
                 });
    script_.When([] { return Box() == nullptr && IsAtRest(); },
                 [this] {
                     log_ = Log();
                     PostKey(VK_ESCAPE);
                 });
    Show(4);
    EXPECT_EQ(log_, "");
    EXPECT_TRUE(Scale(1).Requests().empty());
}

TEST_F(RunWindowRun, DeletingEverythingIsAskedFirst) {
    ThenStart("DeleteBtn");
    ThenAnswer(IDNO);
    script_.When([] { return Box() == nullptr && IsAtRest(); },
                 [] {
                     EXPECT_EQ(Log(), "");
                     PostKey(VK_ESCAPE);
                 });
    Show(3);
    EXPECT_EQ(box_.text,
              "Тази процедура води до изтриване на всички\r\nартикули в избраните везни.\r\n"
              "Желаете ли да продължите?");
    EXPECT_EQ(box_.caption, "Внимание");
    EXPECT_EQ(box_.icon, TBoxIcon::Warning);
    EXPECT_TRUE(Scale(1).Requests().empty());
}

TEST_F(RunWindowRun, DeletingEverythingSucceedsAndLeavesTheChoicesAlone) {
    ReplaceScale(1, SmallScale());
    ThenStart("DeleteBtn");
    ThenAnswer(IDYES);
    script_.When([] { return IsRunning(); },
                 [] {
                     for (const char* name : {"SaveBtn", "DeleteBtn", "OkBtn", "ScaleList"})
                         EXPECT_FALSE(IsEnabled(name)) << name;
                     for (const char* name :
                          {"PriceRadio", "PriceRadio0", "PriceRadio1", "cbPluName1", "cbPluName2"})
                         EXPECT_TRUE(IsEnabled(name)) << name;
                 });
    script_.When([] { return LogEnds(); },
                 [this] {
                     ExpectControls(false);
                     EXPECT_EQ(TextOf("ReadPropLabel"), "");
                     EXPECT_EQ(TextOf("lblStatus"), "");
                     log_ = Log();
                     PostKey(VK_ESCAPE);
                 });
    Show(2);
    EXPECT_EQ(log_, Lines({kLogSeparator, "Старт на запис във везна: Везна 1",
                           "Осъществена връзка с устройството за комуникация",
                           "   - Ver: 1.04; Max.PLU: 3; Mode:2",
                           "Успешно изтрити артикули от везна: Везна 1", kLogSeparator}));
    const simulator::TScaleState state = Scale(1).State();
    ASSERT_EQ(state.articles.size(), 3U);
    for (const auto& [number, article] : state.articles)
        EXPECT_TRUE(article.IsCleared()) << number;
}

TEST_F(RunWindowRun, DeletingEverythingDisablesTheControlsOnlyWhenAScaleIsConnected) {
    const TDeafListener deaf;
    scales_[1].TCPPort = deaf.Port();
    scales_[2].Checked = true;
    ReplaceScale(2, SmallScale());
    ThenStart("DeleteBtn");
    ThenAnswer(IDYES);
    script_.When([] { return TextOf("ReadPropLabel") != ""; }, [] { ExpectControls(false); });
    script_.When([] { return IsRunning(); },
                 [] {
                     EXPECT_TRUE(LogHas("Старт на запис във везна: Везна 2"));
                     EXPECT_FALSE(IsEnabled("OkBtn"));
                 });
    ThenClose();
    Show(4);
    EXPECT_NE(log_.find("Грешка при изтриване артикули от везна: Везна 1\r\n"), std::string::npos)
        << log_;
    EXPECT_NE(log_.find("Успешно изтрити артикули от везна: Везна 2\r\n"), std::string::npos)
        << log_;
}

TEST_F(RunWindowRun, ASecondClickStartsNoSecondRun) {
    script_.When([] { return IsAtRest(); },
                 [] {
                     Click(Part("SaveBtn"));
                     Click(Part("SaveBtn"));
                     Click(Part("DeleteBtn"));
                 });
    script_.When([] { return IsRunning(); },
                 [] {
                     // Presses the disabled buttons, as only a program can.
                     for (const char* name : {"SaveBtn", "DeleteBtn"})
                         ClickAtOnce(Form(), Part(name));
                     EXPECT_EQ(Box(), nullptr);
                 });
    ThenClose();
    Show(2);
    const simulator::TScaleState state = Scale(1).State();
    EXPECT_EQ(state.articles.at(12).priceWrites, 1);
    EXPECT_EQ(state.requests.byCommand.at(simulator::kSetPrgMode), 1);
}

// The first run's thread may still exist. The click counts all the same, and the end of that thread
// is not taken for the end of the second run.
TEST_F(RunWindowRun, AClickAsSoonAsTheButtonsAreBackStartsTheNextRun) {
    constexpr int kArticles = 20;
    SetArticles(ManyGoods(kArticles));
    script_.When([] { return IsAtRest(); },
                 [] {
                     SetWindowSubclass(Part("ScaleList"), &ClickWhenEnabled, 0,
                                       reinterpret_cast<DWORD_PTR>(Part("SaveBtn")));
                     Click(Part("SaveBtn"));
                 });
    script_.When([this] { return PriceWrites(1) > kArticles; },
                 [] {
                     EXPECT_TRUE(IsRunning());
                     ClickAtOnce(Form(), Part("SaveBtn"));
                 });
    ThenClose();
    Show(2);
    EXPECT_EQ(PriceWrites(1), 2 * kArticles);
}

TEST_F(RunWindowRun, AfterARunThatBeganWithoutTheFocusTheKeyboardWorks) {
    ShortenPauses();
    script_.When([] { return IsAtRest(); },
                 [] {
                     SetFocus(nullptr);
                     ClickAtOnce(Form(), Part("SaveBtn"));
                 });
    HWND focus = nullptr;
    script_.When([] { return LogEnds(); },
                 [&] {
                     focus = GetFocus();
                     EXPECT_EQ(focus, Part("OkBtn"));
                     PostKey(VK_ESCAPE);
                 });
    Show(2);
    EXPECT_NE(focus, nullptr);
}

TEST_F(RunWindowRun, NoRunStartsWhileADeleteRunMakesItsFirstConnection) {
    const TDeafListener deaf;
    scales_[1].TCPPort = deaf.Port();
    scales_[2].Checked = true;
    ReplaceScale(2, SmallScale());
    ThenStart("DeleteBtn");
    ThenAnswer(IDYES);
    script_.When([] { return TextOf("ReadPropLabel") != ""; },
                 [] {
                     Click(Part("SaveBtn"));
                     Click(Part("DeleteBtn"));
                 });
    ThenClose();
    Show(2);
    EXPECT_EQ(log_.find("Обработени"), std::string::npos) << log_;
    EXPECT_EQ(Scale(2).State().requests.byCommand.at(simulator::kSetPrgMode), 1);
}

TEST_F(RunWindowRun, AnErrorWhileLinesAreBuiltIsShownAndEscStillCloses) {
    TArticle article = Goods(1, "A");
    article.bestBefore = "x";
    SetArticles({article});
    ThenStart("SaveBtn");
    ThenAnswer(IDOK);
    script_.When([] { return Box() == nullptr; },
                 [] {
                     ExpectControls(true);
                     PostKey(VK_ESCAPE);
                 });
    Show(2);
    EXPECT_EQ(box_.text,
              "Артикул \"A\": стойността \"x\" на поле LABEL_BESTBEFORE не е цяло число.");
    EXPECT_EQ(box_.icon, TBoxIcon::Error);
}

TEST_F(RunWindowRun, TheCloseBoxClosesAfterAnErrorWhileLinesAreBuilt) {
    TArticle article = Goods(1, "A");
    article.onlyWhole = "x";
    SetArticles({article});
    ThenStart("SaveBtn");
    ThenAnswer(IDOK);
    script_.When([] { return Box() == nullptr; },
                 [] { PostMessageW(Form(), WM_SYSCOMMAND, SC_CLOSE, 0); });
    Show(2);
    EXPECT_EQ(Form(), nullptr);
    EXPECT_TRUE(IsWindowEnabled(frame_) != 0);
}

TEST_F(RunWindowRun, LinesLabelsAndControlsChangeInTheOrderOfTheRun) {
    ShortenPauses();
    SetArticles({Goods(12, "Домати"_cp1251)});
    TControlRecorder recorder;
    script_.When([] { return IsAtRest(); },
                 [&] {
                     for (const char* name : {"StatusMemo", "ReadPropLabel", "lblStatus", "OkBtn",
                                              "StopReadBtn", "cbPluName1"})
                         recorder.Watch(Part(name), name);
                     Click(Part("SaveBtn"));
                 });
    std::vector<std::string> events;
    script_.When([] { return LogEnds(); },
                 [&] {
                     events = recorder.events;
                     PostKey(VK_ESCAPE);
                 });
    Show(2);
    EXPECT_EQ(events,
              (std::vector<std::string>{
                  "StatusMemo:",
                  "cbPluName1 off",
                  "StopReadBtn on",
                  "OkBtn off",
                  "StatusMemo>Обработени 1 артикула.",
                  "StatusMemo>Валидни са 1 артикула.",
                  "StatusMemo>Ще бъдат записани само валидните артикули",
                  "StatusMemo>-----------------------------------------",
                  "StatusMemo>Старт на запис във везна: Везна 1",
                  "ReadPropLabel:Хост: 127.0.0.1 Порт: " + std::to_string(scales_[1].TCPPort),
                  "StatusMemo>Осъществена връзка с устройството за комуникация",
                  "StatusMemo>   Везна EVL - Ver: 1.04; Max.PLU: 4000; Mode: 2",
                  "lblStatus:Запис артикул: 12 Домати",
                  "StatusMemo>   Брой записани артикули: 1",
                  "StatusMemo>Успешно записани артикули във везна: Везна 1",
                  "StatusMemo>",
                  "ReadPropLabel:",
                  "lblStatus:",
                  "StatusMemo>-----------------------------------------",
                  "cbPluName1 on",
                  "StopReadBtn off",
                  "OkBtn on",
              }));
}

TEST_F(RunWindowRun, ClosingDuringARunWritesNoTextOfItsOwn) {
    SetArticles(ManyGoods(50));
    TControlRecorder recorder;
    script_.When([] { return IsAtRest(); },
                 [&] {
                     recorder.Watch(Part("lblStatus"), "lblStatus");
                     Click(Part("SaveBtn"));
                 });
    script_.When([] { return TextOf("lblStatus") != ""; }, [] { PostKey(VK_ESCAPE); });
    Show(2);
    for (std::size_t i = 0; i + 1 < recorder.events.size(); ++i)
        EXPECT_EQ(recorder.events[i], "lblStatus:Запис артикул: " + std::to_string(i + 1) + " A");
    ASSERT_FALSE(recorder.events.empty());
    EXPECT_EQ(recorder.events.back(), "lblStatus:");
}

}  // namespace
}  // namespace tolvane::test
