#include "articles/ArticleTable.h"

#include <algorithm>
#include <string>

#include "text/Numbers.h"

namespace tolvane {
namespace {

constexpr std::size_t kFewRows = 64;

constexpr std::string_view kYes = "ДА"_cp1251;
constexpr std::string_view kNo = "НЕ"_cp1251;

struct TNumberFormat {
    int integerDigits = 1;
    int decimals = 2;
    bool percent = false;
    bool currency = false;
};

constexpr TNumberFormat NumberFormat(TDisplay display) {
    switch (display) {
        case TDisplay::ThreeDecimals:
            return {.decimals = 3};
        case TDisplay::FourDecimals:
            return {.decimals = 4};
        case TDisplay::TwoDecimalsBase:
            return {.currency = true};
        case TDisplay::ThreeDecimalsBase:
            return {.decimals = 3, .currency = true};
        case TDisplay::Percent:
            return {.integerDigits = 2, .percent = true};
        default:
            return {};
    }
}

std::string_view YesNo(std::string_view stored) {
    if (stored == "1") return kYes;
    return stored == "0" ? kNo : std::string_view();
}

}  // namespace

template <class Self, class Visitor>
void TArticleTable::EachColumn(Self& self, Visitor visit) {
    for (auto& column : self.floats_)
        visit(column);
    for (auto& column : self.integers_)
        visit(column);
    for (auto& column : self.texts_)
        visit(column);
    visit(self.promotions_);
    visit(self.order_);
    visit(self.indexes_);
}

bool TArticleTable::Boolean(TRowId row, [[maybe_unused]] TField field) const {
    assert(field == TField::HasActivePromotion);
    return At(promotions_, row) != 0;
}

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

void TArticleTable::Clear() {
    *this = {};
}

void TArticleTable::Reserve(std::size_t rows) {
    EachColumn(*this, [&](auto& column) { column.reserve(rows); });
}

TRowId TArticleTable::Append() {
    const std::size_t row = order_.size();
    // Reserve enlarges this column last, so its capacity is that of all.
    if (row == indexes_.capacity()) Reserve(std::max(row + row / 2, kFewRows));
    EachColumn(*this, [](auto& column) { column.emplace_back(); });
    order_.back() = static_cast<TRowId>(row);
    indexes_.back() = static_cast<std::uint32_t>(row);
    return static_cast<TRowId>(row);
}

TRowId TArticleTable::Append(const TRow& row) {
    const TRowId to = Append();
    for (std::size_t slot = 0; slot < kFloats; ++slot)
        floats_[slot][to] = row.floats[slot];
    for (std::size_t slot = 0; slot < kIntegers; ++slot)
        integers_[slot][to] = row.integers[slot];
    for (std::size_t slot = 0; slot < kTexts; ++slot)
        texts_[slot][to] = row.texts[slot];
    return to;
}

void TArticleTable::SetInteger(TRowId row, TField field, std::int32_t value) {
    At(integers_[SlotOf(field, TFieldType::Integer)], row) = value;
}

void TArticleTable::SetFloat(TRowId row, TField field, double value) {
    At(floats_[SlotOf(field, TFieldType::Float)], row) = value;
}

void TArticleTable::SetBoolean(TRowId row, [[maybe_unused]] TField field, bool value) {
    assert(field == TField::HasActivePromotion);
    At(promotions_, row) = value ? 1 : 0;
}

void TArticleTable::SetText(TRowId row, TField field, std::string_view value) {
    TTextArena::TPosition& position = At(texts_[SlotOf(field, TFieldType::Text)], row);
    position = StoreText(field, value);
}

void TArticleTable::SetOrder(const std::vector<TRowId>& order) {
    assert(order.size() == order_.size());
    std::copy(order.begin(), order.end(), order_.begin());
    for (std::size_t index = 0; index < order_.size(); ++index)
        indexes_[order_[index]] = static_cast<std::uint32_t>(index);
}

std::size_t TArticleTable::MemoryUsed() const {
    std::size_t used = arena_.MemoryUsed();
    EachColumn(*this, [&](const auto& column) { used += column.capacity() * sizeof(column[0]); });
    return used;
}

}  // namespace tolvane
