#include "articles/ArticleFields.h"

#include <gtest/gtest.h>

#include <array>
#include <string_view>

#include "articles/GridColumns.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

struct TExpectedField {
    std::string_view name;
    TFieldType type;
    int maxChars;
    std::string_view label;  // UTF-8
    TDisplay display;
};

constexpr std::array<TExpectedField, 33> kExpected = {{
    {"PLU_NUMB", TFieldType::Integer, 0, "Арт.No:", TDisplay::Plain},
    {"PLU_N_NUMB", TFieldType::Text, 20, "Ном.код", TDisplay::Plain},
    {"PLU_SCALE_NUMB", TFieldType::Integer, 0, "No: за везна", TDisplay::Plain},
    {"PLU_NAME", TFieldType::Text, 20, "Име", TDisplay::Plain},
    {"PLU_ECR_NAME", TFieldType::Text, 20, "Касово име", TDisplay::Plain},
    {"PLU_FOREGHN_NAME", TFieldType::Text, 20, "Етикетно име", TDisplay::Plain},
    {"PLU_BARCODE", TFieldType::Text, 20, "Баркод", TDisplay::Plain},
    {"LABEL_BESTBEFORE", TFieldType::Text, 20, "Срок годност", TDisplay::Plain},
    {"PRIMARYUNIT_NAME", TFieldType::Text, 20, "Мярка", TDisplay::Plain},
    {"PRIMARYUNIT_ONLY_INT", TFieldType::Text, 20, "Цели колич.", TDisplay::YesNo},
    {"PLU_SELL_DISABLED", TFieldType::Text, 20, "Забранен", TDisplay::YesNo},
    {"PLU_BUY_PRICE", TFieldType::Float, 0, "Пок.цена", TDisplay::ThreeDecimals},
    {"CURR_NAME", TFieldType::Text, 20, "Пок.вал.", TDisplay::Plain},
    {"PLU_BUY_PRICE_LV", TFieldType::Float, 0, "Пок.ЛВ.цена", TDisplay::ThreeDecimalsBase},
    {"PLU_SELL_PRICE", TFieldType::Float, 0, "Прод.цена", TDisplay::TwoDecimals},
    {"PLU_TRADE_PRICE", TFieldType::Float, 0, "Прод.цена едро", TDisplay::TwoDecimals},
    {"CURR_SELL_NAME", TFieldType::Text, 20, "Прод.вал.", TDisplay::Plain},
    {"PLU_SELL_PRICE_LV", TFieldType::Float, 0, "Прод.ЛВ.цена", TDisplay::TwoDecimalsBase},
    {"PLU_TRADE_PRICE_LV", TFieldType::Float, 0, "Прод.ЛВ.цена едро", TDisplay::TwoDecimalsBase},
    {"PLU_FORTERMINALS", TFieldType::Text, 20, "За терм.", TDisplay::Plain},
    {"PLU_FORSCALES", TFieldType::Text, 20, "За везни", TDisplay::Plain},
    {"TAX_GROUP_NAME", TFieldType::Text, 20, "Дан.Гр.", TDisplay::Plain},
    {"TAX_GROUP_WAT", TFieldType::Float, 0, "ДДС", TDisplay::Percent},
    {"HasActivePromotion", TFieldType::Boolean, 0, "В промоция", TDisplay::YesNo},
    {"PR_ID", TFieldType::Integer, 0, "PR_ID", TDisplay::Plain},
    {"PromoPrice", TFieldType::Float, 0, "Пром.цена", TDisplay::FourDecimals},
    {"PromoFromData", TFieldType::Text, 20, "В пром.от", TDisplay::Plain},
    {"PromoToDate", TFieldType::Text, 20, "В пром.до", TDisplay::Plain},
    {"PLU_GRP_NAME", TFieldType::Text, 20, "Група", TDisplay::Plain},
    {"LABEL_COMMENT1", TFieldType::Text, 100, "Ет. текст 1", TDisplay::Plain},
    {"LABEL_COMMENT2", TFieldType::Text, 100, "Ет. текст 2", TDisplay::Plain},
    {"LABEL_COMMENT3", TFieldType::Text, 100, "Ет. текст 3", TDisplay::Plain},
    {"SHIPMENTNUMB", TFieldType::Text, 50, "Партида (самок.)", TDisplay::Plain},
}};

struct TExpectedColumn {
    std::string_view field;
    std::string_view title;  // UTF-8
    int width;               // 0: any
};

