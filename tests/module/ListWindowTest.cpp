#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "tests/support/module/Session.h"
#include "tests/support/window/BoxAnswerer.h"
#include "tests/support/window/Screenshot.h"

namespace tolvane::test {
namespace {

using TRow = std::vector<std::string>;

// What the list must show of shop.sql, worked out by hand.
const TRow kTitles = {"Арт.No:",        "Номенкл.No",
                      "No: за везна",   "Име",
                      "Касово име",     "Етикетно име",
                      "Баркод",         "Срок годност",
                      "Пок.цена",       "Пок.ЛВ.цена",
                      "Прод.цена",      "Прод.ЛВ.цена",
                      "Прод.цена едро", "Прод.ЛВ.цена едро",
                      "За везни",       "За терм.",
                      "Дан.Гр.",        "ДДС",
                      "В промоция",     "Пром.цена",
                      "В пром.от",      "В пром.до",
                      "Група",          "Мярка",
                      "Цели колич.",    "Забранен",
                      "Пок.вал.",       "Прод.вал.",
                      "Ет. текст 1",    "Ет. текст 2",
                      "Ет. текст 3",    "Партида (самок.)"};

TRow Apples() {
    return {"11",
            "Н-101",
            "101",
            "Ябълки червени",
            "ЯБЪЛКИ ЧЕРВ",
            "Ябълки червени етике",
            "2800101",
            "14",
            Localised("1.200"),
            Localised("1.200 лв"),
            Localised("2.50"),
            Localised("2.50 лв"),
            Localised("2.25"),
            Localised("2.25 лв"),
            "0",
            "1",
            "Б",
            Localised("20.00%"),
            "НЕ",
            Localised("0.0000"),
            "",
            "",
            "Плодове",
            "кг",
            "НЕ",
            "НЕ",
            "Лева",
            "Лева",
            "Произход: България",
            "Клас I",
            "Да се измие",
            "L-002"};
}

// 4.25 EUR at 195.583 for 100: 8.312; 10 EUR: 19.56; 9 EUR: 17.60.
TRow Cheese(const std::string& barcode) {
    return {"13",
            "Н-103",
            "103",
            "Сирене краве бяло са",
            "СИРЕНЕ",
            "Сирене краве",
            barcode,
            "0",
            Localised("4.250"),
            Localised("8.312 лв"),
            Localised("10.00"),
            Localised("19.56 лв"),
            Localised("9.00"),
            Localised("17.60 лв"),
            "2",
            "",
            "Г",
            Localised("09.00%"),
            "НЕ",
            Localised("0.0000"),
            "",
            "",
            "Сирена",
            "бр",
            "ДА",
            "ДА",
            "Евро",
            "Евро",
            "",
            "",
            "",
            ""};
}

// 10 per cent off 15.50: 13.95.
TRow Kashkaval() {
    return {"14",
            "Н-104",
            "104",
            "Кашкавал",
            "КАШКАВАЛ",
            "Кашкавал",
            "",
            "0",
            Localised("9.999"),
            Localised("9.999 лв"),
            Localised("15.50"),
            Localised("15.50 лв"),
            Localised("14.00"),
            Localised("14.00 лв"),
            "0",
            "",
            "Г",
            Localised("09.00%"),
            "ДА",
            Localised("13.9500"),
            "",
            "",
            "Сирена",
            "кг",
            "НЕ",
            "НЕ",
            "Лева",
            "Лева",
            "",
            "",
            "",
            ""};
}

TRow RowOf(const TGridReader& grid, int row) {
    TRow cells;
    for (int column = 0; column < 32; ++column)
        cells.push_back(grid.Cell(row, column));
    return cells;
}

class ListWindowTest : public testing::Test {
protected:
    ListWindowTest() { session_.Start(); }

    TGridReader Grid() const { return session_.Grid(); }
    int Column(const std::string& title) const { return Grid().ColumnByTitle(title); }
    TRow Names() const { return Grid().Column(Column("Име")); }
    TRow Numbers() const { return Grid().Column(0); }

