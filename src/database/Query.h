#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "database/ColumnValue.h"
#include "database/Transaction.h"

namespace tolvane {

struct TCursor;

// One statement at a time on a transaction that must outlive the query. Texts in and out are code
// page 1251. Failures throw TDatabaseError. One thread.
class TQuery {
public:
    // The longest text that is read from a BLOB; the rest is left out.
    static constexpr std::size_t kLongestBlob = 0x100000;

    explicit TQuery(TTransaction& transaction);
    TQuery(TQuery&&) noexcept;
    TQuery& operator=(TQuery&&) noexcept;
    ~TQuery();

    // Closes the query.
    void SetText(std::string text);
    // Runs a select and fetches its first row, so that RowCount is 0 or 1 afterwards.
    void Open();
    // Fetches the rows that are left.
    void FetchAll();
    // Fetches one more row without keeping it; false at the end.
    bool FetchLatest();
    // The values of the row that was fetched last, kept or not, by column; valid until the next
    // fetch or Close. Empty at the end of the rows.
    std::span<const TColumnValue> LatestRow() const noexcept;
    // Runs a statement that returns no rows.
    void Execute();
    // Frees the rows and the statement; does nothing when it is not open.
    void Close() noexcept;
    bool IsOpen() const noexcept;

    std::size_t RowCount() const noexcept;
    std::size_t ColumnCount() const noexcept;
    // The index of the column with exactly this alias; throws when there is no such column.
    std::size_t Column(std::string_view alias) const;
    // A wrong row or column throws std::out_of_range. A value's text is valid until Close.
    TColumnValue Value(std::size_t row, std::size_t column) const;
    bool IsNull(std::size_t row, std::size_t column) const;
    std::string AsText(std::size_t row, std::size_t column,
                       const TRegionalSettings& regional) const;
    std::int32_t AsInteger(std::size_t row, std::size_t column,
                           const TRegionalSettings& regional) const;
    double AsFloat(std::size_t row, std::size_t column, const TRegionalSettings& regional) const;

private:
    // Throws when the query is not open.
    TCursor& Cursor() const;

    TTransactionState* transaction_;
    std::string text_;
    std::unique_ptr<TCursor> cursor_;
};

}  // namespace tolvane
