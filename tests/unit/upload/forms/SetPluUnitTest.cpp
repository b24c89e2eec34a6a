#include "upload/forms/SetPluUnit.h"

#include <gtest/gtest.h>
#include <tlhelp32.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "../UploadFixture.h"
#include "WindowScript.h"
#include "simulator/VirtualScale.h"
#include "text/Cp1251.h"
#include "window/CheckList.h"
#include "window/WideText.h"
#include "window/Window.h"

namespace tolvane {
namespace {

using simulator::TFault;
using simulator::TFaultKind;
using simulator::TVirtualScale;
using test::Click;
using test::TArticle;
using test::ThreadWindow;
using test::TWindowScript;
using test::Utf8Text;

constexpr const char* kLine = "-----------------------------------------";

std::string Lines(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines)
        text += line + "\r\n";
    return text;
}

int ThreadCount() {
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    int count = 0;
    for (BOOL more = Thread32First(snapshot, &entry); more != 0;
         more = Thread32Next(snapshot, &entry))
        count += entry.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
    CloseHandle(snapshot);
    return count;
}

TArticle Article(std::int32_t number, std::string_view name) {
    TArticle article;
    article.number = number;
    article.scaleNumber = number;
    article.name = name;
    article.labelName = "B";
    return article;
}

// The list window's stand-in: a child of a main window, as an MDI child is one.
class SetPluUnitTest : public ::testing::Test {
protected:
    SetPluUnitTest() {
        frame_ = CreateWindowExW(0, L"STATIC", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 900,
                                 700, nullptr, nullptr, nullptr, nullptr);
        owner_ = CreateWindowExW(0, L"STATIC", L"List", WS_CHILD | WS_VISIBLE, 0, 0, 500, 400,
                                 frame_, nullptr, nullptr, nullptr);
        context_.scales = &scales_;
        wchar_t folder[MAX_PATH] = {};
        GetTempPathW(MAX_PATH, folder);
        context_.iniFile = std::filesystem::path(folder) / "tolvane-run-window-test.ini";
        std::filesystem::remove(context_.iniFile);
        SetArticles({Article(12, "Домати"_cp1251), Article(7, "Яйца"_cp1251)});
        for (TVirtualScale& scale : virtualScales_)
            scale.Start();
        for (int slot = 1; slot <= 2; ++slot) {
            TScaleRec& rec = scales_[slot];
            rec.ScaleNumb = slot;
            rec.ScaleName = "Везна "_cp1251;
            rec.ScaleName = rec.ScaleName.Str() + std::to_string(slot);
            rec.TCPAddress = "127.0.0.1";
            rec.TCPPort = virtualScales_[slot - 1].Port();
            rec.CommType = kCommTcp;
            rec.ScaleType = kScaleTypeEvl;
            rec.Encoding = 2;
        }
        scales_[1].Checked = true;
    }
    ~SetPluUnitTest() override {
        if (IsWindow(frame_) != 0) DestroyWindow(frame_);
        std::filesystem::remove(context_.iniFile);
    }

