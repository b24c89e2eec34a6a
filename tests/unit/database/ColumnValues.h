#pragma once

#include <cstdint>
#include <string_view>

#include "database/ColumnValue.h"

namespace tolvane::test {

// A value of the kind with nothing else set.
inline TColumnValue Value(TValueKind kind) {
    TColumnValue value;
    value.kind = kind;
    return value;
}

inline TColumnValue Number(std::int64_t integer, int scale = 0) {
    TColumnValue value = Value(TValueKind::Integer);
    value.integer = integer;
    value.scale = static_cast<std::int8_t>(scale);
    return value;
}

inline TColumnValue Text(std::string_view text) {
    TColumnValue value = Value(TValueKind::Text);
    value.text = text;
    return value;
}

}  // namespace tolvane::test
