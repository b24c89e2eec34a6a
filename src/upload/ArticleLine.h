#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "articles/ArticleFields.h"
#include "config/TypesUnit.h"
#include "text/Cp1251.h"

namespace tolvane {

// An article line holds what one scale receives about one article: the fields of kLineFields as
// text, each followed by this character. The character cannot be escaped; the builder keeps it out
// of the fields.
inline constexpr char kLineSeparator = '|';

// How the parser stores a field.
struct TLineInteger {
    std::int32_t TPLUD::*member;
    std::int32_t otherwise = 0;  // for a text that is not an integer
};
struct TLineText {
    std::string TPLUD::*member;
};
struct TLinePrice {
    std::int32_t TPLUD::*hundredths;
};
struct TLineFlag {
    bool TPLUD::*member;  // true for an integer above 0
};
using TLineTarget = std::variant<TLineInteger, TLineText, TLinePrice, TLineFlag>;

// Where the builder gets a field from.
enum class TLineSource : std::uint8_t {
    Zero,          // always "0"
    ArticleField,  // the article's field as it is
    Barcode,
    UnitCode,
    Price,
    BestBefore,
    Name1,
    Name2,
    WholeUnits,
};

struct TLineField {
    TLineTarget target;
    TLineSource source = TLineSource::Zero;
    TField field = TField::PLU_NUMB;  // for ArticleField
};

// The fields of a line, in order; the builder and the parser both follow this table.
inline constexpr auto kLineFields = std::to_array<TLineField>({
    {.target = TLineInteger{&TPLUD::ScaleNumber},
     .source = TLineSource::ArticleField,
     .field = TField::PLU_SCALE_NUMB},
    {.target = TLineText{&TPLUD::Barcode}, .source = TLineSource::Barcode},
    {.target = TLineInteger{.member = &TPLUD::UnitCode, .otherwise = 1},
     .source = TLineSource::UnitCode},
    {.target = TLineInteger{&TPLUD::Reserved4}},
    {.target = TLineInteger{&TPLUD::Reserved5}},
    {.target = TLinePrice{&TPLUD::PriceHundredths}, .source = TLineSource::Price},
    {.target = TLineInteger{&TPLUD::Reserved7}},
    {.target = TLineInteger{&TPLUD::BestBeforeDays}, .source = TLineSource::BestBefore},
    {.target = TLineText{&TPLUD::LabelName1}, .source = TLineSource::Name1},
    {.target = TLineText{&TPLUD::LabelName2}, .source = TLineSource::Name2},
    {.target = TLineText{&TPLUD::Comment1},
     .source = TLineSource::ArticleField,
     .field = TField::LABEL_COMMENT1},
    {.target = TLineText{&TPLUD::Comment2},
     .source = TLineSource::ArticleField,
     .field = TField::LABEL_COMMENT2},
    {.target = TLineText{&TPLUD::Comment3},
     .source = TLineSource::ArticleField,
     .field = TField::LABEL_COMMENT3},
    {.target = TLineText{&TPLUD::ShipmentNumber},
     .source = TLineSource::ArticleField,
     .field = TField::SHIPMENTNUMB},
    {.target = TLineFlag{&TPLUD::WholeUnits}, .source = TLineSource::WholeUnits},
    {.target = TLineInteger{&TPLUD::Reserved16}},
    {.target = TLineInteger{&TPLUD::ArticleNumber},
     .source = TLineSource::ArticleField,
     .field = TField::PLU_NUMB},
});

// Days; the line of an article with more of them has 0.
inline constexpr std::int32_t kLongestBestBefore = 365;

// What the user has chosen in the run window, as item indexes.
struct TLineChoices {
    int price = 0;
    int name1 = 1;
    int name2 = 2;
};

inline constexpr int kRetailPrice = 0;
inline constexpr int kWholesalePrice = 1;
inline constexpr auto kPriceCaptions = std::to_array<std::string_view>(
    {"ПРОДАЖНА ЦЕНА ДРЕБНО (ЛВ)"_cp1251, "ПРОДАЖНА ЦЕНА ЕДРО (ЛВ)"_cp1251});

// The article field that gives a label name, and its caption in the run window.
struct TNameChoice {
    std::string_view caption;
    TField field;
};
inline constexpr auto kNameChoices = std::to_array<TNameChoice>({
    {"КАСОВО ИМЕ"_cp1251, TField::PLU_ECR_NAME},
    {"ИМЕ"_cp1251, TField::PLU_NAME},
    {"ЕТИКЕТНО ИМЕ"_cp1251, TField::PLU_FOREGHN_NAME},
    {"АРТИКУЛЕН НОМЕР"_cp1251, TField::PLU_NUMB},
});

// Whether a comma-separated list of scale numbers contains this scale's or 0, which means every
// scale. The list ends at its first part that is not an integer.
bool IsForScale(std::string_view forScales, std::int32_t scaleNumber);

// Empties the texts of `plu` and sets its members field by field. Returns whether the line has all
// fields; when one is missing, the fields before it are set and the other numbers keep their
// values. A number field that does not hold a number takes its default. Text after the last field
// is ignored.
bool ParseArticleLine(std::string_view line, char decimalSeparator, TPLUD& plu);

}  // namespace tolvane
