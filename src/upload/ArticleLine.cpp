#include "upload/ArticleLine.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>

#include "text/Numbers.h"

namespace tolvane {
namespace {

std::int32_t ParseHundredths(std::string_view text, char decimalSeparator) {
    const double price = ParseNumber(text, decimalSeparator).value_or(0.0);
    std::string digits = FormatFixed(price, 1, 2, decimalSeparator);
    std::erase(digits, decimalSeparator);
    return ParseIntegerOr(digits, 0);
}

void ClearTexts(TPLUD& plu) {
    for (std::string* text : {&plu.Barcode, &plu.LabelName1, &plu.LabelName2, &plu.Comment1,
                              &plu.Comment2, &plu.Comment3, &plu.ShipmentNumber})
        text->clear();
}

void SetInteger(std::int32_t& target, std::string_view text, std::int32_t otherwise = 0) {
    target = ParseIntegerOr(text, otherwise);
}

void StoreField(int number, std::string_view text, char decimalSeparator, TPLUD& plu) {
    switch (number) {
        case 1:
            return SetInteger(plu.ScaleNumber, text);
        case 2:
            plu.Barcode = text;
            return;
        case 3:
            return SetInteger(plu.UnitCode, text, 1);
        case 4:
            return SetInteger(plu.Reserved4, text);
        case 5:
            return SetInteger(plu.Reserved5, text);
        case 6:
            plu.PriceHundredths = ParseHundredths(text, decimalSeparator);
            return;
        case 7:
            return SetInteger(plu.Reserved7, text);
        case 8:
            return SetInteger(plu.BestBeforeDays, text);
        case 9:
            plu.LabelName1 = text;
            return;
        case 10:
            plu.LabelName2 = text;
            return;
        case 11:
            plu.Comment1 = text;
            return;
        case 12:
            plu.Comment2 = text;
            return;
        case 13:
            plu.Comment3 = text;
            return;
        case 14:
            plu.ShipmentNumber = text;
            return;
        case 15:
            plu.WholeUnits = ParseIntegerOr(text, 0) > 0;
            return;
        case 16:
            return SetInteger(plu.Reserved16, text);
        default:
            return SetInteger(plu.ArticleNumber, text);
    }
}

}  // namespace

bool IsForScale(std::string_view forScales, std::int32_t scaleNumber) {
    while (!forScales.empty()) {
        const std::size_t comma = forScales.find(',');
        const std::optional<std::int32_t> number = ParseInteger(forScales.substr(0, comma));
        if (!number) return false;
        if (*number == scaleNumber || *number == 0) return true;
        forScales.remove_prefix(std::min(
            forScales.size(), comma == std::string_view::npos ? forScales.size() : comma + 1));
    }
    return false;
}

bool ParseArticleLine(std::string_view line, char decimalSeparator, TPLUD& plu) {
    ClearTexts(plu);
    for (int number = 1; number <= kLineFields; ++number) {
        const std::size_t end = line.find(kLineSeparator);
        if (end == std::string_view::npos) return false;
        StoreField(number, line.substr(0, end), decimalSeparator, plu);
        line.remove_prefix(end + 1);
    }
    return true;
}

}  // namespace tolvane