    void SetArticles(const std::vector<TArticle>& articles) {
        context_.articles = test::TableOf(articles);
    }
    static HWND Form() { return ThreadWindow(kSetPluFormClass); }
    static HWND Part(const char* name) {
        const HWND form = Form();
        return form == nullptr ? nullptr : FindComponent(form, name);
    }
    static bool IsEnabled(const char* name) { return IsWindowEnabled(Part(name)) != 0; }
    static bool IsAtRest() { return Form() != nullptr && IsEnabled("OkBtn"); }
    static bool IsRunning() { return Form() != nullptr && IsEnabled("StopReadBtn"); }
    static std::string Log() { return Utf8Text(Part("StatusMemo")); }
    static bool LogEnds() {
        if (!IsAtRest()) return false;
        const std::string log = Log();
        const std::string end = std::string(kLine) + "\r\n";
        return log.size() > end.size() && log.substr(log.size() - end.size()) == end;
    }
    void ThenClose() {
        script_.When([] { return LogEnds(); },
                     [this] {
                         log_ = Log();
                         test::PressKey(VK_ESCAPE);
                     });
    }
    void Show(int runNumber) {
        ShowRunWindow(owner_, runNumber, context_);
        EXPECT_TRUE(script_.IsDone());
    }
    std::string Ini() const {
        std::ifstream file(context_.iniFile, std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }

    HWND frame_ = nullptr;
    HWND owner_ = nullptr;
    TScaleTable scales_;
    TRunContext context_;
    TVirtualScale virtualScales_[2];
    TWindowScript script_;
    std::string log_;
};

TEST_F(SetPluUnitTest, TheWindowShowsItsKindAndTheUsableScales) {
    scales_[5] = scales_[2];
    scales_[5].TCPPort = 0;
    script_.When(
        [] { return IsAtRest(); },
        [] {
            EXPECT_EQ(Utf8Text(Form()), "Запис на избраните артикули във везните");
            EXPECT_EQ(ComponentName(Form()), "SetPluForm");
            EXPECT_EQ(Utf8Text(Part("SaveBtn")), "Запис");
            EXPECT_EQ(Utf8Text(Part("DeleteBtn")), "Изтриване на всички артикули");
            EXPECT_EQ(Utf8Text(Part("OkBtn")), "Затвори");
            EXPECT_EQ(Utf8Text(Part("StopReadBtn")), "Прекъсни");
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
            EXPECT_EQ(SendMessageW(Part("cbPluName1"), CB_GETCURSEL, 0, 0), 1);
            EXPECT_EQ(SendMessageW(Part("cbPluName2"), CB_GETCURSEL, 0, 0), 2);
            EXPECT_EQ(SendMessageW(Part("PriceRadio0"), BM_GETCHECK, 0, 0), BST_CHECKED);
            EXPECT_FALSE(IsWindowEnabled(GetWindow(Form(), GW_OWNER)) != 0);
            Click(Part("OkBtn"));
        });
    Show(1);
    EXPECT_TRUE(IsWindowEnabled(frame_) != 0);
}

TEST_F(SetPluUnitTest, DeletingAllArticlesHasNoSaveButton) {
    script_.When([] { return IsAtRest(); },
                 [] {
                     EXPECT_EQ(Utf8Text(Form()), "Изтриване на всички артикули от везните");
                     EXPECT_FALSE(IsWindowVisible(Part("SaveBtn")) != 0);
                     Click(Part("OkBtn"));
                 });
    Show(4);
}

TEST_F(SetPluUnitTest, WithoutArticlesNoWindowComes) {
    SetArticles({});
    Show(1);
    EXPECT_EQ(Form(), nullptr);
}

TEST_F(SetPluUnitTest, AWriteRunShowsItsLogAndFillsTheScale) {
    scales_[2].Checked = true;
    script_.When([] { return IsAtRest(); }, [] { Click(Part("SaveBtn")); });
    script_.When(
        [] { return IsRunning(); },
        [] {
            for (const char* name : {"SaveBtn", "DeleteBtn", "OkBtn", "ScaleList", "PriceRadio",
                                     "PriceRadio0", "PriceRadio1", "cbPluName1", "cbPluName2"})
                EXPECT_FALSE(IsEnabled(name)) << name;
        });
    ThenClose();
    Show(2);
    std::vector<std::string> expected;
    for (const std::string number : {"1", "2"}) {
        for (const std::string& line :
             {std::string("Обработени 2 артикула."), std::string("Валидни са 2 артикула."),
              std::string("Ще бъдат записани само валидните артикули"), std::string(kLine),
              "Старт на запис във везна: Везна " + number,
              std::string("Осъществена връзка с устройството за комуникация"),
              "   Везна EVL - Ver: " + virtualScales_[0].State().scale.version + "; Max.PLU: " +
                  std::to_string(virtualScales_[0].State().scale.capacity) + "; Mode: 2",
              std::string("   Брой записани артикули: 2"),
              "Успешно записани артикули във везна: Везна " + number, std::string()})
            expected.push_back(line);
    }
    expected.emplace_back(kLine);
    EXPECT_EQ(log_, Lines(expected));
    for (const TVirtualScale& scale : virtualScales_) {
        const auto state = scale.State();
        EXPECT_EQ(state.articles.size(), 2U);
        EXPECT_EQ(state.articles.at(12).price, 1234);
        EXPECT_EQ(state.articles.at(12).Text(0, simulator::TCodeTable::Pc866).substr(0, 12),
                  "Домати");
        EXPECT_FALSE(state.programming);
    }
}

TEST_F(SetPluUnitTest, ARunOfMarkedArticlesTakesTheMarkedOrTheCurrentOne) {
    context_.current = 1;
    script_.When([] { return IsAtRest(); }, [] { Click(Part("SaveBtn")); });
    ThenClose();
    Show(1);
    EXPECT_EQ(virtualScales_[0].State().articles.count(7), 1U);
    EXPECT_EQ(virtualScales_[0].State().articles.count(12), 0U);
}

TEST_F(SetPluUnitTest, StopEndsTheRunWithItsText) {
    script_.When([] { return IsAtRest(); }, [] { Click(Part("SaveBtn")); });
    script_.When([] { return IsRunning(); }, [] { Click(Part("StopReadBtn")); });
    ThenClose();
    Show(2);
    EXPECT_NE(log_.find("Fail! Plu: 0 \"\" Операцията прекратена от петребителя.\r\n"
                        "Грешка при запис артикули във везна: Везна 1\r\n"),
              std::string::npos)
        << log_;
    EXPECT_TRUE(virtualScales_[0].State().articles.empty());
}

TEST_F(SetPluUnitTest, DeletingEverythingIsAskedFirst) {
    std::string question;
    script_.When([] { return IsAtRest(); }, [] { Click(Part("DeleteBtn")); });
    script_.When([] { return ThreadWindow(L"#32770") != nullptr; },
                 [&] {
                     const HWND box = ThreadWindow(L"#32770");
                     question = Utf8Text(GetDlgItem(box, 0xFFFF));
                     Click(GetDlgItem(box, IDNO));
                 });
    script_.When([] { return ThreadWindow(L"#32770") == nullptr && IsAtRest(); },
                 [] {
                     EXPECT_EQ(Log(), "");
                     test::PressKey(VK_ESCAPE);
                 });
    Show(3);
    EXPECT_EQ(question,
              "Тази процедура води до изтриване на всички\r\nартикули в избраните везни.\r\n"
              "Желаете ли да продължите?");
    EXPECT_TRUE(virtualScales_[0].Requests().empty());
}

TEST_F(SetPluUnitTest, DeletingEverythingIsStoppedByTheButton) {
    script_.When([] { return IsAtRest(); }, [] { Click(Part("DeleteBtn")); });
    script_.When([] { return ThreadWindow(L"#32770") != nullptr; },
                 [] { Click(GetDlgItem(ThreadWindow(L"#32770"), IDYES)); });
    script_.When(
        [] { return IsRunning() && Utf8Text(Part("lblStatus")).find('#') != std::string::npos; },
        [] { Click(Part("StopReadBtn")); });
    ThenClose();
    Show(4);
    EXPECT_NE(log_.find("Операцията прекратена от потребителя.\r\n"
                        "Грешка при изтриване артикули от везна: Везна 1\r\n"),
              std::string::npos)
        << log_;
    EXPECT_TRUE(virtualScales_[0].State().programming);
}

TEST_F(SetPluUnitTest, EscDuringARunEndsItAndThenClosesTheWindow) {
    const int threads = ThreadCount();
    virtualScales_[0].SetFaults({{TFault{.kind = TFaultKind::Silent}}});
    script_.When([] { return IsAtRest(); }, [] { Click(Part("SaveBtn")); });
    script_.When([] { return IsRunning(); }, [] { test::PressKey(VK_ESCAPE); });
    Show(2);
    EXPECT_EQ(Form(), nullptr);
    EXPECT_EQ(ThreadCount(), threads);
    EXPECT_TRUE(IsWindowEnabled(frame_) != 0);
    EXPECT_TRUE(scales_[1].Checked);
}

TEST_F(SetPluUnitTest, TheListWindowMayGoDuringARun) {
    const int threads = ThreadCount();
    script_.When([] { return IsAtRest(); }, [] { Click(Part("SaveBtn")); });
    script_.When([] { return IsRunning(); }, [this] { DestroyWindow(owner_); });
    Show(2);
    EXPECT_EQ(Form(), nullptr);
    EXPECT_EQ(ThreadCount(), threads);
    EXPECT_TRUE(IsWindowEnabled(frame_) != 0);
}

TEST_F(SetPluUnitTest, TheMainWindowMayGoDuringARun) {
    const int threads = ThreadCount();
    script_.When([] { return IsAtRest(); }, [] { Click(Part("SaveBtn")); });
    script_.When([] { return IsRunning(); }, [this] { DestroyWindow(frame_); });
    Show(2);
    EXPECT_EQ(ThreadCount(), threads);
}

TEST_F(SetPluUnitTest, TheProgramMayEndDuringARun) {
    const int threads = ThreadCount();
    script_.When([] { return IsAtRest(); }, [] { Click(Part("SaveBtn")); });
    script_.When([] { return IsRunning(); }, [] { PostQuitMessage(5); });
    Show(2);
    EXPECT_EQ(ThreadCount(), threads);
    MSG message{};
    EXPECT_NE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE), 0);
    EXPECT_EQ(message.wParam, 5U);
}

