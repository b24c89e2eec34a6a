#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "database/ColumnValue.h"

namespace tolvane {

// The type of a column: Integer columns also have a scale.
struct TColumnType {
    TValueKind kind = TValueKind::Text;
    std::int8_t scale = 0;
};

// Holds fetched rows in blocks. A value takes only the space that it needs: a text its own length,
// not its column's, and none when the row before has the same.
class TRowBuffer {
public:
    TRowBuffer() = default;
    explicit TRowBuffer(std::vector<TColumnType> columns);

    // One value per column, each null or of its column's kind. Texts are copied.
    void Append(std::span<const TColumnValue> values);
    std::size_t RowCount() const noexcept { return rowCount_; }
    std::size_t ColumnCount() const noexcept { return columns_.size(); }
    // Throws std::out_of_range. A text is valid for as long as the buffer exists.
    TColumnValue Value(std::size_t row, std::size_t column) const;
    // Bytes on the heap.
    std::size_t MemoryUsed() const noexcept;

private:
    char* NewRow();
    char* NewText(std::size_t size);
    const char* Store(std::string_view text, std::size_t column);

    std::vector<TColumnType> columns_;
    std::vector<std::size_t> offsets_;  // of each column in a row, after the null bits
    std::size_t rowSize_ = 0;
    std::size_t rowsPerBlock_ = 0;
    std::size_t rowCount_ = 0;
    std::vector<std::unique_ptr<char[]>> rows_;
    std::vector<std::unique_ptr<char[]>> texts_;
    std::size_t textsUsed_ = 0;
    std::size_t textFree_ = 0;  // bytes left in the block that short texts go into
    char* textNext_ = nullptr;
    std::vector<const char*> lastTexts_;  // of each column
};

}  // namespace tolvane
