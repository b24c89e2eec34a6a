#include "tests/support/client/FakeShop.h"

#include <ibase.h>

#include <array>

#include "text/Cp1251.h"

namespace tolvane::test {
namespace {

constexpr auto kArticleColumns = std::to_array<TFakeColumn>({
    {"PLU_NUMB", SQL_LONG, 4},
    {"Код за везна"_cp1251, SQL_LONG, 4},
    {"Ном.код"_cp1251, SQL_VARYING, 20},
    {"Име"_cp1251, SQL_VARYING, 60},
    {"Касово име"_cp1251, SQL_VARYING, 30},
    {"Етикетно име"_cp1251, SQL_VARYING, 60},
    {"Баркод"_cp1251, SQL_VARYING, 13},
    {"LABEL_BESTBEFORE", SQL_VARYING, 10},
    {"LABEL_COMMENT1", SQL_BLOB, 8},
    {"LABEL_COMMENT2", SQL_VARYING, 255},
    {"LABEL_COMMENT3", SQL_VARYING, 255},
    {"Мярка"_cp1251, SQL_TEXT, 5},
    {"Цели колич."_cp1251, SQL_SHORT, 2},
    {"Забранен"_cp1251, SQL_SHORT, 2},
    {"Пок.цена"_cp1251, SQL_INT64, 8, -4},
    {"Пок.ЛВ.цена"_cp1251, SQL_DOUBLE, 8},
    {"PLU_SELL_PRICE", SQL_INT64, 8, -4},
    {"Прод.цена едро"_cp1251, SQL_INT64, 8, -4},
    {"Прод.ЛВ.цена"_cp1251, SQL_DOUBLE, 8},
    {"Прод.ЛВ.цена едро"_cp1251, SQL_DOUBLE, 8},
    {"Пок.вал."_cp1251, SQL_VARYING, 30},
    {"Прод.Вал."_cp1251, SQL_VARYING, 30},
    {"За терм."_cp1251, SQL_VARYING, 20},
    {"За везни"_cp1251, SQL_VARYING, 20},
    {"Дан.Гр."_cp1251, SQL_VARYING, 10},
    {"ДДС"_cp1251, SQL_DOUBLE, 8},
    {"PGRP_NAME", SQL_VARYING, 40},
    {"SHIPMENTNUMB", SQL_VARYING, 40},
    {"PR_ID", SQL_LONG, 4},
});

constexpr std::string_view kApples = "Ябълки от Кюстендил"_cp1251;
constexpr std::string_view kPears = "Круши от Пазарджик"_cp1251;
constexpr std::string_view kEggs = "Яйца от село Бачево"_cp1251;
constexpr std::string_view kOrigin = "Произход: България, област Кюстендил"_cp1251;
constexpr std::string_view kStore = "Да се съхранява на хладно и сухо място"_cp1251;
constexpr std::string_view kLev = "Български лев"_cp1251;
constexpr std::string_view kGroup = "Плодове и зеленчуци"_cp1251;

using TArticleValues = std::array<TFakeValue, kArticleColumns.size()>;

constexpr TArticleValues Article(std::int64_t number, std::string_view name, std::string_view lot,
                                 TFakeValue promotion) {
    const TFakeValue price{.number = 5};
    return {Whole(number),
            Whole(number),
            Words("PL-0000000001"),
            Words(name),
            Words(name),
            Words(name),
            Words("22012"),
            Words("5"),
            Words(kOrigin),
            Words(kStore),
            kNull,
            Words("кг"_cp1251),
            Whole(0),
            Whole(0),
            Whole(40000),
            price,
            Whole(50000),
            Whole(45000),
            price,
            price,
            Words(kLev),
            Words(kLev),
            Words("1"),
            Words("0"),
            Words("Б"_cp1251),
            TFakeValue{.number = 20},
            Words(kGroup),
            Words(lot),
            promotion};
}

constexpr auto kArticles = [] {
    std::array<TFakeValue, 3 * kArticleColumns.size()> values{};
    std::size_t next = 0;
    for (const TArticleValues& article : {Article(1, kApples, "L-2026-11-20-0001", kNull),
                                          Article(2, kPears, "L-2026-11-21-0002", Whole(7)),
                                          Article(3, kEggs, "L-2026-11-22-0003", kNull)})
        for (const TFakeValue& value : article)
            values[next++] = value;
    return values;
}();

constexpr auto kPromotionColumns = std::to_array<TFakeColumn>({
    {"PLU_NUMB", SQL_LONG, 4},
    {"PR_ID", SQL_LONG, 4},
    {"PR_DAYOFWEEK", SQL_VARYING, 7},
    {"PR_FROMTIME", SQL_TYPE_TIME, 4},
    {"PR_TOTIME", SQL_TYPE_TIME, 4},
    {"PR_PACKET_TYPE", SQL_SHORT, 2},
    {"PR_PRICE", SQL_INT64, 8, -4},
    {"CURR_ABR", SQL_VARYING, 5},
    {"PR_FROMDATE", SQL_TIMESTAMP, 8},
    {"PR_TODATE", SQL_TIMESTAMP, 8},
});

constexpr auto kPromotions = std::to_array<TFakeValue>({
    Whole(2),
    Whole(7),
    Words("1111111"),
    kNull,
    kNull,
    Whole(1),
    Whole(39900),
    Words("лв"_cp1251),
    Whole(61365),
    Whole(61405),
});

constexpr auto kTextColumn = std::to_array<TFakeColumn>({{"CURR_ABR", SQL_VARYING, 5}});
constexpr auto kCurrency = std::to_array<TFakeValue>({Words("лв"_cp1251)});
constexpr auto kCountColumn = std::to_array<TFakeColumn>({{"QTTY", SQL_LONG, 4}});
constexpr auto kNoIndex = std::to_array<TFakeValue>({Whole(0)});

constexpr auto kResults = std::to_array<TFakeResult>({
    {"SUPPLIES_PLUCONTROL SPC", kArticleColumns, kArticles},
    {"INNER JOIN PROMOTIONS", kPromotionColumns, kPromotions},
    {"select curr_abr", kTextColumn, kCurrency},
    {"RDB$INDICES", kCountColumn, kNoIndex},
});

}  // namespace

std::span<const TFakeResult> FakeShop() {
    return kResults;
}

std::vector<std::string> ArticleLines(const TArticleTable& articles) {
    const TRegionalSettings regional;
    std::vector<std::string> lines;
    for (const TRowId row : articles.Order()) {
        std::string line;
        for (const TField field :
             {TField::PLU_NUMB, TField::PLU_NAME, TField::LABEL_COMMENT1, TField::PLU_SELL_PRICE_LV,
              TField::SHIPMENTNUMB, TField::PromoPrice})
            line += (line.empty() ? "" : "|") + ToUtf8(articles.AsText(row, field, regional));
        lines.push_back(line);
    }
    return lines;
}

const std::vector<std::string>& FakeShopLines() {
    static const std::vector<std::string> lines = {
        "1|Ябълки от Кюстендил|Произход: България, област Кюстендил|5|L-2026-11-20-0001|0",
        "2|Круши от Пазарджик|Произход: България, област Кюстендил|5|L-2026-11-21-0002|"
        "3,99",
        "3|Яйца от село Бачево|Произход: България, област Кюстендил|5|L-2026-11-22-0003|0"};
    return lines;
}

}  // namespace tolvane::test
