#pragma once

#include <array>
#include <string_view>

#include "config/RunNumber.h"
#include "text/Cp1251.h"

namespace tolvane {

// How the run window looks and what its save button starts, by run number.
struct TRunKind {
    TRunNumber number;
    std::string_view caption;  // of the window, code page 1251
    bool markedOnly;           // otherwise all articles
    bool write;                // otherwise the articles are deleted
    bool saveVisible;
    std::string_view saveCaption;
};

inline constexpr auto kRunKinds = std::to_array<TRunKind>({
    {.number = TRunNumber::SaveMarked,
     .caption = "Запис на избраните артикули във везните"_cp1251,
     .markedOnly = true,
     .write = true,
     .saveVisible = true,
     .saveCaption = "Запис"_cp1251},
    {.number = TRunNumber::SaveAll,
     .caption = "Запис на всички артикули във везните"_cp1251,
     .markedOnly = false,
     .write = true,
     .saveVisible = true,
     .saveCaption = "Запис"_cp1251},
    {.number = TRunNumber::DeleteMarked,
     .caption = "Изтриване на избраните артикули от везните"_cp1251,
     .markedOnly = true,
     .write = false,
     .saveVisible = true,
     .saveCaption = "Изтрий"_cp1251},
    {.number = TRunNumber::DeleteAll,
     .caption = "Изтриване на всички артикули от везните"_cp1251,
     .markedOnly = false,
     .write = false,
     .saveVisible = false,
     .saveCaption = "Изтрий"_cp1251},
});

// Null for a number outside the table: other programs can send the window a command with any
// number.
constexpr const TRunKind* RunKind(TRunNumber number) {
    for (const TRunKind& kind : kRunKinds) {
        if (kind.number == number) return &kind;
    }
    return nullptr;
}

}  // namespace tolvane
