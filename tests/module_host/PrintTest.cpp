#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "host/GridReader.h"
#include "host/HostMenu.h"
#include "host/PagePainter.h"
#include "tests/module_host/HostSession.h"
#include "tests/support/window/BoxAnswerer.h"
#include "tests/support/window/HostFrame.h"
#include "tests/support/window/Layout.h"
#include "tests/support/window/Screenshot.h"
#include "tests/support/window/UserScript.h"
#include "window/Dpi.h"

namespace tolvane::test {
namespace {

constexpr const wchar_t* kPreviewClass = L"TPrintPreviewForm";
// A4 across: 2100 less margins of 2 * 120 and a head of 130 leaves 1730, which is 38 rows of 45;
// one of them holds the titles. Upright: 2970 - 370 = 2600, 57 rows.
constexpr int kRowsAcross = 37;
constexpr int kRowsUpright = 56;

void Click(HWND form, const char* name) {
    SendMessageW(Component(form, name), BM_CLICK, 0, 0);
    RunLoopDry();
}

bool IsEnabled(HWND form, const char* name) {
    return IsWindowEnabled(Component(form, name)) != 0;
}

void Choose(HWND form, const char* name, int item) {
    const HWND combo = Component(form, name);
    SendMessageW(combo, CB_SETCURSEL, static_cast<WPARAM>(item), 0);
    SendMessageW(form, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(combo), CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(combo));
    RunLoopDry();
}

std::string Page(HWND form) {
    return Utf8TextOf(Component(form, "lblPage"));
}

// Opens the fake operation, prints from it and does something with the preview before it is closed.
void WithPreview(THostSession& session, int rows, const std::function<void(HWND)>& act) {
    session.OpenWorking();
    THostSession::Fake().rows = rows;
    session.Command(host::kFirstOperation);
    const TUserScript actor(kPreviewClass, [&](HWND form) {
        RunLoopDry();
        act(form);
        Click(form, "btnClose");
    });
    SendMessageW(session.Child(), WM_COMMAND, kFakePrint, 0);
    EXPECT_TRUE(actor.IsDone());
    EXPECT_NE(IsWindowEnabled(session.Frame()), 0);
}

std::string Of(int pages, int page) {
    return "Стр. " + std::to_string(page) + " от " + std::to_string(pages);
}

TEST(HostPrintTest, ThePreviewIsTurnedPageByPage) {
    THostSession session;
    // 250 rows of 37 a page: six full pages and 28 rows.
    WithPreview(session, 250, [](HWND form) {
        EXPECT_EQ(Utf8TextOf(form), "Преглед преди печат");
        EXPECT_EQ(Page(form), Of(7, 1));
        EXPECT_FALSE(IsEnabled(form, "btnPrevious"));
        ExpectTextsFit(form);
        ExpectControlsApart(form);
        Click(form, "btnNext");
        EXPECT_EQ(Page(form), Of(7, 2));
        EXPECT_TRUE(IsEnabled(form, "btnPrevious"));
        SaveScreenshot(form, "host-preview");
        Click(form, "btnPrevious");
        EXPECT_EQ(Page(form), Of(7, 1));
        for (int i = 0; i < 6; ++i)
            Click(form, "btnNext");
        EXPECT_EQ(Page(form), Of(7, 7));
        EXPECT_FALSE(IsEnabled(form, "btnNext"));
    });
}

// Runs at whatever resolution the system has.
TEST(HostResolutionTest, EveryTextOfThePreviewHasItsRoom) {
    THostSession session;
    WithPreview(session, 100000, [](HWND form) {
        EXPECT_EQ(Page(form), Of(2703, 1));
        ExpectTextsFit(form);
        ExpectControlsApart(form);
        SaveScreenshot(form, "host-preview-at-" + std::to_string(TDpi::System().DotsPerInch()));
        // As while it prints.
        SetWindowTextW(Component(form, "btnPrint"), L"Спиране");
        ExpectTextsFit(form);
        ExpectFollowsMonitors(form);
    });
}

TEST(HostPrintTest, AnUprightSheetHoldsMoreRows) {
    THostSession session;
    WithPreview(session, 2 * kRowsUpright, [](HWND form) {
        EXPECT_EQ(Page(form), Of(4, 1));  // 112 rows of 37 a page
        Click(form, "btnNext");
        Choose(form, "cbOrientation", 1);
        EXPECT_EQ(Page(form), Of(2, 1));
        SaveScreenshot(form, "host-preview-upright");
        Choose(form, "cbOrientation", 0);
        EXPECT_EQ(Page(form), Of(4, 1));
    });
}

TEST(HostPrintTest, OnlyTheShownPageOfALongTableIsRead) {
    THostSession session;
    WithPreview(session, 100000, [](HWND form) {
        EXPECT_EQ(Page(form), Of(2703, 1));  // 100,000 / 37 = 2702.7
        THostSession::Fake().textsAsked = 0;
        InvalidateRect(form, nullptr, FALSE);
        UpdateWindow(form);
        EXPECT_EQ(THostSession::Fake().textsAsked, kRowsAcross * 3);
    });
}

TEST(HostPrintTest, ClosingTheHostsWindowsWithThePreviewOpenIsSurvived) {
    THostSession session;
    session.OpenWorking();
    session.Command(host::kFirstOperation);
    const TUserScript actor(kPreviewClass, [&](HWND) { DestroyWindow(session.Frame()); });
    SendMessageW(session.Child(), WM_COMMAND, kFakePrint, 0);
    EXPECT_TRUE(actor.IsDone());
    EXPECT_EQ(FindWindowW(kPreviewClass, nullptr), nullptr);
}

TEST(HostPrintTest, AGridThatIsNotAWindowIsReported) {
    THostSession session;
    session.OpenWorking();
    session.Command(host::kFirstOperation);
    const TBoxAnswerer boxes;
    const TPrintProc& print = THostSession::Fake().print;
    print.Code(print.Object, nullptr, nullptr, nullptr);
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_EQ(boxes.Seen()[0].text, "Операцията не посочи таблица за печат.");
}

TEST(HostPrintTest, WithoutAPrinterTheUserIsTold) {
    THostSession session;
    // If there is a printer after all, nothing must come out of it.
    const TBoxAnswerer boxes(IDCANCEL);
    WithPreview(session, 10, [](HWND form) { Click(form, "btnPrint"); });
    ASSERT_EQ(boxes.Seen().size(), 1U);
    EXPECT_TRUE(boxes.Seen()[0].text.starts_with("Няма принтер"));
}

int CALLBACK CollectText(HDC, HANDLETABLE*, const ENHMETARECORD* record, int, LPARAM parameter) {
    auto& texts = *reinterpret_cast<std::vector<std::wstring>*>(parameter);
    if (record->iType != EMR_EXTTEXTOUTW) return TRUE;
    const auto* text = reinterpret_cast<const EMREXTTEXTOUTW*>(record);
    const auto* characters = reinterpret_cast<const wchar_t*>(reinterpret_cast<const char*>(text) +
                                                              text->emrtext.offString);
    texts.emplace_back(characters, text->emrtext.nChars);
    return TRUE;
}

// The texts of a page in the order in which they are drawn.
std::vector<std::string> TextsOf(const host::TPagePainter& painter, std::size_t page) {
    const HDC dc = CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
    painter.Draw(dc, {0, 0, 2970, 2100}, page);
    const HENHMETAFILE file = CloseEnhMetaFile(dc);
    std::vector<std::wstring> texts;
    EnumEnhMetaFile(nullptr, file, reinterpret_cast<ENHMFENUMPROC>(&CollectText), &texts, nullptr);
    DeleteEnhMetaFile(file);
    std::vector<std::string> result;
    for (const std::wstring& text : texts)
        result.push_back(Utf8(text));
    return result;
}

TEST(HostPrintTest, APageHoldsTheHeadAndTheVisibleColumnsAsDisplayed) {
    THostSession session;
    session.OpenWorking();
    THostSession::Fake().rows = kRowsAcross + 2;
    session.Command(host::kFirstOperation);
    const host::TGridReader grid(THostSession::Fake().grid);
    const host::TPagePainter painter(grid, {L"Title", L"Date"});
    ASSERT_EQ(painter.Layout().PageCount(), 2U);
    EXPECT_EQ(
        TextsOf(painter, 1),
        (std::vector<std::string>{"Title", "Date", "Стр. 2 от 2", "Number", "No38", "No39", "Price",
                                  "Price38", "Price39", "Name", "Article38", "Article39"}));
}

TEST(HostPrintTest, ATextThatDoesNotFitEndsInDots) {
    THostSession session;
    session.OpenWorking();
    session.Command(host::kFirstOperation);
    const HWND list = THostSession::Fake().grid;
    SendMessageW(list, LVM_SETCOLUMNWIDTH, 1, 30);
    const host::TGridReader grid(list);
    const host::TPagePainter painter(grid, {L"Title", L"Date"});
    const std::vector<std::string> texts = TextsOf(painter, 0);
    EXPECT_EQ(std::count_if(texts.begin(), texts.end(),
                            [](const std::string& text) { return text.ends_with("..."); }),
              kRowsAcross);
}

TEST(HostPrintTest, AWindowThatIsNoListViewHasNoColumns) {
    THostSession session;
    session.Open();
    const host::TGridReader grid(session.Frame());
    EXPECT_TRUE(grid.Columns().empty());
    EXPECT_EQ(grid.RowCount(), 0U);
}

}  // namespace
}  // namespace tolvane::test
