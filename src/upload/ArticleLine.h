#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "articles/ArticleFields.h"
#include "config/TypesUnit.h"
#include "text/Cp1251.h"

namespace tolvane {

// An article line is what one article is to one scale: 17 fields of text, each followed by this
// character. The format has no escape; the builder never lets the character into a field.
inline constexpr char kLineSeparator = '|';
inline constexpr int kLineFields = 17;

// Item indexes of the run window's choices.
struct TLineChoices {
    int price = 0;
    int name1 = 1;
    int name2 = 2;
};

inline constexpr int kRetailPrice = 0;
inline constexpr int kWholesalePrice = 1;
inline constexpr std::array<std::string_view, 2> kPriceCaptions = {
    "ПРОДАЖНА ЦЕНА ДРЕБНО (ЛВ)"_cp1251, "ПРОДАЖНА ЦЕНА ЕДРО (ЛВ)"_cp1251};

// What a label name may be taken from.
struct TNameChoice {
    std::string_view caption;
    TField field;
};
inline constexpr std::array<TNameChoice, 4> kNameChoices = {{
    {"КАСОВО ИМЕ"_cp1251, TField::PLU_ECR_NAME},
    {"ИМЕ"_cp1251, TField::PLU_NAME},
    {"ЕТИКЕТНО ИМЕ"_cp1251, TField::PLU_FOREGHN_NAME},
    {"АРТИКУЛЕН НОМЕР"_cp1251, TField::PLU_NUMB},
}};

// Whether a comma-separated list of scale numbers names the scale or holds 0, which means every
// scale. The list is read from the left up to the answer; a part that is no integer ends it with
// no.
bool IsForScale(std::string_view forScales, std::int32_t scaleNumber);

// Fills `plu` (its texts are emptied first) and answers whether all 17 fields were there; without
// them the fields up to the missing one are set. A field that is no number takes its default.
bool ParseArticleLine(std::string_view line, char decimalSeparator, TPLUD& plu);

}  // namespace tolvane
