#include "upload/ArticleLineBuilder.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <stdexcept>
#include <type_traits>
#include <utility>

#include "text/Cp1251.h"
#include "text/Joined.h"
#include "text/Numbers.h"
#include "upload/LogLines.h"

namespace tolvane {
namespace {

constexpr std::size_t kBarcodeLength = 5;
// Most lines take less.
constexpr std::size_t kUsualLength = 200;
// Replaces the separator inside a text.
constexpr char kSeparatorSubstitute = '/';

template <std::size_t N, class T>
std::string_view CaptionAt(const std::array<T, N>& choices, int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= N) return {};
    const T& choice = choices[static_cast<std::size_t>(index)];
    if constexpr (std::is_same_v<T, TNameChoice>) {
        return choice.caption;
    } else {
        return choice;
    }
}

}  // namespace

TArticleLineBuilder::TArticleLineBuilder(const TArticleTable& articles, TLineChoices choices,
                                         const TRegionalSettings& regional, TLogLine log)
    : articles_(articles), choices_(choices), regional_(regional), log_(std::move(log)) {}

void TArticleLineBuilder::Build(const std::vector<TRowId>& rows, std::int32_t scaleNumber,
                                std::vector<std::string>& lines) const {
    lines.clear();
    // Neighbours mostly have the same list of scales. An empty one is for no scale.
    std::string_view forScales;
    bool isForScale = false;
    for (const TRowId row : rows) {
        const std::string_view text = articles_.Text(row, TField::PLU_FORSCALES);
        if (text != forScales) {
            forScales = text;
            isForScale = IsForScale(text, scaleNumber);
        }
        if (!isForScale) continue;
        std::string line = BuildLine(row, scaleNumber);
        if (!line.empty()) lines.push_back(std::move(line));
    }
    log_(ProcessedCountLine(rows.size()));
    log_(ValidCountLine(lines.size()));
    log_(OnlyValidLine());
}

std::size_t TArticleLineBuilder::CountLines(const std::vector<TRowId>& rows,
                                            const std::vector<std::int32_t>& scaleNumbers) const {
    std::size_t count = 0;
    std::string_view forScales;
    std::vector<std::int32_t> takers;
    for (const TRowId row : rows) {
        const std::string_view text = articles_.Text(row, TField::PLU_FORSCALES);
        if (text != forScales) {
            forScales = text;
            takers.clear();
            std::copy_if(scaleNumbers.begin(), scaleNumbers.end(), std::back_inserter(takers),
                         [&](std::int32_t number) { return IsForScale(text, number); });
        }
        if (!takers.empty() && HasLine(row, takers.front())) count += takers.size();
    }
    return count;
}

bool TArticleLineBuilder::HasLine(TRowId row, std::int32_t scaleNumber) const {
    try {
        return !LineFor(row, scaleNumber).line.empty();
    } catch (const std::runtime_error&) {
        return false;
    }
}

std::string TArticleLineBuilder::BuildLine(TRowId row, std::int32_t scaleNumber) const {
    TArticleLine article = LineFor(row, scaleNumber);
    if (article.fault) LogSkipped(row, *article.fault);
    return std::move(article.line);
}

TArticleLine TArticleLineBuilder::LineFor(TRowId row, std::int32_t scaleNumber) const {
    TArticleLine article;
    article.isForScale = IsForScale(articles_.Text(row, TField::PLU_FORSCALES), scaleNumber);
    if (!article.isForScale) return article;
    article.line.reserve(kUsualLength);
    for (const TLineField& field : kLineFields) {
        article.fault = AppendField(row, field, article.line);
        if (article.fault) {
            article.line.clear();
            break;
        }
        article.line += kLineSeparator;
    }
    return article;
}

TArticleLineBuilder::TFault TArticleLineBuilder::AppendField(TRowId row, const TLineField& field,
                                                             std::string& line) const {
    switch (field.source) {
        case TLineSource::Zero:
            line += '0';
            break;
        case TLineSource::ArticleField:
            AppendArticleField(row, field.field, line);
            break;
        case TLineSource::Barcode:
            return AppendBarcode(row, line);
        case TLineSource::UnitCode:
            line += std::to_string(
                std::max<std::int64_t>(IntegerOf(row, TField::PRIMARYUNIT_ONLY_INT), 0) + 1);
            break;
        case TLineSource::Price:
            return AppendPrice(row, line);
        case TLineSource::BestBefore:
            AppendBestBefore(row, line);
            break;
        case TLineSource::Name1:
            return AppendName(row, choices_.name1, TLineFault::Name1, line);
        case TLineSource::Name2:
            return AppendName(row, choices_.name2, TLineFault::Name2, line);
        case TLineSource::WholeUnits:
            line += IntegerOf(row, TField::PRIMARYUNIT_ONLY_INT) < 1 ? '0' : '1';
            break;
    }
    return std::nullopt;
}

