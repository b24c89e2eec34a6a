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

// Stores the text of one field, by the kind of its target.
class TFieldStore {
public:
    TFieldStore(std::string_view text, char decimalSeparator, TPLUD& plu)
        : text_(text), decimalSeparator_(decimalSeparator), plu_(plu) {}

    void operator()(TLineInteger target) const {
        plu_.*target.member = ParseIntegerOr(text_, target.otherwise);
    }
    void operator()(TLineText target) const { plu_.*target.member = text_; }
    void operator()(TLinePrice target) const {
        plu_.*target.hundredths = ParseHundredths(text_, decimalSeparator_);
    }
    void operator()(TLineFlag target) const { plu_.*target.member = ParseIntegerOr(text_, 0) > 0; }

private:
    std::string_view text_;
    char decimalSeparator_;
    TPLUD& plu_;
};

void ClearTexts(TPLUD& plu) {
    for (const TLineField& field : kLineFields) {
        if (const auto* text = std::get_if<TLineText>(&field.target)) (plu.*text->member).clear();
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
    for (const TLineField& field : kLineFields) {
        const std::size_t end = line.find(kLineSeparator);
        if (end == std::string_view::npos) return false;
        std::visit(TFieldStore(line.substr(0, end), decimalSeparator, plu), field.target);
        line.remove_prefix(end + 1);
    }
    return true;
}

}  // namespace tolvane
