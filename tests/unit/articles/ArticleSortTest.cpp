#include "articles/ArticleSort.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "text/Cp1251.h"

namespace tolvane {
namespace {

TRowId Add(TArticleTable& table, std::int32_t number, std::string_view name, double price = 0) {
    const TRowId row = table.Append();
    table.SetInteger(row, TField::PLU_NUMB, number);
    table.SetText(row, TField::PLU_NAME, name);
    table.SetFloat(row, TField::PLU_SELL_PRICE, price);
    return row;
}

std::vector<std::int32_t> Numbers(const TArticleTable& table) {
    std::vector<std::int32_t> numbers;
    for (const TRowId row : table.Order())
        numbers.push_back(table.Integer(row, TField::PLU_NUMB));
    return numbers;
}

using TNumbers = std::vector<std::int32_t>;

TEST(SortState, ClickingTheSameTitleTwiceSortsAscendingThenDescendingAThirdClickAscendingAgain) {
    TSortState sort;
    sort.ClickTitle(TField::PLU_NAME);
    EXPECT_EQ(sort.field, TField::PLU_NAME);
    EXPECT_TRUE(sort.ascending);
    sort.ClickTitle(TField::PLU_NAME);
    EXPECT_FALSE(sort.ascending);
    sort.ClickTitle(TField::PLU_NAME);
    EXPECT_TRUE(sort.ascending);
}

TEST(SortState, AnotherTitleStartsAscending) {
    TSortState sort;
    sort.ClickTitle(TField::PLU_NAME);
    sort.ClickTitle(TField::PLU_NAME);
    sort.ClickTitle(TField::PLU_SELL_PRICE);
    EXPECT_EQ(sort.field, TField::PLU_SELL_PRICE);
    EXPECT_TRUE(sort.ascending);
}

TEST(SortState, AfterALoadTheFirstClickOnTheArticleNumberTurnsItAround) {
    TSortState sort;
    sort.SetLoaded();
    EXPECT_EQ(sort.field, TField::PLU_NUMB);
    EXPECT_TRUE(sort.ascending);
    sort.ClickTitle(TField::PLU_NUMB);
    EXPECT_FALSE(sort.ascending);
}

TEST(SortState, ClearForgetsTheField) {
    TSortState sort;
    sort.ClickTitle(TField::PLU_NAME);
    sort.Clear();
    EXPECT_EQ(sort.field, std::nullopt);
    sort.ClickTitle(TField::PLU_NAME);
    EXPECT_TRUE(sort.ascending);
}

TEST(SortArticles, TextsAreSortedWithoutRegardToCaseInAlphabeticalOrder) {
    TArticleTable table;
    Add(table, 1, "ябълки"_cp1251);
    Add(table, 2, "БАНАНИ"_cp1251);
    Add(table, 3, "Ананас"_cp1251);
    Add(table, 4, "боровинки"_cp1251);
    SortArticles(table, TField::PLU_NAME, true);
    EXPECT_EQ(Numbers(table), (TNumbers{3, 2, 4, 1}));
}

TEST(SortArticles, LongTextsWithTheSameBeginningAreToldApart) {
    TArticleTable table;
    Add(table, 1, "Сирене краве Б"_cp1251);
    Add(table, 2, "сирене краве а"_cp1251);
    Add(table, 3, "Сирене краве"_cp1251);
    Add(table, 4, "Сирене"_cp1251);
    SortArticles(table, TField::PLU_NAME, true);
    EXPECT_EQ(Numbers(table), (TNumbers{4, 3, 2, 1}));
}

TEST(SortArticles, EqualValuesKeepArticleNumberOrderAscendingOrDescendingWithTheDirection) {
    TArticleTable table;
    Add(table, 7, "сол"_cp1251);
    Add(table, 5, "Сол"_cp1251);
    Add(table, 6, "СОЛ"_cp1251);
    Add(table, 1, "чай"_cp1251);
    SortArticles(table, TField::PLU_NAME, true);
    EXPECT_EQ(Numbers(table), (TNumbers{5, 6, 7, 1}));
    SortArticles(table, TField::PLU_NAME, false);
    EXPECT_EQ(Numbers(table), (TNumbers{1, 7, 6, 5}));
}

TEST(SortArticles, RowsOfTheSameArticleKeepTheirOrderInBothDirections) {
    TArticleTable table;
    const TRowId first = Add(table, 5, "a");
    const TRowId second = Add(table, 5, "a");
    SortArticles(table, TField::PLU_NAME, true);
    EXPECT_EQ(table.Order(), (std::vector<TRowId>{first, second}));
    SortArticles(table, TField::PLU_NAME, false);
    EXPECT_EQ(table.Order(), (std::vector<TRowId>{first, second}));
}

TEST(SortArticles, NumbersAreSortedByValue) {
    TArticleTable table;
    Add(table, 100, "", 2.5);
    Add(table, 20, "", -1);
    Add(table, 3, "", 10);
    Add(table, -4, "", 0);
    SortArticles(table, TField::PLU_SELL_PRICE, true);
    EXPECT_EQ(Numbers(table), (TNumbers{20, -4, 100, 3}));
    SortArticles(table, TField::PLU_SELL_PRICE, false);
    EXPECT_EQ(Numbers(table), (TNumbers{3, 100, -4, 20}));
    SortArticles(table, TField::PLU_NUMB, true);
    EXPECT_EQ(Numbers(table), (TNumbers{-4, 3, 20, 100}));
}

TEST(SortArticles, APlainAndANegativeZeroAreTheSameValue) {
    TArticleTable table;
    Add(table, 2, "", -0.0);
    Add(table, 1, "", 0.0);
    SortArticles(table, TField::PLU_SELL_PRICE, true);
    EXPECT_EQ(Numbers(table), (TNumbers{1, 2}));
}

TEST(SortArticles, PromotedRowsComeLastAscending) {
    TArticleTable table;
    table.SetBoolean(Add(table, 1, ""), TField::HasActivePromotion, true);
    Add(table, 2, "");
    SortArticles(table, TField::HasActivePromotion, true);
    EXPECT_EQ(Numbers(table), (TNumbers{2, 1}));
}

// Equal for longer than a group is compared at once, and in the end by length.
TEST(SortArticles, CommentsThatDifferOnlyNearTheirEndsAreToldApart) {
    const std::string beginning(80, 'x');
    TArticleTable table;
    const auto add = [&](std::int32_t number, std::string_view comment) {
        table.SetText(Add(table, number, ""), TField::LABEL_COMMENT1, comment);
    };
    add(1, beginning + "b");
    add(2, beginning + "B2");
    add(3, beginning);
    add(4, beginning + "a and more text");
    add(5, beginning + "A and more Text");
    add(6, beginning + "a and more");
    add(7, "y");
    add(8, "");
    SortArticles(table, TField::LABEL_COMMENT1, true);
    EXPECT_EQ(Numbers(table), (TNumbers{8, 3, 6, 4, 5, 1, 2, 7}));
    SortArticles(table, TField::LABEL_COMMENT1, false);
    EXPECT_EQ(Numbers(table), (TNumbers{7, 2, 1, 5, 4, 6, 3, 8}));
}

// 2,000 rows: row i has the name of i % 40 and the price of i % 1,000, which is negative for half
// of them.
class ManyRowsTest : public testing::Test {
protected:
    ManyRowsTest() {
        for (std::int32_t row = 0; row < kRows; ++row) {
            const std::int32_t name = row % 40;
            Add(table_, row, std::string("Сирене краве "_cp1251) + std::to_string(100 + name),
                row % 1000 - 500);
        }
    }
    static constexpr std::int32_t kRows = 2000;
    TArticleTable table_;
};

TEST_F(ManyRowsTest, AreSortedByTextAndThenByNumber) {
    SortArticles(table_, TField::PLU_NAME, true);
    TNumbers expected;
    for (std::int32_t name = 0; name < 40; ++name) {
        for (std::int32_t row = name; row < kRows; row += 40)
            expected.push_back(row);
    }
    EXPECT_EQ(Numbers(table_), expected);
    SortArticles(table_, TField::PLU_NAME, false);
    EXPECT_EQ(Numbers(table_), TNumbers(expected.rbegin(), expected.rend()));
}

TEST_F(ManyRowsTest, AreSortedByPriceAndThenByNumber) {
    SortArticles(table_, TField::PLU_SELL_PRICE, true);
    TNumbers expected;
    for (std::int32_t price = 0; price < 1000; ++price)
        expected.insert(expected.end(), {price, price + 1000});
    EXPECT_EQ(Numbers(table_), expected);
    SortArticles(table_, TField::PLU_SELL_PRICE, false);
    EXPECT_EQ(Numbers(table_), TNumbers(expected.rbegin(), expected.rend()));
}

// Rows 0 to 1,999 get the numbers 999 to 0, twice.
TEST_F(ManyRowsTest, OfRepeatedNumbersKeepTheirOrderInBothDirections) {
    for (TRowId row = 0; row < kRows; ++row)
        table_.SetInteger(row, TField::PLU_NUMB, 999 - static_cast<std::int32_t>(row % 1000));
    SortArticles(table_, TField::PLU_NUMB, true);
    std::vector<TRowId> expected;
    for (TRowId row = 999; row < 1000; --row)
        expected.insert(expected.end(), {row, row + 1000});
    EXPECT_EQ(table_.Order(), expected);
    SortArticles(table_, TField::PLU_NUMB, false);
    expected.clear();
    for (TRowId row = 0; row < 1000; ++row)
        expected.insert(expected.end(), {row, row + 1000});
    EXPECT_EQ(table_.Order(), expected);
}

TEST(SortArticles, AnEmptyTableStaysEmpty) {
    TArticleTable table;
    SortArticles(table, TField::PLU_NAME, false);
    EXPECT_EQ(table.RowCount(), 0U);
}

}  // namespace
}  // namespace tolvane
