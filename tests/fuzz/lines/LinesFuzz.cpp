#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "articles/ArticleTable.h"
#include "tests/fuzz/Fuzz.h"
#include "text/Cp1251.h"
#include "upload/ArticleLine.h"
#include "upload/ArticleLineBuilder.h"

namespace tolvane {
namespace {

using fuzz::Must;
using fuzz::TInput;

// An integer, read in the plainest way.
std::optional<std::int32_t> PlainInteger(std::string_view text) {
    const std::string trimmed(Trim(text));
    const std::size_t sign = !trimmed.empty() && (trimmed[0] == '-' || trimmed[0] == '+') ? 1 : 0;
    if (trimmed.size() == sign || trimmed.find_first_not_of("0123456789", sign) != trimmed.npos)
        return std::nullopt;
    errno = 0;
    const long long number = std::strtoll(trimmed.c_str(), nullptr, 10);
    if (errno != 0 || number < std::numeric_limits<std::int32_t>::min() ||
        number > std::numeric_limits<std::int32_t>::max())
        return std::nullopt;
    return static_cast<std::int32_t>(number);
}

bool PlainIsForScale(const std::string& list, std::int32_t scale) {
    std::size_t from = 0;
    while (from < list.size()) {
        const std::size_t comma = std::min(list.find(',', from), list.size());
        const auto number = PlainInteger(list.substr(from, comma - from));
        if (!number) return false;
        if (*number == scale || *number == 0) return true;
        from = comma + 1;
    }
    return false;
}

void TryScaleFilter(TInput& input) {
    const auto scale = input.Number<std::int32_t>();
    const std::string list = input.RestAsText();
    Must(IsForScale(list, scale) == PlainIsForScale(list, scale),
         "a list names the scales it names");
    Must(IsForScale("7," + std::to_string(scale), scale), "a scale is found in its list");
}

// The texts between the separators, and what is behind the last one.
std::vector<std::string> Pieces(const std::string& line) {
    std::vector<std::string> pieces(1);
    for (const char c : line) {
        if (c == kLineSeparator)
            pieces.emplace_back();
        else
            pieces.back() += c;
    }
    return pieces;
}

// Any text as a line.
void TryLine(TInput& input) {
    const auto separator = static_cast<char>(input.Byte());
    const std::string line = input.RestAsText();
    const std::vector<std::string> pieces = Pieces(line);
    TPLUD plu;
    plu.ScaleNumber = plu.ArticleNumber = -7;
    plu.Barcode = plu.ShipmentNumber = "former";
    const bool whole = ParseArticleLine(line, separator, plu);
    Must(whole == (pieces.size() > kLineFields.size()), "a whole line has every field");
    const auto text = [&](std::size_t i) { return i + 1 < pieces.size() ? pieces[i] : ""; };
    const auto integer = [&](std::size_t i, std::int32_t before) {
        return i + 1 < pieces.size() ? PlainInteger(pieces[i]).value_or(0) : before;
    };
    Must(plu.ScaleNumber == integer(0, -7) && plu.ArticleNumber == integer(16, -7),
         "numbers stand in their places");
    Must(plu.Barcode == text(1) && plu.LabelName1 == text(8) && plu.LabelName2 == text(9) &&
             plu.Comment1 == text(10) && plu.Comment2 == text(11) && plu.Comment3 == text(12) &&
             plu.ShipmentNumber == text(13),
         "texts stand in their places");
}

constexpr double kMostPrice = 20'000'000;

// As a label shows it: without the separator of the line.
std::string Kept(std::string_view text) {
    std::string kept(text);
    std::replace(kept.begin(), kept.end(), '|', '/');
    return kept;
}

TRowId FillRow(TInput& input, TArticleTable& table) {
    const TRowId row = table.Append();
    table.SetInteger(row, TField::PLU_NUMB, input.Number<std::int32_t>());
    table.SetInteger(row, TField::PLU_SCALE_NUMB, input.Number<std::int32_t>());
    for (const TField field :
         {TField::PLU_SELL_PRICE_LV, TField::PLU_TRADE_PRICE_LV, TField::PromoPrice}) {
        // Hundredths as a price has them, or any bits.
        const bool isPlain = input.Byte() < 0xC0;
        table.SetFloat(row, field,
                       isPlain ? input.Number<std::int32_t>() / 100.0 : input.Number<double>());
    }
    table.SetBoolean(row, TField::HasActivePromotion, input.Byte() % 2 != 0);
    for (const TField field :
         {TField::PLU_FORSCALES, TField::PLU_BARCODE, TField::LABEL_BESTBEFORE,
          TField::PRIMARYUNIT_ONLY_INT, TField::PLU_NAME, TField::PLU_ECR_NAME,
          TField::PLU_FOREGHN_NAME, TField::LABEL_COMMENT1, TField::LABEL_COMMENT2,
          TField::LABEL_COMMENT3, TField::SHIPMENTNUMB})
        table.SetText(row, field, input.Text());
    return row;
}

std::string NameBy(int choice, const TArticleTable& table, TRowId row) {
    switch (choice) {
        case 0:
            return Kept(table.Text(row, TField::PLU_ECR_NAME));
        case 1:
            return Kept(table.Text(row, TField::PLU_NAME));
        case 2:
            return Kept(table.Text(row, TField::PLU_FOREGHN_NAME));
        case 3:
            return std::to_string(table.Integer(row, TField::PLU_NUMB));
        default:
            return {};
    }
}

void CheckArticle(const TArticleTable& table, TRowId row, const TLineChoices& choices,
                  const TPLUD& plu) {
    const auto text = [&](TField field) { return std::string(table.Text(row, field)); };
    const auto kept = [&](TField field) { return Kept(text(field)); };
    const auto integer = [&](TField field) { return PlainInteger(text(field)).value_or(0); };
    Must(plu.ScaleNumber == table.Integer(row, TField::PLU_SCALE_NUMB), "the number in scales");
    Must(plu.ArticleNumber == table.Integer(row, TField::PLU_NUMB), "the article's number");
    Must(plu.Barcode == text(TField::PLU_BARCODE), "the barcode");
    Must(plu.LabelName1 == NameBy(choices.name1, table, row), "the first name");
    Must(plu.LabelName2 == NameBy(choices.name2, table, row), "the second name");
    Must(plu.Comment1 == kept(TField::LABEL_COMMENT1) &&
             plu.Comment2 == kept(TField::LABEL_COMMENT2) &&
             plu.Comment3 == kept(TField::LABEL_COMMENT3) &&
             plu.ShipmentNumber == kept(TField::SHIPMENTNUMB),
         "the texts");
    const std::int32_t days = integer(TField::LABEL_BESTBEFORE);
    Must(plu.BestBeforeDays == (days > kLongestBestBefore ? 0 : days), "the days");
    const std::int32_t wholeUnits = integer(TField::PRIMARYUNIT_ONLY_INT);
    Must(plu.WholeUnits == (wholeUnits > 0), "whole units");
    if (wholeUnits < std::numeric_limits<std::int32_t>::max())
        Must(plu.UnitCode == std::max(wholeUnits, 0) + 1, "the unit's code");
    const TField priceField = choices.price == kWholesalePrice ? TField::PLU_TRADE_PRICE_LV
                              : table.Boolean(row, TField::HasActivePromotion)
                                  ? TField::PromoPrice
                                  : TField::PLU_SELL_PRICE_LV;
    const double price = table.Float(row, priceField);
    if (std::abs(price) < kMostPrice)
        Must(std::abs(plu.PriceHundredths - price * 100) < 0.51, "the price");
}

// The line of an article, parsed, is that article.
void TryArticle(TInput& input) {
    TArticleTable table;
    TRegionalSettings regional;
    regional.decimalSeparator = UsableDecimalSeparator(static_cast<char>(input.Byte()));
    const TLineChoices choices{.price = static_cast<int>(input.Below(3)),
                               .name1 = static_cast<int>(input.Below(5)),
                               .name2 = static_cast<int>(input.Below(5))};
    const std::int32_t scale = input.Byte();
    const TRowId row = FillRow(input, table);
    int logged = 0;
    const TArticleLineBuilder builder(table, choices, regional, [&](std::string_view line) {
        Must(!line.empty(), "a line of the log says something");
        ++logged;
    });
    TArticleLine made;
    try {
        made = builder.LineFor(row, scale);
    } catch (const std::runtime_error& error) {
        Must(*error.what() != '\0', "a field that is no number is told");
        return;
    }
    Must(made.isForScale ==
             PlainIsForScale(std::string(table.Text(row, TField::PLU_FORSCALES)), scale),
         "an article is for the scales of its list");
    Must(made.line.empty() == (!made.isForScale || made.fault), "what has a line is told");
    Must(builder.BuildLine(row, scale) == made.line, "a line is the same each time");
    Must(logged == (made.fault ? 2 : 0), "a fault is logged in two lines");
    if (made.line.empty()) return;
    TPLUD plu;
    Must(ParseArticleLine(made.line, regional.decimalSeparator, plu), "a line is whole");
    Must(Pieces(made.line).size() == kLineFields.size() + 1, "a line ends with its last field");
    CheckArticle(table, row, choices, plu);
}

}  // namespace
}  // namespace tolvane

// A letter for the subject, then its input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tolvane::fuzz::TInput input(data, size);
    switch (input.Byte()) {
        case 's':
            tolvane::TryScaleFilter(input);
            break;
        case 'l':
            tolvane::TryLine(input);
            break;
        case 'a':
            tolvane::TryArticle(input);
            break;
        default:
            return -1;
    }
    return 0;
}
