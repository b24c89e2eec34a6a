#include "database/RowBuffer.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "database/Unaligned.h"

namespace tolvane {
namespace {

// So large that the system takes it back when it is freed.
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

char* TRowBuffer::NewText(std::size_t size) {
    const bool isLong = size > kLongText;
    if (isLong || textFree_ < size) {
        const std::size_t blockSize = isLong ? size : kBlockSize;
        texts_.push_back(std::make_unique_for_overwrite<char[]>(blockSize));
        textsUsed_ += blockSize;
        if (isLong) return texts_.back().get();
        textNext_ = texts_.back().get();
        textFree_ = kBlockSize;
    }
    textFree_ -= size;
    return std::exchange(textNext_, textNext_ + size);
}

// A unit, a currency or a group repeats in row after row. Nothing stands for the empty text.
const char* TRowBuffer::Store(std::string_view text, std::size_t column) {
    if (text.empty()) return nullptr;
    const char*& last = lastTexts_[column];
    if (last == nullptr || StoredText(last) != text) {
        char* const at = NewText(sizeof(TLength) + text.size());
        std::copy(text.begin(), text.end(), Put(at, static_cast<TLength>(text.size())));
        last = at;
    }
    return last;
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
    if (row >= rowCount_ || column >= columns_.size())
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

std::size_t TRowBuffer::MemoryUsed() const noexcept {
    return rows_.size() * rowsPerBlock_ * rowSize_ + textsUsed_;
}

}  // namespace tolvane