constexpr std::array<TExpectedColumn, 32> kExpectedColumns = {{
    {"PLU_NUMB", "Арт.No:", 0},
    {"PLU_N_NUMB", "Номенкл.No", 0},
    {"PLU_SCALE_NUMB", "No: за везна", 0},
    {"PLU_NAME", "Име", 0},
    {"PLU_ECR_NAME", "Касово име", 0},
    {"PLU_FOREGHN_NAME", "Етикетно име", 0},
    {"PLU_BARCODE", "Баркод", 0},
    {"LABEL_BESTBEFORE", "Срок годност", 0},
    {"PLU_BUY_PRICE", "Пок.цена", 0},
    {"PLU_BUY_PRICE_LV", "Пок.ЛВ.цена", 0},
    {"PLU_SELL_PRICE", "Прод.цена", 0},
    {"PLU_SELL_PRICE_LV", "Прод.ЛВ.цена", 0},
    {"PLU_TRADE_PRICE", "Прод.цена едро", 0},
    {"PLU_TRADE_PRICE_LV", "Прод.ЛВ.цена едро", 0},
    {"PLU_FORSCALES", "За везни", 0},
    {"PLU_FORTERMINALS", "За терм.", 0},
    {"TAX_GROUP_NAME", "Дан.Гр.", 0},
    {"TAX_GROUP_WAT", "ДДС", 0},
    {"HasActivePromotion", "В промоция", 0},
    {"PromoPrice", "Пром.цена", 0},
    {"PromoFromData", "В пром.от", 0},
    {"PromoToDate", "В пром.до", 0},
    {"PLU_GRP_NAME", "Група", 0},
    {"PRIMARYUNIT_NAME", "Мярка", 0},
    {"PRIMARYUNIT_ONLY_INT", "Цели колич.", 0},
    {"PLU_SELL_DISABLED", "Забранен", 0},
    {"CURR_NAME", "Пок.вал.", 0},
    {"CURR_SELL_NAME", "Прод.вал.", 0},
    {"LABEL_COMMENT1", "Ет. текст 1", 126},
    {"LABEL_COMMENT2", "Ет. текст 2", 119},
    {"LABEL_COMMENT3", "Ет. текст 3", 122},
    {"SHIPMENTNUMB", "Партида (самок.)", 99},
}};

TEST(ArticleFields, AreThe33InOrder) {
    ASSERT_EQ(kFields.size(), kExpected.size());
    for (std::size_t i = 0; i < kExpected.size(); ++i) {
        const TFieldInfo& info = kFields[i];
        EXPECT_EQ(static_cast<std::size_t>(info.field), i);
        EXPECT_EQ(info.name, kExpected[i].name);
        EXPECT_EQ(info.type, kExpected[i].type) << info.name;
        EXPECT_EQ(info.maxChars, kExpected[i].maxChars) << info.name;
        EXPECT_EQ(ToUtf8(info.label), kExpected[i].label) << info.name;
        EXPECT_EQ(info.display, kExpected[i].display) << info.name;
        EXPECT_EQ(&FieldInfo(info.field), &info);
    }
}

TEST(ArticleFields, AreFoundByTheirExactName) {
    EXPECT_EQ(FieldByName("PLU_NUMB"), TField::PLU_NUMB);
    EXPECT_EQ(FieldByName("HasActivePromotion"), TField::HasActivePromotion);
    EXPECT_EQ(FieldByName("SHIPMENTNUMB"), TField::SHIPMENTNUMB);
    EXPECT_EQ(FieldByName("plu_numb"), std::nullopt);
    EXPECT_EQ(FieldByName(""), std::nullopt);
}

TEST(GridColumns, AreThe32InOrderWithTheirTitlesAndWidths) {
    ASSERT_EQ(kGridColumns.size(), kExpectedColumns.size());
    for (std::size_t i = 0; i < kExpectedColumns.size(); ++i) {
        const TGridColumn& column = kGridColumns[i];
        EXPECT_EQ(FieldInfo(column.field).name, kExpectedColumns[i].field);
        EXPECT_EQ(ToUtf8(TitleOf(column.field)), kExpectedColumns[i].title);
        if (kExpectedColumns[i].width != 0)
            EXPECT_EQ(column.width, kExpectedColumns[i].width);
        else
            EXPECT_GT(column.width, 0);
    }
}

}  // namespace
}  // namespace tolvane
