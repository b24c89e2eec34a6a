#include "database/RowBuffer.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "database/Unaligned.h"

namespace tolvane {
namespace {

// So large that the system takes a freed one back.
constexpr std::size_t kBlockSize = 0x100000;
// A text this long gets a block of its own.
constexpr std::size_t kLongText = kBlockSize / 64;

using TLength = std::uint32_t;

std::size_t SizeOf(TValueKind kind) {
    switch (kind) {
        case TValueKind::Integer:
            return sizeof(std::int64_t);
        case TValueKind::Float:
            return sizeof(double);
        case TValueKind::Text:
            return sizeof(const char*);
        case TValueKind::Date:
            return sizeof(std::int32_t);
        case TValueKind::Time:
            return sizeof(std::uint32_t);
        case TValueKind::Timestamp:
            return sizeof(std::int32_t) + sizeof(std::uint32_t);
        case TValueKind::Boolean:
            return 1;
        case TValueKind::Null:
            break;
    }
    return 0;
}

std::string_view StoredText(const char* at) {
    return {at + sizeof(TLength), Get<TLength>(at)};
}

template <class T>
char* Put(char* at, const T& value) {
    std::memcpy(at, &value, sizeof(value));
    return at + sizeof(value);
}

}  // namespace

TRowBuffer::TRowBuffer(std::vector<TColumnType> columns) : columns_(std::move(columns)) {
    rowSize_ = (columns_.size() + 7) / 8;
    for (const TColumnType& column : columns_) {
        offsets_.push_back(rowSize_);
        rowSize_ += SizeOf(column.kind);
    }
    lastTexts_.resize(columns_.size());
    rowsPerBlock_ = std::max<std::size_t>(1, kBlockSize / std::max<std::size_t>(1, rowSize_));
}

char* TRowBuffer::NewRow() {
    const std::size_t inBlock = rowCount_ % rowsPerBlock_;
    if (inBlock == 0 && rowCount_ / rowsPerBlock_ == rows_.size())
        rows_.push_back(std::make_unique_for_overwrite<char[]>(rowsPerBlock_ * rowSize_));
    char* const row = rows_.back().get() + inBlock * rowSize_;
    std::memset(row, 0, rowSize_);
    return row;
}

char* TRowBuffer::AddTextBlock(std::size_t size) {
    texts_.push_back({.bytes = std::make_unique_for_overwrite<char[]>(size), .size = size});
    return texts_.back().bytes.get();
}

TRowBuffer::TStoredText TRowBuffer::NewText(std::size_t size) {
    if (size > kLongText) return {.at = AddTextBlock(size), .block = texts_.size() - 1};
    if (textFree_ < size) {
        textNext_ = AddTextBlock(kBlockSize);
        textFree_ = kBlockSize;
        textBlock_ = texts_.size() - 1;
    }
    textFree_ -= size;
    return {.at = std::exchange(textNext_, textNext_ + size), .block = textBlock_};
}

// A unit, a currency or a group repeats in row after row. Nothing stands for the empty text.
const char* TRowBuffer::Store(std::string_view text, std::size_t column) {
    if (text.empty()) return nullptr;
    TStoredText& last = lastTexts_[column];
    const bool isThere = last.at != nullptr && texts_[last.block].bytes != nullptr;
    if (!isThere || StoredText(last.at) != text) {
        last = NewText(sizeof(TLength) + text.size());
        std::copy(text.begin(), text.end(), Put(last.at, static_cast<TLength>(text.size())));
    }
    texts_[last.block].lastRow = rowCount_;
    return last.at;
}

void TRowBuffer::Append(std::span<const TColumnValue> values) {
    assert(values.size() == columns_.size());
    char* const row = NewRow();
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        const TColumnValue& value = values[i];
        char* const at = row + offsets_[i];
        if (value.kind == TValueKind::Null) {
            row[i / 8] = static_cast<char>(row[i / 8] | 1 << i % 8);
            continue;
        }
        assert(value.kind == columns_[i].kind);
        switch (value.kind) {
            case TValueKind::Integer:
                Put(at, value.integer);
                break;
            case TValueKind::Float:
                Put(at, value.number);
                break;
            case TValueKind::Text:
                Put(at, Store(value.text, i));
                break;
            case TValueKind::Boolean:
                *at = value.integer != 0 ? 1 : 0;
                break;
            case TValueKind::Time:
                Put(at, value.ticks);
                break;
            case TValueKind::Date:
            case TValueKind::Timestamp: {
                char* const after = Put(at, value.days);
                if (value.kind == TValueKind::Timestamp) Put(after, value.ticks);
                break;
            }
            case TValueKind::Null:
                break;
        }
    }
    ++rowCount_;
}

TColumnValue TRowBuffer::Value(std::size_t row, std::size_t column) const {
    if (row >= rowCount_ || row < freedRows_ * rowsPerBlock_ || column >= columns_.size())
        throw std::out_of_range("row or column of a query");
    const char* const start = rows_[row / rowsPerBlock_].get() + row % rowsPerBlock_ * rowSize_;
    if ((start[column / 8] >> column % 8 & 1) != 0) return {};
    const char* const at = start + offsets_[column];
    TColumnValue value;
    value.kind = columns_[column].kind;
    value.scale = columns_[column].scale;
    switch (value.kind) {
        case TValueKind::Integer:
            value.integer = Get<std::int64_t>(at);
            break;
        case TValueKind::Float:
            value.number = Get<double>(at);
            break;
        case TValueKind::Text:
            if (const char* const text = Get<const char*>(at)) value.text = StoredText(text);
            break;
        case TValueKind::Boolean:
            value.integer = *at != 0 ? 1 : 0;
            break;
        case TValueKind::Time:
            value.ticks = Get<std::uint32_t>(at);
            break;
        case TValueKind::Timestamp:
            value.ticks = Get<std::uint32_t>(at + sizeof(std::int32_t));
            [[fallthrough]];
        case TValueKind::Date:
            value.days = Get<std::int32_t>(at);
            break;
        case TValueKind::Null:
            break;
    }
    return value;
}

void TRowBuffer::FreeBefore(std::size_t row) noexcept {
    const std::size_t before = freedRows_;
    for (; (freedRows_ + 1) * rowsPerBlock_ <= std::min(row, rowCount_); ++freedRows_)
        rows_[freedRows_].reset();
    if (freedRows_ == before) return;
    const std::size_t firstRow = freedRows_ * rowsPerBlock_;
    for (std::size_t i = 0; i < texts_.size(); ++i)
        if (i != textBlock_ && texts_[i].lastRow < firstRow) texts_[i] = {};
}

std::size_t TRowBuffer::MemoryUsed() const noexcept {
    std::size_t used = (rows_.size() - freedRows_) * rowsPerBlock_ * rowSize_;
    for (const TTextBlock& block : texts_)
        used += block.size;
    return used;
}

}  // namespace tolvane