    TSession session_;
};

}  // namespace

TEST_F(ListWindowTest, ShowsThirtyTwoColumnsInOrder) {
    EXPECT_EQ(Grid().Titles(), kTitles);
}

TEST_F(ListWindowTest, LabelTextColumnsHaveTheirOwnWidths) {
    EXPECT_EQ(Grid().ColumnWidth(28), 126);
    EXPECT_EQ(Grid().ColumnWidth(29), 119);
    EXPECT_EQ(Grid().ColumnWidth(30), 122);
    EXPECT_EQ(Grid().ColumnWidth(31), 99);
}

TEST_F(ListWindowTest, ListsWeightedArticlesOfTheDatabase) {
    ASSERT_EQ(Grid().RowCount(), 6);
    EXPECT_EQ(Numbers(), (TRow{"11", "12", "13", "13", "14", "15"}));
}

TEST_F(ListWindowTest, ShowsEveryFieldByItsRule) {
    EXPECT_EQ(RowOf(Grid(), 0), Apples());
    EXPECT_EQ(RowOf(Grid(), 4), Kashkaval());
}

TEST_F(ListWindowTest, ArticleWithTwoBarcodesIsListedTwice) {
    const std::set<TRow> expected = {Cheese("2800103"), Cheese("2800913")};
    EXPECT_EQ((std::set<TRow>{RowOf(Grid(), 2), RowOf(Grid(), 3)}), expected);
}

TEST_F(ListWindowTest, PromotionWithoutTodaysDayIsNotActive) {
    EXPECT_EQ(Grid().Cell(1, Column("В промоция")), "НЕ");
    EXPECT_EQ(Grid().Cell(1, Column("Пром.цена")), Localised("0.0000"));
}

TEST_F(ListWindowTest, NumbersStandAtTheRight) {
    EXPECT_EQ(Grid().ColumnFormat(0) & HDF_JUSTIFYMASK, HDF_RIGHT);
    EXPECT_EQ(Grid().ColumnFormat(Column("Прод.цена")) & HDF_JUSTIFYMASK, HDF_RIGHT);
    EXPECT_EQ(Grid().ColumnFormat(Column("Име")) & HDF_JUSTIFYMASK, HDF_LEFT);
}

TEST_F(ListWindowTest, LoadedListIsMarkedAsSortedByArticleNumber) {
    EXPECT_EQ(Grid().ColumnFormat(0) & (HDF_SORTUP | HDF_SORTDOWN), HDF_SORTUP);
}

TEST_F(ListWindowTest, TitleClicksSortUpDownAndUpAgain) {
    const int name = Column("Име");
    const TRow ascending = {
        "Кашкавал",      "Круши",         "Сирене краве бяло са", "Сирене краве бяло са",
        "ябълки зелени", "Ябълки червени"};
    TRow descending = ascending;
    std::reverse(descending.begin(), descending.end());
    Grid().ClickTitle(name);
    EXPECT_EQ(Names(), ascending);
    EXPECT_EQ(Grid().ColumnFormat(name) & (HDF_SORTUP | HDF_SORTDOWN), HDF_SORTUP);
    EXPECT_EQ(Grid().ColumnFormat(0) & (HDF_SORTUP | HDF_SORTDOWN), 0);
    Grid().ClickTitle(name);
    EXPECT_EQ(Names(), descending);
    EXPECT_EQ(Grid().ColumnFormat(name) & (HDF_SORTUP | HDF_SORTDOWN), HDF_SORTDOWN);
    Grid().ClickTitle(name);
    EXPECT_EQ(Names(), ascending);
    SaveScreenshot(session_.host.Frame(), "list-sorted");
}

TEST_F(ListWindowTest, EqualValuesStandByArticleNumberInTheChosenDirection) {
    const int group = Column("Група");
    Grid().ClickTitle(group);
    EXPECT_EQ(Numbers(), (TRow{"11", "12", "15", "13", "13", "14"}));
    Grid().ClickTitle(group);
    EXPECT_EQ(Numbers(), (TRow{"14", "13", "13", "15", "12", "11"}));
}

TEST_F(ListWindowTest, RefreshSortsByArticleNumberAgain) {
    Grid().ClickTitle(Column("Име"));
    Grid().ClickTitle(Column("Име"));
    session_.Click("RefreshBtn");
    EXPECT_EQ(Numbers(), (TRow{"11", "12", "13", "13", "14", "15"}));
    EXPECT_EQ(Grid().ColumnFormat(0) & (HDF_SORTUP | HDF_SORTDOWN), HDF_SORTUP);
}

TEST_F(ListWindowTest, MarksFollowTheirRowsThroughSorting) {
    Grid().ClickRow(5, 3);
    Grid().ClickRow(0, 3, true);
    EXPECT_EQ(Grid().SelectedRows(), (std::vector<int>{0, 5}));
    SaveScreenshot(session_.host.Frame(), "list-marked");
    Grid().ClickTitle(Column("Име"));
    EXPECT_EQ(Grid().SelectedRows(), (std::vector<int>{4, 5}));
    EXPECT_EQ(Grid().Cell(4, 0), "15");
    EXPECT_EQ(Grid().Cell(5, 0), "11");
}

TEST_F(ListWindowTest, PromotionRowHasTheCreamColourUntilItIsMarked) {
    const auto colour = [&](int row) {
        SendMessageW(Grid().Handle(), LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
        UpdateWindow(Grid().Handle());
        RECT cell{LVIR_BOUNDS, 3, 0, 0};
        SendMessageW(Grid().Handle(), LVM_GETSUBITEMRECT, static_cast<WPARAM>(row),
                     reinterpret_cast<LPARAM>(&cell));
        return PixelAt(Grid().Handle(), {cell.right - 3, cell.top + 2});
    };
    const COLORREF window = GetSysColor(COLOR_WINDOW);
    const auto blend = [](int own, int cream) { return 16 * own / 255 + 239 * cream / 255; };
    const COLORREF cream = RGB(blend(GetRValue(window), 255), blend(GetGValue(window), 251),
                               blend(GetBValue(window), 240));
    EXPECT_EQ(colour(4), cream);
    EXPECT_EQ(colour(1), window);
    SaveScreenshot(session_.host.Frame(), "list-promotion");
    Grid().ClickRow(4, 3);
    EXPECT_EQ(colour(4), GetSysColor(COLOR_HIGHLIGHT));
}

TEST_F(ListWindowTest, TitleDoubleClickFitsTheColumnToItsWidestText) {
    const int group = Column("Група");
    const int widest = std::max(
        {Grid().TextWidth(L"Група"), Grid().TextWidth(L"Плодове"), Grid().TextWidth(L"Сирена")});
    Grid().DoubleClickTitle(group);
    EXPECT_EQ(Grid().ColumnWidth(group), widest + 8);
}

TEST_F(ListWindowTest, PrintHandsTitleTimeAndGridToTheHost) {
    session_.Click("PrintBtn");
    ASSERT_EQ(session_.printed.size(), 1U);
    const TPrinted& printed = session_.printed[0];
    EXPECT_EQ(printed.title, "\xD2\xE5\xE3\xEB\xEE\xE2\xE8 \xE0\xF0\xF2\xE8\xEA\xF3\xEB\xE8");
    EXPECT_EQ(printed.title.size(), 16U);
    EXPECT_EQ(printed.object, &session_);
    EXPECT_EQ(printed.grid, Grid().Handle());
    std::string shape = printed.dateTime;
    std::replace_if(
        shape.begin(), shape.end(), [](char c) { return c >= '0' && c <= '9'; }, '9');
    EXPECT_EQ(shape, "99.99.9999 - 99.99.99");
    SYSTEMTIME now{};
    GetLocalTime(&now);
    EXPECT_EQ(printed.dateTime.substr(6, 4), std::to_string(now.wYear));
}

TEST(Print, NullCodeLeavesTheButtonWithoutEffect) {
    TSession session;
    session.module.Start(session.host.Frame(), 17, &session.messageId, session.host.Frame(),
                         session.connection.Database(), nullptr, {nullptr, nullptr});
    session.Click("PrintBtn");
    EXPECT_NE(session.List(), nullptr);
}

TEST_F(ListWindowTest, ButtonsAreWholeAfterEveryResize) {
    const std::vector<std::string> names = {"SearchButton", "SaveButton", "RefreshBtn",
                                            "ColBtn",       "PrintBtn",   "btnCloseBtn"};
    const auto picture = [&] {
        std::vector<COLORREF> pixels;
        for (const std::string& name : names) {
            for (const POINT at : {POINT{1, 12}, POINT{6, 3}, POINT{6, 22}, POINT{86, 12}})
                pixels.push_back(PixelAt(session_.Control(name), at));
        }
        return pixels;
    };
    SetWindowPos(session_.List(), nullptr, 0, 0, 640, 340, SWP_NOZORDER);
    RunLoopDry();
    const std::vector<COLORREF> whole = picture();
    for (const SIZE size : {SIZE{900, 600}, SIZE{660, 350}, SIZE{640, 600}, SIZE{640, 340}}) {
        SetWindowPos(session_.List(), nullptr, 0, 0, size.cx, size.cy, SWP_NOZORDER);
        RunLoopDry();
        EXPECT_EQ(picture(), whole) << size.cx << "x" << size.cy;
    }
}

TEST_F(ListWindowTest, PrintTitleStaysWhateverTheCaption) {
    SetWindowTextW(session_.List(), L"Друго заглавие");
    session_.Click("PrintBtn");
    ASSERT_EQ(session_.printed.size(), 1U);
    EXPECT_EQ(session_.printed[0].title,
              "\xD2\xE5\xE3\xEB\xEE\xE2\xE8 \xE0\xF0\xF2\xE8\xEA\xF3\xEB\xE8");
}

TEST_F(ListWindowTest, CloseButtonClosesTheWindow) {
    session_.Click("btnCloseBtn");
    EXPECT_EQ(session_.List(), nullptr);
    EXPECT_EQ(session_.Completions(), 1);
}

TEST(ListWindowWithoutArticles, ClosingEndsTheTransactionThatTheLoadLeftOpen) {
    TSession session("bare.fdb");
    // The transaction that asks is among them.
    const auto transactions = [&] {
        return session.connection.Number(
            "select count(*) from MON$TRANSACTIONS where MON$ATTACHMENT_ID = CURRENT_CONNECTION");
    };
    session.Start();
    EXPECT_EQ(session.Grid().RowCount(), 0);
    EXPECT_EQ(transactions(), 2);
    session.CloseList();
    EXPECT_EQ(transactions(), 1);
}

TEST_F(ListWindowTest, LostConnectionIsReportedOnRefresh) {
    session_.connection.ShutDown();
    const TBoxAnswerer answerer;
    session_.Click("RefreshBtn");
    ASSERT_EQ(answerer.Seen().size(), 1U);
    EXPECT_EQ(answerer.Seen()[0].text.rfind("[REFRESH DATA]: ", 0), 0U);
    EXPECT_NE(session_.List(), nullptr);
}

}  // namespace tolvane::test
