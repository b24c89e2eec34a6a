#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "text/Cp1251.h"

namespace tolvane {

// The fields of the article table, in order.
enum class TField : std::uint8_t {
    PLU_NUMB,
    PLU_N_NUMB,
    PLU_SCALE_NUMB,
    PLU_NAME,
    PLU_ECR_NAME,
    PLU_FOREGHN_NAME,
    PLU_BARCODE,
    LABEL_BESTBEFORE,
    PRIMARYUNIT_NAME,
    PRIMARYUNIT_ONLY_INT,
    PLU_SELL_DISABLED,
    PLU_BUY_PRICE,
    CURR_NAME,
    PLU_BUY_PRICE_LV,
    PLU_SELL_PRICE,
    PLU_TRADE_PRICE,
    CURR_SELL_NAME,
    PLU_SELL_PRICE_LV,
    PLU_TRADE_PRICE_LV,
    PLU_FORTERMINALS,
    PLU_FORSCALES,
    TAX_GROUP_NAME,
    TAX_GROUP_WAT,
    HasActivePromotion,
    PR_ID,
    PromoPrice,
    PromoFromData,
    PromoToDate,
    PLU_GRP_NAME,
    LABEL_COMMENT1,
    LABEL_COMMENT2,
    LABEL_COMMENT3,
    SHIPMENTNUMB,
};

enum class TFieldType : std::uint8_t { Integer, Text, Float, Boolean };

// How a field's value is shown.
enum class TDisplay : std::uint8_t {
    Plain,              // as its text
    YesNo,              // "ДА" / "НЕ"
    TwoDecimals,        // 0.00
    ThreeDecimals,      // 0.000
    FourDecimals,       // 0.0000
    TwoDecimalsBase,    // 0.00 and the base currency
    ThreeDecimalsBase,  // 0.000 and the base currency
    Percent,            // 00.00%
};

struct TFieldInfo {
    TField field;
    std::string_view name;  // ASCII
    TFieldType type;
    std::string_view label;  // code page 1251
    TDisplay display;
    std::uint8_t maxChars = 0;  // of a text
};

namespace detail {

using enum TField;
using enum TFieldType;
using enum TDisplay;

inline constexpr std::uint8_t kShort = 20;
inline constexpr std::uint8_t kLot = 50;
inline constexpr std::uint8_t kComment = 100;

inline constexpr auto kFieldTable = std::to_array<TFieldInfo>({
    {PLU_NUMB, "PLU_NUMB", Integer, "Арт.No:"_cp1251, Plain},
    {PLU_N_NUMB, "PLU_N_NUMB", Text, "Ном.код"_cp1251, Plain, kShort},
    {PLU_SCALE_NUMB, "PLU_SCALE_NUMB", Integer, "No: за везна"_cp1251, Plain},
    {PLU_NAME, "PLU_NAME", Text, "Име"_cp1251, Plain, kShort},
    {PLU_ECR_NAME, "PLU_ECR_NAME", Text, "Касово име"_cp1251, Plain, kShort},
    {PLU_FOREGHN_NAME, "PLU_FOREGHN_NAME", Text, "Етикетно име"_cp1251, Plain, kShort},
    {PLU_BARCODE, "PLU_BARCODE", Text, "Баркод"_cp1251, Plain, kShort},
    {LABEL_BESTBEFORE, "LABEL_BESTBEFORE", Text, "Срок годност"_cp1251, Plain, kShort},
    {PRIMARYUNIT_NAME, "PRIMARYUNIT_NAME", Text, "Мярка"_cp1251, Plain, kShort},
    {PRIMARYUNIT_ONLY_INT, "PRIMARYUNIT_ONLY_INT", Text, "Цели колич."_cp1251, YesNo, kShort},
    {PLU_SELL_DISABLED, "PLU_SELL_DISABLED", Text, "Забранен"_cp1251, YesNo, kShort},
    {PLU_BUY_PRICE, "PLU_BUY_PRICE", Float, "Пок.цена"_cp1251, ThreeDecimals},
    {CURR_NAME, "CURR_NAME", Text, "Пок.вал."_cp1251, Plain, kShort},
    {PLU_BUY_PRICE_LV, "PLU_BUY_PRICE_LV", Float, "Пок.ЛВ.цена"_cp1251, ThreeDecimalsBase},
    {PLU_SELL_PRICE, "PLU_SELL_PRICE", Float, "Прод.цена"_cp1251, TwoDecimals},
    {PLU_TRADE_PRICE, "PLU_TRADE_PRICE", Float, "Прод.цена едро"_cp1251, TwoDecimals},
    {CURR_SELL_NAME, "CURR_SELL_NAME", Text, "Прод.вал."_cp1251, Plain, kShort},
    {PLU_SELL_PRICE_LV, "PLU_SELL_PRICE_LV", Float, "Прод.ЛВ.цена"_cp1251, TwoDecimalsBase},
    {PLU_TRADE_PRICE_LV, "PLU_TRADE_PRICE_LV", Float, "Прод.ЛВ.цена едро"_cp1251, TwoDecimalsBase},
    {PLU_FORTERMINALS, "PLU_FORTERMINALS", Text, "За терм."_cp1251, Plain, kShort},
    {PLU_FORSCALES, "PLU_FORSCALES", Text, "За везни"_cp1251, Plain, kShort},
    {TAX_GROUP_NAME, "TAX_GROUP_NAME", Text, "Дан.Гр."_cp1251, Plain, kShort},
    {TAX_GROUP_WAT, "TAX_GROUP_WAT", Float, "ДДС"_cp1251, Percent},
    {HasActivePromotion, "HasActivePromotion", Boolean, "В промоция"_cp1251, YesNo},
    {PR_ID, "PR_ID", Integer, "PR_ID", Plain},
    {PromoPrice, "PromoPrice", Float, "Пром.цена"_cp1251, FourDecimals},
    {PromoFromData, "PromoFromData", Text, "В пром.от"_cp1251, Plain, kShort},
    {PromoToDate, "PromoToDate", Text, "В пром.до"_cp1251, Plain, kShort},
    {PLU_GRP_NAME, "PLU_GRP_NAME", Text, "Група"_cp1251, Plain, kShort},
    {LABEL_COMMENT1, "LABEL_COMMENT1", Text, "Ет. текст 1"_cp1251, Plain, kComment},
    {LABEL_COMMENT2, "LABEL_COMMENT2", Text, "Ет. текст 2"_cp1251, Plain, kComment},
    {LABEL_COMMENT3, "LABEL_COMMENT3", Text, "Ет. текст 3"_cp1251, Plain, kComment},
    {SHIPMENTNUMB, "SHIPMENTNUMB", Text, "Партида (самок.)"_cp1251, Plain, kLot},
});

constexpr bool FieldsAreInOrder() {
    for (std::size_t i = 0; i < kFieldTable.size(); ++i)
        if (static_cast<std::size_t>(kFieldTable[i].field) != i) return false;
    return true;
}
static_assert(FieldsAreInOrder());

constexpr std::array<std::uint8_t, kFieldTable.size()> FieldSlots() {
    std::array<std::uint8_t, kFieldTable.size()> slots{};
    std::array<std::uint8_t, 4> next{};  // by type
    for (std::size_t i = 0; i < kFieldTable.size(); ++i)
        slots[i] = next[static_cast<std::size_t>(kFieldTable[i].type)]++;
    return slots;
}

}  // namespace detail

// Every field, in the order of TField.
inline constexpr auto& kFields = detail::kFieldTable;
inline constexpr std::size_t kFieldCount = kFields.size();
// The number of each field among the fields of its type, from 0.
inline constexpr std::array<std::uint8_t, kFieldCount> kFieldSlots = detail::FieldSlots();

constexpr std::size_t CountOfType(TFieldType type) {
    std::size_t count = 0;
    for (const TFieldInfo& info : kFields)
        count += info.type == type ? 1U : 0U;
    return count;
}

constexpr const TFieldInfo& FieldInfo(TField field) {
    return kFields[static_cast<std::size_t>(field)];
}
constexpr std::size_t FieldSlot(TField field) {
    return kFieldSlots[static_cast<std::size_t>(field)];
}
// By its exact name; nothing when there is no such field.
std::optional<TField> FieldByName(std::string_view name);

}  // namespace tolvane
