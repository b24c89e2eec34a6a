#include "articles/ArticleTable.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "text/Cp1251.h"

namespace tolvane {
namespace {

TRegionalSettings Comma() {
    TRegionalSettings regional;
    regional.decimalSeparator = ',';
    return regional;
}

TRegionalSettings Point() {
    TRegionalSettings regional;
    regional.decimalSeparator = '.';
    return regional;
}

constexpr std::string_view kLev = "лв"_cp1251;

std::string Shown(const TArticleTable& table, TField field, std::string_view currency = kLev) {
    return ToUtf8(table.DisplayText(0, field, Comma(), currency));
}

TEST(ArticleTable, ANewRowHoldsZerosAndEmptyTexts) {
    TArticleTable table;
    const TRowId row = table.Append();
    for (const TFieldInfo& info : kFields) {
        switch (info.type) {
            case TFieldType::Integer:
                EXPECT_EQ(table.Integer(row, info.field), 0);
                break;
            case TFieldType::Float:
                EXPECT_EQ(table.Float(row, info.field), 0.0);
                break;
            case TFieldType::Boolean:
                EXPECT_FALSE(table.Boolean(row, info.field));
                break;
            case TFieldType::Text:
                EXPECT_EQ(table.Text(row, info.field), "");
        }
    }
}

TEST(ArticleTable, EachFieldKeepsItsOwnValue) {
    TArticleTable table;
    table.Append();
    const TRowId row = table.Append();
    int value = 0;
    for (const TFieldInfo& info : kFields) {
        ++value;
        if (info.type == TFieldType::Integer) table.SetInteger(row, info.field, value);
        if (info.type == TFieldType::Float) table.SetFloat(row, info.field, value + 0.5);
        if (info.type == TFieldType::Text) table.SetText(row, info.field, std::to_string(value));
    }
    table.SetBoolean(row, TField::HasActivePromotion, true);
    value = 0;
    for (const TFieldInfo& info : kFields) {
        ++value;
        if (info.type == TFieldType::Boolean) continue;
        const std::string text =
            info.type == TFieldType::Float ? std::to_string(value) + ",5" : std::to_string(value);
        EXPECT_EQ(table.AsText(row, info.field, Comma()), text) << info.name;
    }
    EXPECT_TRUE(table.Boolean(row, TField::HasActivePromotion));
    EXPECT_FALSE(table.Boolean(0, TField::HasActivePromotion));
}

TEST(ArticleTable, AnArticleNameLongerThan20CharactersIsCutTo20) {
    TArticleTable table;
    const TRowId row = table.Append();
    table.SetText(row, TField::PLU_NAME, "Ябълки златна превъзходна"_cp1251);
    EXPECT_EQ(ToUtf8(table.Text(row, TField::PLU_NAME)), "Ябълки златна превъз");
    table.SetText(row, TField::PLU_NAME, "Ябълки златна превъз"_cp1251);
    EXPECT_EQ(ToUtf8(table.Text(row, TField::PLU_NAME)), "Ябълки златна превъз");
}

TEST(ArticleTable, LabelTextsAreCutTo100AndLotsTo50) {
    TArticleTable table;
    const TRowId row = table.Append();
    const std::string text(101, 'x');
    table.SetText(row, TField::LABEL_COMMENT1, text);
    table.SetText(row, TField::SHIPMENTNUMB, text);
    EXPECT_EQ(table.Text(row, TField::LABEL_COMMENT1).size(), 100U);
    EXPECT_EQ(table.Text(row, TField::SHIPMENTNUMB).size(), 50U);
}

TEST(ArticleTable, RowsAreCheckedAgainstTheirCount) {
    TArticleTable table;
    EXPECT_THROW(table.Integer(0, TField::PLU_NUMB), std::out_of_range);
    table.Append();
    EXPECT_NO_THROW(table.Integer(0, TField::PLU_NUMB));
    EXPECT_THROW(table.Integer(1, TField::PLU_NUMB), std::out_of_range);
    EXPECT_THROW(table.RowAt(1), std::out_of_range);
    EXPECT_THROW(table.IndexOf(1), std::out_of_range);
}

TEST(ArticleTable, ThousandsOfRowsKeepTheirTexts) {
    TArticleTable table;
    constexpr TRowId kRows = 20000;
    for (TRowId row = 0; row < kRows; ++row) {
        ASSERT_EQ(table.Append(), row);
        table.SetText(row, TField::PLU_NAME, "name " + std::to_string(row));
        table.SetText(row, TField::PRIMARYUNIT_NAME, "кг"_cp1251);
    }
    for (TRowId row = 0; row < kRows; ++row) {
        ASSERT_EQ(table.Text(row, TField::PLU_NAME), "name " + std::to_string(row));
        ASSERT_EQ(table.Text(row, TField::PRIMARYUNIT_NAME), "кг"_cp1251);
    }
}

TEST(ArticleTable, SetOrderMovesPlacesAndKeepsIdentities) {
    TArticleTable table;
    for (int i = 0; i < 3; ++i)
        table.SetInteger(table.Append(), TField::PLU_NUMB, 10 + i);
    table.SetOrder({2, 0, 1});
    EXPECT_EQ(table.RowAt(0), 2U);
    EXPECT_EQ(table.IndexOf(2), 0U);
    EXPECT_EQ(table.IndexOf(0), 1U);
    EXPECT_EQ(table.IndexOf(1), 2U);
    EXPECT_EQ(table.Integer(2, TField::PLU_NUMB), 12);
    EXPECT_EQ(table.Append(), 3U);
    EXPECT_EQ(table.RowAt(3), 3U);
}

TEST(ArticleTable, ClearEmptiesAndFrees) {
    TArticleTable table;
    for (int i = 0; i < 1000; ++i)
        table.SetText(table.Append(), TField::PLU_NAME, std::to_string(i));
    table.Clear();
    EXPECT_EQ(table.RowCount(), 0U);
    EXPECT_EQ(table.MemoryUsed(), 0U);
    EXPECT_THROW(table.Text(0, TField::PLU_NAME), std::out_of_range);
    table.SetText(table.Append(), TField::PLU_NAME, "again");
    EXPECT_EQ(table.Text(0, TField::PLU_NAME), "again");
}

TEST(ArticleTable, ACopyIsIndependent) {
    TArticleTable table;
    table.SetText(table.Append(), TField::PLU_NAME, "first");
    TArticleTable copy = table;
    table.Clear();
    copy.SetText(copy.Append(), TField::PLU_NAME, "second");
    ASSERT_EQ(copy.RowCount(), 2U);
    EXPECT_EQ(copy.Text(0, TField::PLU_NAME), "first");
    EXPECT_EQ(copy.Text(1, TField::PLU_NAME), "second");
}

TEST(ArticleTable, PlainTextHasTheSystemsDecimalSeparator) {
    TArticleTable table;
    const TRowId row = table.Append();
    table.SetInteger(row, TField::PLU_NUMB, -5);
    table.SetFloat(row, TField::PLU_SELL_PRICE, 12.5);
    table.SetText(row, TField::PLU_SELL_DISABLED, "1");
    EXPECT_EQ(table.AsText(row, TField::PLU_NUMB, Comma()), "-5");
    EXPECT_EQ(table.AsText(row, TField::PLU_SELL_PRICE, Comma()), "12,5");
    EXPECT_EQ(table.AsText(row, TField::PLU_SELL_PRICE, Point()), "12.5");
    EXPECT_EQ(table.AsText(row, TField::PLU_SELL_DISABLED, Comma()), "1");
    EXPECT_EQ(table.AsText(row, TField::HasActivePromotion, Comma()), "0");
    table.SetBoolean(row, TField::HasActivePromotion, true);
    EXPECT_EQ(table.AsText(row, TField::HasActivePromotion, Comma()), "1");
}

TEST(ArticleTable, PricesAreShownByTheirFormats) {
    TArticleTable table;
    const TRowId row = table.Append();
    for (const TFieldInfo& info : kFields)
        if (info.type == TFieldType::Float) table.SetFloat(row, info.field, 12.5);
    EXPECT_EQ(Shown(table, TField::PLU_BUY_PRICE), "12,500");
    EXPECT_EQ(Shown(table, TField::PLU_BUY_PRICE_LV), "12,500 лв");
    EXPECT_EQ(Shown(table, TField::PLU_SELL_PRICE), "12,50");
    EXPECT_EQ(Shown(table, TField::PLU_TRADE_PRICE), "12,50");
    EXPECT_EQ(Shown(table, TField::PLU_SELL_PRICE_LV), "12,50 лв");
    EXPECT_EQ(Shown(table, TField::PLU_TRADE_PRICE_LV), "12,50 лв");
    EXPECT_EQ(Shown(table, TField::PromoPrice), "12,5000");
    EXPECT_EQ(ToUtf8(table.DisplayText(row, TField::PLU_SELL_PRICE_LV, Point(), kLev)), "12.50 лв");
}

TEST(ArticleTable, WithNoBaseCurrencyThePriceFormatsEndInASingleBlank) {
    TArticleTable table;
    table.SetFloat(table.Append(), TField::PLU_SELL_PRICE_LV, 3);
    EXPECT_EQ(Shown(table, TField::PLU_SELL_PRICE_LV, ""), "3,00 ");
    EXPECT_EQ(Shown(table, TField::PLU_BUY_PRICE_LV, ""), "0,000 ");
}

TEST(ArticleTable, TheTaxRateHasTwoDigitsAndALiteralPercentSign) {
    TArticleTable table;
    const TRowId row = table.Append();
    table.SetFloat(row, TField::TAX_GROUP_WAT, 20);
    EXPECT_EQ(Shown(table, TField::TAX_GROUP_WAT), "20,00%");
    table.SetFloat(row, TField::TAX_GROUP_WAT, 9);
    EXPECT_EQ(Shown(table, TField::TAX_GROUP_WAT), "09,00%");
    table.SetFloat(row, TField::TAX_GROUP_WAT, 0);
    EXPECT_EQ(Shown(table, TField::TAX_GROUP_WAT), "00,00%");
}

TEST(ArticleTable, FlagsAreShownAsYesAndNoAndAnythingElseAsEmpty) {
    TArticleTable table;
    const TRowId row = table.Append();
    for (const TField field : {TField::PRIMARYUNIT_ONLY_INT, TField::PLU_SELL_DISABLED}) {
        EXPECT_EQ(Shown(table, field), "");
        table.SetText(row, field, "0");
        EXPECT_EQ(Shown(table, field), "НЕ");
        table.SetText(row, field, "1");
        EXPECT_EQ(Shown(table, field), "ДА");
        table.SetText(row, field, "2");
        EXPECT_EQ(Shown(table, field), "");
        table.SetText(row, field, "01");
        EXPECT_EQ(Shown(table, field), "");
    }
    EXPECT_EQ(Shown(table, TField::HasActivePromotion), "НЕ");
    table.SetBoolean(row, TField::HasActivePromotion, true);
    EXPECT_EQ(Shown(table, TField::HasActivePromotion), "ДА");
}

TEST(ArticleTable, OtherFieldsAreShownAsTheyAre) {
    TArticleTable table;
    const TRowId row = table.Append();
    table.SetInteger(row, TField::PLU_NUMB, 1001);
    table.SetInteger(row, TField::PR_ID, -1);
    table.SetText(row, TField::PLU_FORSCALES, "0");
    EXPECT_EQ(Shown(table, TField::PLU_NUMB), "1001");
    EXPECT_EQ(Shown(table, TField::PR_ID), "-1");
    EXPECT_EQ(Shown(table, TField::PLU_FORSCALES), "0");
}

// A shop's typical article: the texts that differ from row to row, and those that repeat.
void AppendTypical(TArticleTable& table, int number) {
    const TRowId row = table.Append();
    const std::string digits = std::to_string(100000 + number);
    table.SetText(row, TField::PLU_N_NUMB, "KOD-" + digits);
    table.SetText(row, TField::PLU_NAME, "Article name " + digits);
    table.SetText(row, TField::PLU_ECR_NAME, "ARTICLE " + digits);
    table.SetText(row, TField::PLU_FOREGHN_NAME, "Label name " + digits);
    table.SetText(row, TField::PLU_BARCODE, digits.substr(1));
    table.SetText(row, TField::LABEL_BESTBEFORE, std::to_string(number % 30));
    table.SetText(row, TField::PRIMARYUNIT_NAME, "кг"_cp1251);
    table.SetText(row, TField::PRIMARYUNIT_ONLY_INT, "0");
    table.SetText(row, TField::PLU_SELL_DISABLED, "0");
    table.SetText(row, TField::CURR_NAME, "Български лев"_cp1251);
    table.SetText(row, TField::CURR_SELL_NAME, "Български лев"_cp1251);
    table.SetText(row, TField::PLU_FORSCALES, "1,2");
    table.SetText(row, TField::PLU_GRP_NAME, "Group " + std::to_string(number / 50 % 40));
    table.SetText(row, TField::LABEL_COMMENT1, "Ingredients of article " + digits + ", salt");
    table.SetText(row, TField::LABEL_COMMENT2, "Съхранение от 0 до +4 градуса"_cp1251);
    table.SetText(row, TField::LABEL_COMMENT3, "Произход: България"_cp1251);
    table.SetText(row, TField::SHIPMENTNUMB, "L" + digits);
}

TEST(ArticleTable, ATypicalRowTakesAtMost400Bytes) {
    TArticleTable table;
    constexpr int kRows = 100000;
    for (int i = 0; i < kRows; ++i)
        AppendTypical(table, i);
    EXPECT_LE(table.MemoryUsed() / kRows, 400U);
}

TEST(ArticleTable, ARowIsAppendedWithTheTextsThatWereStoredForIt) {
    TArticleTable table;
    constexpr std::int32_t kRows = 1000;
    table.Reserve(kRows);
    // Eight numbers with a fraction, three without, 21 places of texts, a flag, and two numbers for
    // the order.
    EXPECT_EQ(table.MemoryUsed(), kRows * (8U * 8 + 3 * 4 + 21 * 4 + 1 + 2 * 4));
    for (std::int32_t number = 0; number < kRows; ++number) {
        TArticleTable::TRow row{};
        row.integers[FieldSlot(TField::PLU_SCALE_NUMB)] = number;
        row.floats[FieldSlot(TField::PLU_SELL_PRICE)] = number / 2.0;
        row.texts[FieldSlot(TField::PLU_NAME)] =
            table.StoreText(TField::PLU_NAME, "A name that is cut " + std::to_string(number));
        EXPECT_EQ(table.Append(row), static_cast<TRowId>(number));
    }
    EXPECT_EQ(table.RowCount(), 1000U);
    EXPECT_EQ(table.Integer(7, TField::PLU_SCALE_NUMB), 7);
    EXPECT_EQ(table.Integer(7, TField::PLU_NUMB), 0);
    EXPECT_EQ(table.Float(7, TField::PLU_SELL_PRICE), 3.5);
    EXPECT_EQ(table.Text(7, TField::PLU_NAME), "A name that is cut 7");
    EXPECT_EQ(table.Text(999, TField::PLU_NAME), "A name that is cut 9");
    EXPECT_EQ(table.Text(7, TField::PLU_ECR_NAME), "");
    EXPECT_EQ(table.RowAt(999), 999U);
}

}  // namespace
}  // namespace tolvane
