#include "articles/ArticleTable.h"

#include <cassert>
#include <numeric>
#include <stdexcept>

#include "text/Numbers.h"

namespace tolvane {
namespace {

std::size_t SlotOf(TField field, [[maybe_unused]] TFieldType type) {
    assert(FieldInfo(field).type == type);
    return FieldSlot(field);
}

}  // namespace

const TArticleTable::TRow& TArticleTable::Row(TRowId row) const {
    if (row >= places_.size()) throw std::out_of_range("article row");
    return blocks_[row / kRowsPerBlock][row % kRowsPerBlock];
}

std::int32_t TArticleTable::Integer(TRowId row, TField field) const {
    return Row(row).integers[SlotOf(field, TFieldType::Integer)];
}

double TArticleTable::Float(TRowId row, TField field) const {
    return Row(row).floats[SlotOf(field, TFieldType::Float)];
}

bool TArticleTable::Boolean(TRowId row, [[maybe_unused]] TField field) const {
    assert(field == TField::HasActivePromotion);
    return Row(row).promotion;
}

std::string_view TArticleTable::Text(TRowId row, TField field) const {
    return texts_.Text(Row(row).texts[SlotOf(field, TFieldType::Text)]);
}

void TArticleTable::Clear() {
    *this = {};
}

TRowId TArticleTable::Append() {
    const std::size_t row = places_.size();
    if (row / kRowsPerBlock == blocks_.size()) {
        std::vector<TRow> block;
        block.reserve(kRowsPerBlock);
        blocks_.push_back(std::move(block));
    }
    order_.reserve(row + 1 > order_.capacity() ? row * 2 + kRowsPerBlock : 0);
    places_.reserve(row + 1 > places_.capacity() ? row * 2 + kRowsPerBlock : 0);
    blocks_.back().emplace_back();
    order_.push_back(static_cast<TRowId>(row));
    places_.push_back(static_cast<std::uint32_t>(row));
    return static_cast<TRowId>(row);
}

void TArticleTable::SetInteger(TRowId row, TField field, std::int32_t value) {
    Row(row).integers[SlotOf(field, TFieldType::Integer)] = value;
}

void TArticleTable::SetFloat(TRowId row, TField field, double value) {
    Row(row).floats[SlotOf(field, TFieldType::Float)] = value;
}

void TArticleTable::SetBoolean(TRowId row, [[maybe_unused]] TField field, bool value) {
    assert(field == TField::HasActivePromotion);
    Row(row).promotion = value;
}

void TArticleTable::SetText(TRowId row, TField field, std::string_view value) {
    const std::size_t slot = SlotOf(field, TFieldType::Text);
    Row(row).texts[slot] = texts_.Store(value.substr(0, FieldInfo(field).maxChars));
}

void TArticleTable::SetOrder(std::vector<TRowId> order) {
    assert(order.size() == order_.size());
    order_ = std::move(order);
    for (std::size_t place = 0; place < order_.size(); ++place)
        places_[order_[place]] = static_cast<std::uint32_t>(place);
}

std::size_t TArticleTable::MemoryUsed() const {
    const std::size_t rows =
        std::accumulate(blocks_.begin(), blocks_.end(), std::size_t{0},
                        [](std::size_t sum, const std::vector<TRow>& block) {
                            return sum + block.capacity() * sizeof(TRow) + sizeof(block);
                        });
    return rows + texts_.MemoryUsed() + order_.capacity() * sizeof(TRowId) +
           places_.capacity() * sizeof(std::uint32_t);
}

}  // namespace tolvane
