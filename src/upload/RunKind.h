#pragma once

#include <array>
#include <string_view>

#include "text/Cp1251.h"

namespace tolvane {

// What a menu command asks the run window for.
struct TRunKind {
    int number;  // of the command
    std::string_view caption;
    bool markedOnly;
    bool write;  // else the articles are deleted
    bool saveVisible;
    std::string_view saveCaption;
};

inline constexpr std::array<TRunKind, 4> kRunKinds = {{
    {1, "Запис на избраните артикули във везните"_cp1251, true, true, true, "Запис"_cp1251},
    {2, "Запис на всички артикули във везните"_cp1251, false, true, true, "Запис"_cp1251},
    {3, "Изтриване на избраните артикули от везните"_cp1251, true, false, true, "Изтрий"_cp1251},
    {4, "Изтриване на всички артикули от везните"_cp1251, false, false, false, "Изтрий"_cp1251},
}};

// Null when there is no such command.
constexpr const TRunKind* RunKind(int number) {
    for (const TRunKind& kind : kRunKinds) {
        if (kind.number == number) return &kind;
    }
    return nullptr;
}

}  // namespace tolvane
