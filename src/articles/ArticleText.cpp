#include "articles/ArticleTable.h"

#include <string>

#include "text/Numbers.h"

namespace tolvane {
namespace {

constexpr std::string_view kYes = "ДА"_cp1251;
constexpr std::string_view kNo = "НЕ"_cp1251;

struct TNumberFormat {
    int integerDigits;
    int decimals;
    bool percent;
    bool currency;
};

constexpr TNumberFormat NumberFormat(TDisplay display) {
    switch (display) {
        case TDisplay::ThreeDecimals:
            return {1, 3, false, false};
        case TDisplay::FourDecimals:
            return {1, 4, false, false};
        case TDisplay::TwoDecimalsBase:
            return {1, 2, false, true};
        case TDisplay::ThreeDecimalsBase:
            return {1, 3, false, true};
        case TDisplay::Percent:
            return {2, 2, true, false};
        default:
            return {1, 2, false, false};
    }
}

std::string_view YesNo(std::string_view stored) {
    if (stored == "1") return kYes;
    return stored == "0" ? kNo : std::string_view();
}

}  // namespace

std::string TArticleTable::AsText(TRowId row, TField field,
                                  const TRegionalSettings& regional) const {
    switch (FieldInfo(field).type) {
        case TFieldType::Integer:
            return std::to_string(Integer(row, field));
        case TFieldType::Float:
            return FormatNumber(Float(row, field), regional.decimalSeparator);
        case TFieldType::Boolean:
            return Boolean(row, field) ? "1" : "0";
        case TFieldType::Text:
            break;
    }
    return std::string(Text(row, field));
}

std::string TArticleTable::DisplayText(TRowId row, TField field, const TRegionalSettings& regional,
                                       std::string_view baseCurrency) const {
    const TFieldInfo& info = FieldInfo(field);
    if (info.display == TDisplay::YesNo) return std::string(YesNo(AsText(row, field, regional)));
    if (info.type != TFieldType::Float) return AsText(row, field, regional);
    const TNumberFormat format = NumberFormat(info.display);
    std::string text = FormatFixed(Float(row, field), format.integerDigits, format.decimals,
                                   regional.decimalSeparator);
    if (format.percent) text += '%';
    if (format.currency) text.append(1, ' ').append(baseCurrency);
    return text;
}

}  // namespace tolvane