TArticleLineBuilder::TFault TArticleLineBuilder::AppendBarcode(TRowId row,
                                                               std::string& line) const {
    const std::string_view barcode = articles_.Text(row, TField::PLU_BARCODE);
    line += barcode;
    // A line cannot carry a barcode that contains the separator, and a barcode with another
    // character in its place would be a different one.
    if (barcode.size() == kBarcodeLength && barcode.find(kLineSeparator) == barcode.npos)
        return std::nullopt;
    return TLineFault::Barcode;
}

TArticleLineBuilder::TFault TArticleLineBuilder::AppendPrice(TRowId row, std::string& line) const {
    const double price = Price(row);
    if (price == 0.0) return TLineFault::ZeroPrice;
    line += FormatFixed(price, 1, 2, regional_.decimalSeparator);
    return std::nullopt;
}

void TArticleLineBuilder::AppendBestBefore(TRowId row, std::string& line) const {
    const std::int32_t days = IntegerOf(row, TField::LABEL_BESTBEFORE);
    line += std::to_string(days > kLongestBestBefore ? 0 : days);
}

double TArticleLineBuilder::Price(TRowId row) const {
    switch (choices_.price) {
        case kRetailPrice:
            return articles_.Float(row, articles_.Boolean(row, TField::HasActivePromotion)
                                            ? TField::PromoPrice
                                            : TField::PLU_SELL_PRICE_LV);
        case kWholesalePrice:
            return articles_.Float(row, TField::PLU_TRADE_PRICE_LV);
        default:
            return 0.0;
    }
}

std::int32_t TArticleLineBuilder::IntegerOf(TRowId row, TField field) const {
    const std::string_view text = articles_.Text(row, field);
    // The database has no value for an article without a unit of measure.
    if (text.empty()) return 0;
    if (const std::optional<std::int32_t> number = ParseInteger(text)) return *number;
    throw std::runtime_error(
        Joined({"Артикул \""_cp1251, NameOf(row), "\": стойността \""_cp1251, text,
                "\" на поле "_cp1251, FieldInfo(field).name, " не е цяло число."_cp1251}));
}

TArticleLineBuilder::TFault TArticleLineBuilder::AppendName(TRowId row, int choice,
                                                            TLineFault whenEmpty,
                                                            std::string& line) const {
    const std::size_t before = line.size();
    const bool known = !CaptionAt(kNameChoices, choice).empty();
    if (known) AppendArticleField(row, kNameChoices[static_cast<std::size_t>(choice)].field, line);
    if (line.size() > before) return std::nullopt;
    return whenEmpty;
}

void TArticleLineBuilder::AppendArticleField(TRowId row, TField field, std::string& line) const {
    if (FieldInfo(field).type == TFieldType::Integer) {
        line += std::to_string(articles_.Integer(row, field));
        return;
    }
    const std::size_t before = line.size();
    line += articles_.Text(row, field);
    std::replace(line.begin() + static_cast<std::ptrdiff_t>(before), line.end(), kLineSeparator,
                 kSeparatorSubstitute);
}

void TArticleLineBuilder::LogSkipped(TRowId row, TLineFault fault) const {
    const auto log = [this](const std::string& reason, std::string_view consequence) {
        log_(reason);
        log_(consequence);
    };
    switch (fault) {
        case TLineFault::Barcode:
            return log(NoBarcodeLine(NameOf(row)), IgnoredLine());
        case TLineFault::ZeroPrice:
            return log(ZeroPriceLine(NameOf(row), CaptionAt(kPriceCaptions, choices_.price)),
                       NotMarkableLine());
        case TLineFault::Name1:
            return log(NoNameLine(NameOf(row), CaptionAt(kNameChoices, choices_.name1)),
                       IgnoredLine());
        case TLineFault::Name2:
            return log(NoNameLine(NameOf(row), CaptionAt(kNameChoices, choices_.name2)),
                       IgnoredLine());
    }
}

std::string_view TArticleLineBuilder::NameOf(TRowId row) const {
    return articles_.Text(row, TField::PLU_NAME);
}

std::vector<TRowId> RowsOfRun(const TArticleTable& articles, bool markedOnly,
                              const std::vector<TRowId>& marked, std::optional<TRowId> current) {
    if (!markedOnly) return articles.Order();
    if (!marked.empty()) return marked;
    return current ? std::vector<TRowId>{*current} : std::vector<TRowId>{};
}

}  // namespace tolvane
