#include <cstdio>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "RunWindowFixture.h"
#include "text/Cp1251.h"
#include "window/WideText.h"

namespace tolvane::test {
namespace {

using RunWindowLog = TRunWindowTest;

LRESULT AskLog(UINT message) {
    return SendMessageW(FindComponent(ThreadWindow(kSetPluFormClass), "StatusMemo"), message, 0, 0);
}

TEST_F(RunWindowLog, TwentyThousandLinesComeWhileTheWindowStaysAlive) {
    TArticle bad = Goods(1, "A");
    bad.barcode = "";
    SetArticles(std::vector<TArticle>(10000, bad));
    ThenStart("SaveBtn");
    std::set<LRESULT> seen;
    int turns = 0;
    DWORD gap = 0;
    script_.When(
        [&] {
            const LRESULT lines = AskLog(EM_GETLINECOUNT);
            seen.insert(lines);
            return lines > 20000;
        },
        [&] {
            turns = script_.Turns();
            gap = script_.LongestGap();
        });
    LRESULT lines = 0;
    LRESULT firstVisible = 0;
    script_.When([] { return LogEnds(); },
                 [&] {
                     lines = AskLog(EM_GETLINECOUNT);
                     firstVisible = AskLog(EM_GETFIRSTVISIBLELINE);
                     PostKey(VK_ESCAPE);
                 });
    Show(2);
    // Two per article, ten for the scale and its summary, one closing line, one empty after it.
    EXPECT_EQ(lines, 20000 + 10 + 1 + 1);
    // Scrolled to its end.
    EXPECT_GT(firstVisible, 19900);
    std::printf("20,000 lines: %d turns of the message loop, %u stages, longest gap %u ms\n", turns,
                static_cast<unsigned>(seen.size()), static_cast<unsigned>(gap));
    // On a busy computer the turns are few; an interface thread that waits for the run makes none.
    EXPECT_GE(turns, 10);
    EXPECT_GE(seen.size(), 20U);
}

TEST_F(RunWindowLog, WhatTheUserHasSelectedStaysSelectedWhileLinesCome) {
    SetArticles(ManyGoods(20));
    scales_[2].Checked = true;
    ThenStart("SaveBtn");
    LRESULT firstVisible = -1;
    script_.When([] { return IsRunning() && AskLog(EM_GETLINECOUNT) > 2; },
                 [&] {
                     SendMessageW(Part("StatusMemo"), EM_SETSEL, 0, 7);
                     SendMessageW(Part("StatusMemo"), EM_SCROLLCARET, 0, 0);
                 });
    DWORD from = 1;
    DWORD to = 1;
    script_.When([] { return LogEnds(); },
                 [&] {
                     log_ = Log();
                     firstVisible = AskLog(EM_GETFIRSTVISIBLELINE);
                     SendMessageW(Part("StatusMemo"), EM_GETSEL, reinterpret_cast<WPARAM>(&from),
                                  reinterpret_cast<LPARAM>(&to));
                     PostKey(VK_ESCAPE);
                 });
    Show(2);
    EXPECT_EQ(from, 0U);
    EXPECT_EQ(to, 7U);
    EXPECT_EQ(firstVisible, 0);
    EXPECT_NE(log_.find("Успешно записани артикули във везна: Везна 2\r\n"), std::string::npos)
        << log_;
}

class RunWindowClipboard : public TRunWindowTest {
protected:
    // A run without a checked scale leaves two lines.
    RunWindowClipboard() { scales_[1].Checked = false; }
    static std::string Clipboard() {
        std::string text;
        if (OpenClipboard(nullptr) == 0) return "the clipboard does not open";
        if (const HANDLE data = GetClipboardData(CF_UNICODETEXT)) {
            text = ToUtf8(Narrow(static_cast<const wchar_t*>(GlobalLock(data))));
            GlobalUnlock(data);
        }
        CloseClipboard();
        return text;
    }
    static void EmptyTheClipboard() {
        OpenClipboard(ThreadWindow(kSetPluFormClass));
        EmptyClipboard();
        CloseClipboard();
    }
    static bool IsAllSelected() {
        DWORD from = 1;
        DWORD to = 0;
        SendMessageW(Part("StatusMemo"), EM_GETSEL, reinterpret_cast<WPARAM>(&from),
                     reinterpret_cast<LPARAM>(&to));
        const int length = GetWindowTextLengthW(Part("StatusMemo"));
        return length > 0 && from == 0 && to == static_cast<DWORD>(length);
    }
};

TEST_F(RunWindowClipboard, CtrlASelectsAndCtrlCCopiesTheWholeLog) {
    ThenStart("SaveBtn");
    std::unique_ptr<THeldKey> ctrl;
    script_.When([] { return LogEnds(); },
                 [&] {
                     EmptyTheClipboard();
                     SetFocus(Part("StatusMemo"));
                     ctrl = std::make_unique<THeldKey>(VK_CONTROL);
                     PostKey('A');
                 });
    script_.When([] { return IsAllSelected(); }, [] { PostKey('C'); });
    std::string copied;
    script_.When([&] { return !(copied = Clipboard()).empty(); },
                 [&] {
                     ctrl.reset();
                     PostKey(VK_ESCAPE);
                 });
    Show(2);
    EXPECT_EQ(copied, Lines({"Не е избрана нито една везна.", kLogSeparator}));
}

TEST_F(RunWindowClipboard, APartOfTheLogCanBeSelectedAndCopied) {
    ThenStart("SaveBtn");
    std::unique_ptr<THeldKey> ctrl;
    script_.When([] { return LogEnds(); },
                 [&] {
                     EmptyTheClipboard();
                     SetFocus(Part("StatusMemo"));
                     SendMessageW(Part("StatusMemo"), EM_SETSEL, 5, 12);
                     ctrl = std::make_unique<THeldKey>(VK_CONTROL);
                     PostKey('C');
                 });
    std::string copied;
    script_.When([&] { return !(copied = Clipboard()).empty(); },
                 [&] {
                     ctrl.reset();
                     PostKey(VK_ESCAPE);
                 });
    Show(2);
    EXPECT_EQ(copied, "избрана");
}

TEST_F(RunWindowClipboard, TheLogCannotBeTypedInto) {
    ThenStart("SaveBtn");
    script_.When([] { return LogEnds(); },
                 [] {
                     SetFocus(Part("StatusMemo"));
                     PostMessageW(Part("StatusMemo"), WM_CHAR, 'x', 1);
                     PostMessageW(Part("StatusMemo"), WM_KEYDOWN, VK_DELETE, 1);
                 });
    ThenClose();
    Show(2);
    EXPECT_EQ(log_, Lines({"Не е избрана нито една везна.", kLogSeparator}));
}

}  // namespace
}  // namespace tolvane::test
