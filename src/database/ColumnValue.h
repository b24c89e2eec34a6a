#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "system/RegionalSettings.h"

namespace tolvane {

enum class TValueKind : std::uint8_t {
    Null,
    Integer,
    Float,
    Text,
    Date,
    Time,
    Timestamp,
    Boolean,
};

// One value of one row, whatever the server's type was.
struct TColumnValue {
    TValueKind kind = TValueKind::Null;
    std::int8_t scale = 0;       // Integer: the value is integer * 10 ^ scale
    std::int32_t days = 0;       // Date, Timestamp: days since 17 November 1858
    std::uint32_t ticks = 0;     // Time, Timestamp: ten-thousandths of a second since midnight
    std::int64_t integer = 0;    // Integer, Boolean (0 or 1)
    double number = 0;           // Float
    std::string_view text = {};  // Text, code page 1251
};

// A value as text: null is empty, a Boolean "1" or "0", a timestamp at midnight only its date.
std::string ValueAsText(const TColumnValue& value, const TRegionalSettings& regional);

// A value as a number; null is 0. A text may have the system's decimal separator or a point.
// Throw TDatabaseError naming the column and the value when it is not a number, or for the first
// one that is not a whole number or is out of range.
std::int32_t ValueAsInteger(const TColumnValue& value, std::string_view column,
                            const TRegionalSettings& regional);
double ValueAsFloat(const TColumnValue& value, std::string_view column,
                    const TRegionalSettings& regional);

}  // namespace tolvane
