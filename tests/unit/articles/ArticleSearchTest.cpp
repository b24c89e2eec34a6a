#include "articles/ArticleSearch.h"

#include <gtest/gtest.h>

#include "text/Cp1251.h"

namespace tolvane {
namespace {

class ArticleSearchTest : public testing::Test {
protected:
    ArticleSearchTest() {
        regional_.decimalSeparator = ',';
        Add(101, "Банани"_cp1251, 3.2);
        Add(102, "Ябълки червени"_cp1251, 2.8);
        Add(103, "Ябълки зелени"_cp1251, 12.5);
    }

    void Add(std::int32_t number, std::string_view name, double price) {
        const TRowId row = table_.Append();
        table_.SetInteger(row, TField::PLU_NUMB, number);
        table_.SetText(row, TField::PLU_NAME, name);
        table_.SetFloat(row, TField::PLU_SELL_PRICE, price);
    }

    std::optional<std::size_t> Find(TField field, std::size_t from, std::string_view text) const {
        return FindInColumn(table_, field, from, text, regional_);
    }

    TArticleTable table_;
    TRegionalSettings regional_;
};

TEST_F(ArticleSearchTest, ATextInLowerCaseFindsAnArticleNamedWithACapital) {
    // "ябълка" is not part of "Ябълки", "ябълк" is.
    EXPECT_EQ(Find(TField::PLU_NAME, 0, "ябълк"_cp1251), 1U);
    EXPECT_EQ(Find(TField::PLU_NAME, 0, "ЯБЪЛКИ ЧЕР"_cp1251), 1U);
    EXPECT_EQ(Find(TField::PLU_NAME, 0, "ябълка"_cp1251), std::nullopt);
}

TEST_F(ArticleSearchTest, FindsATextAnywhereInTheField) {
    EXPECT_EQ(Find(TField::PLU_NAME, 0, "зелени"_cp1251), 2U);
    EXPECT_EQ(Find(TField::PLU_NAME, 0, "И"_cp1251), 0U);
}

TEST_F(ArticleSearchTest, StartsAtTheGivenPlaceAndDoesNotWrap) {
    EXPECT_EQ(Find(TField::PLU_NAME, 2, "ябълки"_cp1251), 2U);
    EXPECT_EQ(Find(TField::PLU_NAME, 1, "банани"_cp1251), std::nullopt);
    EXPECT_EQ(Find(TField::PLU_NAME, 3, "ябълки"_cp1251), std::nullopt);
    EXPECT_EQ(Find(TField::PLU_NAME, 99, "ябълки"_cp1251), std::nullopt);
}

TEST_F(ArticleSearchTest, F3OnTheLastMatchingRowWrapsToTheFirstMatchFromTheTop) {
    // What F3 does: it searches from the row after the current one to the end, then once from the
    // top.
    EXPECT_EQ(Find(TField::PLU_NAME, 3, "ябълки"_cp1251), std::nullopt);
    EXPECT_EQ(Find(TField::PLU_NAME, 0, "ябълки"_cp1251), 1U);
}

TEST_F(ArticleSearchTest, NumbersAreSearchedAsText) {
    EXPECT_EQ(Find(TField::PLU_NUMB, 0, "03"), 2U);
    EXPECT_EQ(Find(TField::PLU_SELL_PRICE, 0, "2,5"), 2U);
    EXPECT_EQ(Find(TField::PLU_SELL_PRICE, 0, "2.5"), std::nullopt);
}

// The grid shows "12,50", "ДА" and "НЕ"; the fields hold 12.5, "1" and "0".
TEST_F(ArticleSearchTest, APriceIsSearchedWithoutItsFormat) {
    table_.SetFloat(2, TField::PLU_SELL_PRICE_LV, 12.5);
    EXPECT_EQ(Find(TField::PLU_SELL_PRICE, 0, "12,5"), 2U);
    EXPECT_EQ(Find(TField::PLU_SELL_PRICE, 0, "12,50"), std::nullopt);
    EXPECT_EQ(Find(TField::PLU_SELL_PRICE_LV, 0, "12,5"), 2U);
    EXPECT_EQ(Find(TField::PLU_SELL_PRICE_LV, 0, "12,50 "), std::nullopt);
    // Shown as 09,00%.
    table_.SetFloat(1, TField::TAX_GROUP_WAT, 9);
    EXPECT_EQ(Find(TField::TAX_GROUP_WAT, 0, "9"), 1U);
    EXPECT_EQ(Find(TField::TAX_GROUP_WAT, 0, "09"), std::nullopt);
    EXPECT_EQ(Find(TField::TAX_GROUP_WAT, 0, "%"), std::nullopt);
}

TEST_F(ArticleSearchTest, AFlagIsSearchedAsItIsHeld) {
    for (const TRowId row : {0U, 1U, 2U})
        table_.SetText(row, TField::PLU_SELL_DISABLED, row == 1 ? "1" : "0");
    EXPECT_EQ(Find(TField::PLU_SELL_DISABLED, 0, "1"), 1U);
    EXPECT_EQ(Find(TField::PLU_SELL_DISABLED, 0, "0"), 0U);
    EXPECT_EQ(Find(TField::PLU_SELL_DISABLED, 0, "ДА"_cp1251), std::nullopt);
    EXPECT_EQ(Find(TField::PLU_SELL_DISABLED, 0, "НЕ"_cp1251), std::nullopt);
}

TEST_F(ArticleSearchTest, ABooleanIsSearchedAsAFlagIs) {
    table_.SetBoolean(1, TField::HasActivePromotion, true);
    EXPECT_EQ(Find(TField::HasActivePromotion, 0, "1"), 1U);
    EXPECT_EQ(Find(TField::HasActivePromotion, 1, "0"), 2U);
    EXPECT_EQ(Find(TField::HasActivePromotion, 0, "ДА"_cp1251), std::nullopt);
    EXPECT_EQ(Find(TField::HasActivePromotion, 0, "НЕ"_cp1251), std::nullopt);
}

TEST_F(ArticleSearchTest, FollowsTheCurrentOrder) {
    table_.SetOrder({2, 1, 0});
    EXPECT_EQ(Find(TField::PLU_NAME, 0, "ябълки"_cp1251), 0U);
    EXPECT_EQ(Find(TField::PLU_NAME, 0, "банани"_cp1251), 2U);
}

// More rows than are read at once, in an order that jumps to and fro in memory: index 2k holds
// row 999 - k, index 2k + 1 holds row k.
TEST_F(ArticleSearchTest, GivesTheFirstMatchOfTheOrderWhereverItLiesInMemory) {
    table_.Clear();
    std::vector<TRowId> order;
    for (std::int32_t number = 0; number < 1000; ++number)
        Add(number, number % 100 == 7 ? "сол"_cp1251 : "захар"_cp1251, 1);
    for (TRowId row = 0; row < 500; ++row) {
        order.push_back(999 - row);
        order.push_back(row);
    }
    table_.SetOrder(order);
    // Row 7 has index 15; row 907, 999 - 92, has index 184; row 107 has index 215.
    EXPECT_EQ(Find(TField::PLU_NAME, 0, "СОЛ"_cp1251), 15U);
    EXPECT_EQ(Find(TField::PLU_NAME, 15, "СОЛ"_cp1251), 15U);
    EXPECT_EQ(Find(TField::PLU_NAME, 16, "СОЛ"_cp1251), 184U);
    EXPECT_EQ(Find(TField::PLU_NAME, 185, "СОЛ"_cp1251), 215U);
    // The last: row 507, 999 - 492, has index 984.
    EXPECT_EQ(Find(TField::PLU_NAME, 816, "СОЛ"_cp1251), 984U);
    EXPECT_EQ(Find(TField::PLU_NAME, 985, "СОЛ"_cp1251), std::nullopt);
    EXPECT_EQ(Find(TField::PLU_NAME, 999, "захар"_cp1251), 999U);
    EXPECT_EQ(Find(TField::PLU_NAME, 500, ""), 500U);
}

TEST_F(ArticleSearchTest, AnEmptyTableHasNoMatch) {
    table_.Clear();
    EXPECT_EQ(Find(TField::PLU_NAME, 0, "ябълки"_cp1251), std::nullopt);
}

}  // namespace
}  // namespace tolvane