TEST_F(SetPluUnitTest, CheckMarksAndChoicesAreKept) {
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

TEST_F(SetPluUnitTest, ASettingsFileThatCannotBeWrittenIsToldAfterTheCheckMarksAreBack) {
    context_.iniFile = context_.iniFile / "no folder" / "x.ini";
    script_.When([] { return IsAtRest(); },
                 [] {
                     TCheckList(Part("ScaleList")).SetChecked(1, true);
                     Click(Part("OkBtn"));
                 });
    EXPECT_THROW(ShowRunWindow(owner_, 1, context_), std::runtime_error);
    EXPECT_TRUE(scales_[2].Checked);
}

TEST_F(SetPluUnitTest, AnErrorWhileLinesAreBuiltIsShownAndEscStillCloses) {
    TArticle article = Article(1, "A");
    article.bestBefore = "x";
    SetArticles({article});
    script_.When([] { return IsAtRest(); }, [] { Click(Part("SaveBtn")); });
    script_.When([] { return ThreadWindow(L"#32770") != nullptr; },
                 [] {
                     const HWND box = ThreadWindow(L"#32770");
                     EXPECT_NE(Utf8Text(GetDlgItem(box, 0xFFFF)).find("LABEL_BESTBEFORE"),
                               std::string::npos);
                     Click(GetDlgItem(box, IDOK));
                 });
    script_.When([] { return ThreadWindow(L"#32770") == nullptr; },
                 [] {
                     EXPECT_TRUE(IsEnabled("StopReadBtn"));
                     EXPECT_FALSE(IsEnabled("SaveBtn"));
                     test::PressKey(VK_ESCAPE);
                 });
    Show(2);
}

TEST_F(SetPluUnitTest, TwentyThousandLogLinesComeWhileTheWindowStaysAlive) {
    TArticle bad = Article(1, "A");
    bad.barcode = "";
    SetArticles(std::vector<TArticle>(10000, bad));
    script_.When([] { return IsAtRest(); }, [] { Click(Part("SaveBtn")); });
    LRESULT lines = 0;
    LRESULT firstVisible = 0;
    script_.When([] { return LogEnds(); },
                 [&] {
                     lines = SendMessageW(Part("StatusMemo"), EM_GETLINECOUNT, 0, 0);
                     firstVisible = SendMessageW(Part("StatusMemo"), EM_GETFIRSTVISIBLELINE, 0, 0);
                     SetFocus(Part("StatusMemo"));
                     test::PressKey(VK_ESCAPE);
                 });
    Show(2);
    // two per article, ten for the scale and its summary, one closing line, one empty after it
    EXPECT_EQ(lines, 20000 + 10 + 1 + 1);
    EXPECT_GT(firstVisible, 19900);
    std::printf("longest busy: %u ms\n", static_cast<unsigned>(script_.LongestBusy()));
    EXPECT_LT(script_.LongestBusy(), 500U);
}

TEST_F(SetPluUnitTest, CtrlASelectsTheWholeLog) {
    scales_[1].Checked = false;
    script_.When([] { return IsAtRest(); }, [] { Click(Part("SaveBtn")); });
    DWORD from = 1;
    DWORD to = 0;
    int length = 0;
    script_.When([] { return LogEnds(); },
                 [&] {
                     SetFocus(Part("StatusMemo"));
                     BYTE keys[256] = {};
                     GetKeyboardState(keys);
                     keys[VK_CONTROL] = 0x80;
                     SetKeyboardState(keys);
                     test::PressKey('A');
                 });
    script_.When([] { return true; },
                 [&] {
                     SendMessageW(Part("StatusMemo"), EM_GETSEL, reinterpret_cast<WPARAM>(&from),
                                  reinterpret_cast<LPARAM>(&to));
                     length = GetWindowTextLengthW(Part("StatusMemo"));
                     BYTE keys[256] = {};
                     SetKeyboardState(keys);
                     test::PressKey(VK_ESCAPE);
                 });
    Show(2);
    EXPECT_EQ(from, 0U);
    EXPECT_EQ(to, static_cast<DWORD>(length));
    EXPECT_GT(length, 0);
}

}  // namespace
}  // namespace tolvane
