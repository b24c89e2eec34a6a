#pragma once

#include <array>
#include <string_view>

#include "articles/ArticleFields.h"

namespace tolvane {

struct TGridColumn {
    TField field;
    int width;                 // pixels at 96 dots per inch
    std::string_view title{};  // empty: the field's label
};

namespace detail {

// Default widths, by what the field holds.
inline constexpr int kNumberWidth = 88;
inline constexpr int kPriceWidth = 118;
inline constexpr int kFlagWidth = 84;
inline constexpr int kTextWidth = 124;

}  // namespace detail

// The columns of the article grid at first start, in order; PR_ID has no column.
inline constexpr auto kGridColumns = std::to_array<TGridColumn>({
    {TField::PLU_NUMB, detail::kNumberWidth},
    {TField::PLU_N_NUMB, detail::kNumberWidth, "Номенкл.No"_cp1251},
    {TField::PLU_SCALE_NUMB, detail::kNumberWidth},
    {TField::PLU_NAME, detail::kTextWidth},
    {TField::PLU_ECR_NAME, detail::kTextWidth},
    {TField::PLU_FOREGHN_NAME, detail::kTextWidth},
    {TField::PLU_BARCODE, detail::kNumberWidth},
    {TField::LABEL_BESTBEFORE, detail::kNumberWidth},
    {TField::PLU_BUY_PRICE, detail::kPriceWidth},
    {TField::PLU_BUY_PRICE_LV, detail::kPriceWidth},
    {TField::PLU_SELL_PRICE, detail::kPriceWidth},
    {TField::PLU_SELL_PRICE_LV, detail::kPriceWidth},
    {TField::PLU_TRADE_PRICE, detail::kPriceWidth},
    {TField::PLU_TRADE_PRICE_LV, detail::kPriceWidth},
    {TField::PLU_FORSCALES, detail::kFlagWidth},
    {TField::PLU_FORTERMINALS, detail::kFlagWidth},
    {TField::TAX_GROUP_NAME, detail::kFlagWidth},
    {TField::TAX_GROUP_WAT, detail::kFlagWidth},
    {TField::HasActivePromotion, detail::kFlagWidth},
    {TField::PromoPrice, detail::kPriceWidth},
    {TField::PromoFromData, detail::kPriceWidth},
    {TField::PromoToDate, detail::kPriceWidth},
    {TField::PLU_GRP_NAME, detail::kTextWidth},
    {TField::PRIMARYUNIT_NAME, detail::kFlagWidth},
    {TField::PRIMARYUNIT_ONLY_INT, detail::kFlagWidth},
    {TField::PLU_SELL_DISABLED, detail::kFlagWidth},
    {TField::CURR_NAME, detail::kFlagWidth},
    {TField::CURR_SELL_NAME, detail::kFlagWidth},
    {TField::LABEL_COMMENT1, 126},
    {TField::LABEL_COMMENT2, 119},
    {TField::LABEL_COMMENT3, 122},
    {TField::SHIPMENTNUMB, 99},
});

// The column's title; the label of a field that has no column.
inline std::string_view TitleOf(TField field) {
    for (const TGridColumn& column : kGridColumns) {
        if (column.field == field && !column.title.empty()) return column.title;
    }
    return FieldInfo(field).label;
}

}  // namespace tolvane
