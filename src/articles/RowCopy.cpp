#include "articles/RowCopy.h"

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

// A mebibyte, which the system takes back when it is freed.
constexpr std::size_t kRowsPerBlock = 0x100000 / sizeof(TArticleTable::TRow);

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

TTextArena::TPosition TRowCopy::StoredText(const TSource& source, const TColumnValue& value) {
    std::string converted;
    std::string_view text = value.text;
    if (value.kind != TValueKind::Text) {
        converted = ValueAsText(value, regional_);
        text = converted;
    }
    if (source.field == LABEL_BESTBEFORE && text.empty()) text = "0";
    return articles_.StoreText(source.field, text);
}

TArticleTable::TRow& TRowCopy::NewRow() {
    const std::size_t inBlock = rowCount_ % kRowsPerBlock;
    if (rowCount_ / kRowsPerBlock == blocks_.size())
        blocks_.push_back(std::make_unique_for_overwrite<TArticleTable::TRow[]>(kRowsPerBlock));
    return blocks_.back()[inBlock];
}

void TRowCopy::Append(std::span<const TColumnValue> values) {
    TArticleTable::TRow row{};
    for (const TSource& source : integers_)
        row.integers[FieldSlot(source.field)] = IntegerOf(source, values[source.column]);
    for (const TSource& source : floats_)
        row.floats[FieldSlot(source.field)] =
            ValueAsFloat(values[source.column], source.alias, regional_);
    for (const TSource& source : texts_)
        row.texts[FieldSlot(source.field)] = StoredText(source, values[source.column]);
    NewRow() = row;
    ++rowCount_;
}

void TRowCopy::Finish() {
    articles_.Reserve(articles_.RowCount() + rowCount_);
    for (std::size_t row = 0; row < rowCount_; ++row) {
        const std::size_t block = row / kRowsPerBlock;
        articles_.Append(blocks_[block][row % kRowsPerBlock]);
        if ((row + 1) % kRowsPerBlock == 0) blocks_[block].reset();
    }
    blocks_.clear();
    rowCount_ = 0;
}

}  // namespace tolvane
