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
inline constexpr std::size_t kFieldCount = 33;

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
    std::uint8_t maxChars;   // texts only
    std::string_view label;  // code page 1251
    TDisplay display;
};

extern const std::array<TFieldInfo, kFieldCount> kFields;
// The number of each field among the fields of its type, from 0.
extern const std::array<std::uint8_t, kFieldCount> kFieldSlots;

inline const TFieldInfo& FieldInfo(TField field) {
    return kFields[static_cast<std::size_t>(field)];
}
inline std::size_t FieldSlot(TField field) {
    return kFieldSlots[static_cast<std::size_t>(field)];
}
// Exact name; nothing when there is no such field.
std::optional<TField> FieldByName(std::string_view name);

}  // namespace tolvane
