#include "articles/ArticleTable.h"

#include <algorithm>

namespace tolvane {
namespace {

constexpr std::size_t kFewRows = 64;

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
    visit(self.places_);
}

std::int32_t TArticleTable::Integer(TRowId row, TField field) const {
    return At(integers_[SlotOf(field, TFieldType::Integer)], row);
}

double TArticleTable::Float(TRowId row, TField field) const {
    return At(floats_[SlotOf(field, TFieldType::Float)], row);
}

bool TArticleTable::Boolean(TRowId row, [[maybe_unused]] TField field) const {
    assert(field == TField::HasActivePromotion);
    return At(promotions_, row) != 0;
}

void TArticleTable::Clear() {
    *this = {};
}

void TArticleTable::Reserve(std::size_t rows) {
    EachColumn(*this, [&](auto& column) { column.reserve(rows); });
}

TRowId TArticleTable::Append() {
    const std::size_t row = order_.size();
    // The column that is reserved last shows whether all have room.
    if (row == places_.capacity()) Reserve(std::max(row + row / 2, kFewRows));
    EachColumn(*this, [](auto& column) { column.emplace_back(); });
    order_.back() = static_cast<TRowId>(row);
    places_.back() = static_cast<std::uint32_t>(row);
    return static_cast<TRowId>(row);
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
    position = arena_.Store(value.substr(0, FieldInfo(field).maxChars));
}

void TArticleTable::SetOrder(const std::vector<TRowId>& order) {
    assert(order.size() == order_.size());
    std::copy(order.begin(), order.end(), order_.begin());
    for (std::size_t place = 0; place < order_.size(); ++place)
        places_[order_[place]] = static_cast<std::uint32_t>(place);
}

std::size_t TArticleTable::MemoryUsed() const {
    std::size_t used = arena_.MemoryUsed();
    EachColumn(*this, [&](const auto& column) { used += column.capacity() * sizeof(column[0]); });
    return used;
}

}  // namespace tolvane
