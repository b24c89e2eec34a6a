#pragma once

#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "articles/ArticleFields.h"
#include "articles/TextArena.h"
#include "system/RegionalSettings.h"

namespace tolvane {

// A reference to one row that stays valid through sorting, until the table is emptied.
using TRowId = std::uint32_t;

// mdPlues: the weighted articles in memory, compact enough for 100,000 rows in a 32-bit process. A
// row has an identity (TRowId, in order of appending) and an index in the current order. Texts are
// code page 1251 and are cut to their field's length when stored. Several threads may read while
// nobody writes; a copy is independent.
class TArticleTable {
public:
    // The values of a row by their fields' slots; its texts are stored already.
    struct TRow {
        std::array<double, CountOfType(TFieldType::Float)> floats;
        std::array<std::int32_t, CountOfType(TFieldType::Integer)> integers;
        std::array<TTextArena::TPosition, CountOfType(TFieldType::Text)> texts;
    };

    std::size_t RowCount() const { return order_.size(); }
    // The row at an index of the current order, and the index of a row.
    TRowId RowAt(std::size_t index) const { return order_.at(index); }
    std::size_t IndexOf(TRowId row) const { return indexes_.at(row); }
    const std::vector<TRowId>& Order() const { return order_; }

    // Values by type. The field must have that type (assert). Throws std::out_of_range for a row
    // that the table does not have.
    std::int32_t Integer(TRowId row, TField field) const {
        return At(integers_[SlotOf(field, TFieldType::Integer)], row);
    }
    double Float(TRowId row, TField field) const {
        return At(floats_[SlotOf(field, TFieldType::Float)], row);
    }
    bool Boolean(TRowId row, TField field) const;
    // Valid until the table is emptied.
    std::string_view Text(TRowId row, TField field) const {
        return arena_.Text(At(texts_[SlotOf(field, TFieldType::Text)], row));
    }
    // Any field's value as text, without a display rule: a number has the system's decimal
    // separator and no more digits than it needs, a Boolean is "1" or "0".
    std::string AsText(TRowId row, TField field, const TRegionalSettings& regional) const;
    // As the grid shows it, by the field's display rule; baseCurrency is the abbreviation.
    std::string DisplayText(TRowId row, TField field, const TRegionalSettings& regional,
                            std::string_view baseCurrency) const;

    // Removes all rows and frees their memory.
    void Clear();
    // Adds a row of zeros and empty texts at the end of the current order.
    TRowId Append();
    // Adds a row whose texts come from StoreText.
    TRowId Append(const TRow& row);
    // Stores a text for a row to come, cut to its field's length.
    TTextArena::TPosition StoreText(TField field, std::string_view value) {
        return arena_.Store(value.substr(0, FieldInfo(field).maxChars));
    }
    // Makes room for this many rows in all, which saves memory and time when the number is known.
    void Reserve(std::size_t rows);
    void SetInteger(TRowId row, TField field, std::int32_t value);
    void SetFloat(TRowId row, TField field, double value);
    void SetBoolean(TRowId row, TField field, bool value);
    void SetText(TRowId row, TField field, std::string_view value);

    // Replaces the order; `order` holds every row once.
    void SetOrder(const std::vector<TRowId>& order);

    // Bytes that the rows take on the heap.
    std::size_t MemoryUsed() const;

private:
    static constexpr std::size_t kIntegers = CountOfType(TFieldType::Integer);
    static constexpr std::size_t kFloats = CountOfType(TFieldType::Float);
    static constexpr std::size_t kTexts = CountOfType(TFieldType::Text);

    static std::size_t SlotOf(TField field, [[maybe_unused]] TFieldType type) {
        assert(FieldInfo(field).type == type);
        return FieldSlot(field);
    }
    template <class T>
    static const T& At(const std::vector<T>& column, TRowId row) {
        if (row >= column.size()) throw std::out_of_range("article row");
        return column[row];
    }
    template <class T>
    static T& At(std::vector<T>& column, TRowId row) {
        return const_cast<T&>(At(std::as_const(column), row));
    }
    // Calls `visit` with each column.
    template <class Self, class Visitor>
    static void EachColumn(Self& self, Visitor visit);

    // Stored by column, because a search or a sort reads one or two columns of all rows.
    std::array<std::vector<double>, kFloats> floats_;
    std::array<std::vector<std::int32_t>, kIntegers> integers_;
    std::array<std::vector<TTextArena::TPosition>, kTexts> texts_;
    std::vector<std::uint8_t> promotions_;
    TTextArena arena_;
    std::vector<TRowId> order_;
    std::vector<std::uint32_t> indexes_;  // by row
};

}  // namespace tolvane
