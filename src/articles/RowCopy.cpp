#include "articles/RowCopy.h"

#include <array>
#include <string>

#include "database/DatabaseError.h"
#include "text/Numbers.h"

namespace tolvane {
namespace {

using enum TField;

struct TFieldSource {
    TField field;
    std::string_view alias;
};

// The query's column of each field. The fields of promotions start empty; the promotion pass fills
// them.
constexpr auto kSources = std::to_array<TFieldSource>({
    {PLU_NUMB, "PLU_NUMB"},
    {PLU_SCALE_NUMB, "Код за везна"_cp1251},
    {PLU_N_NUMB, "Ном.код"_cp1251},
    {PLU_NAME, "Име"_cp1251},
    {PLU_ECR_NAME, "Касово име"_cp1251},
    {PLU_FOREGHN_NAME, "Етикетно име"_cp1251},
    {PLU_BARCODE, "Баркод"_cp1251},
    {LABEL_BESTBEFORE, "LABEL_BESTBEFORE"},
    {LABEL_COMMENT1, "LABEL_COMMENT1"},
    {LABEL_COMMENT2, "LABEL_COMMENT2"},
    {LABEL_COMMENT3, "LABEL_COMMENT3"},
    {PRIMARYUNIT_NAME, "Мярка"_cp1251},
    {PRIMARYUNIT_ONLY_INT, "Цели колич."_cp1251},
    {PLU_SELL_DISABLED, "Забранен"_cp1251},
    {PLU_BUY_PRICE, "Пок.цена"_cp1251},
    {PLU_BUY_PRICE_LV, "Пок.ЛВ.цена"_cp1251},
    {PLU_SELL_PRICE, "PLU_SELL_PRICE"},
    {PLU_TRADE_PRICE, "Прод.цена едро"_cp1251},
    {PLU_SELL_PRICE_LV, "Прод.ЛВ.цена"_cp1251},
    {PLU_TRADE_PRICE_LV, "Прод.ЛВ.цена едро"_cp1251},
    {CURR_NAME, "Пок.вал."_cp1251},
    {CURR_SELL_NAME, "Прод.Вал."_cp1251},
    {PLU_FORTERMINALS, "За терм."_cp1251},
    {PLU_FORSCALES, "За везни"_cp1251},
    {TAX_GROUP_NAME, "Дан.Гр."_cp1251},
    {TAX_GROUP_WAT, "ДДС"_cp1251},
    {PLU_GRP_NAME, "PGRP_NAME"},
    {SHIPMENTNUMB, "SHIPMENTNUMB"},
    {PR_ID, "PR_ID"},
});

constexpr std::int32_t kNoPromotion = -1;

// The scale number is read from its text, whatever its type: "7" and 7 are the same, and a blank
// text is not a number.
std::int32_t ScaleNumber(const std::string& text) {
    if (const auto number = ParseInteger(text)) return *number;
    throw TDatabaseError(std::string("Колона "_cp1251)
                             .append("\"PLU_SCALE_NUMB\": \"")
                             .append(text)
                             .append("\" не е цяло число"_cp1251));
}

}  // namespace

TRowCopy::TRowCopy(const TQuery& query, TArticleTable& articles, const TRegionalSettings& regional)
    : articles_(articles), regional_(regional) {
    for (const TFieldSource& source : kSources) {
        const TSource found{source.field, source.alias, query.Column(source.alias)};
        switch (FieldInfo(source.field).type) {
            case TFieldType::Integer:
                integers_.push_back(found);
                break;
            case TFieldType::Float:
                floats_.push_back(found);
                break;
            default:
                texts_.push_back(found);
        }
    }
}

std::int32_t TRowCopy::IntegerOf(const TSource& source, const TColumnValue& value) const {
    if (source.field == PLU_SCALE_NUMB) return ScaleNumber(ValueAsText(value, regional_));
    if (source.field == PR_ID && value.kind == TValueKind::Null) return kNoPromotion;
    return ValueAsInteger(value, source.alias, regional_);
}

void TRowCopy::CopyText(const TSource& source, const TColumnValue& value, TRowId to) {
    std::string converted;
    std::string_view text = value.text;
    if (value.kind != TValueKind::Text) {
        converted = ValueAsText(value, regional_);
        text = converted;
    }
    if (source.field == LABEL_BESTBEFORE && text.empty()) text = "0";
    articles_.SetText(to, source.field, text);
}

void TRowCopy::Append(std::span<const TColumnValue> row) {
    std::array<std::int32_t, kFieldCount> integers{};
    std::array<double, kFieldCount> floats{};
    for (std::size_t i = 0; i < integers_.size(); ++i)
        integers[i] = IntegerOf(integers_[i], row[integers_[i].column]);
    for (std::size_t i = 0; i < floats_.size(); ++i)
        floats[i] = ValueAsFloat(row[floats_[i].column], floats_[i].alias, regional_);

    const TRowId to = articles_.Append();
    for (std::size_t i = 0; i < integers_.size(); ++i)
        articles_.SetInteger(to, integers_[i].field, integers[i]);
    for (std::size_t i = 0; i < floats_.size(); ++i)
        articles_.SetFloat(to, floats_[i].field, floats[i]);
    for (const TSource& source : texts_)
        CopyText(source, row[source.column], to);
}

}  // namespace tolvane
