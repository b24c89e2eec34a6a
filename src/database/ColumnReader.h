#pragma once

// Private to this folder: the output columns of a prepared statement.

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "database/RowBuffer.h"
#include "database/TransactionState.h"

namespace tolvane {

// The descriptor that the client library fills, and one row's space for it. A type that is unknown
// here (of a newer server) is asked for as text.
class TColumnReader {
public:
    TColumnReader();

    // For isc_dsql_prepare and, when Grow returns true, isc_dsql_describe.
    XSQLDA* Descriptor() noexcept { return reinterpret_cast<XSQLDA*>(descriptor_.data()); }
    // Makes more space if there are more columns than space; returns whether that was so.
    bool Grow();
    // After the columns are described: makes the space for a row.
    void Bind();

    std::size_t Count() const noexcept { return types_.size(); }
    const std::vector<TColumnType>& Types() const noexcept { return types_; }
    std::string_view Alias(std::size_t column) const;
    // The row that was fetched last, valid until the next one. Reads the text of BLOBs.
    std::span<const TColumnValue> Row(TTransactionState& transaction);

private:
    void Resize(std::size_t columns);
    const XSQLVAR& Variable(std::size_t column) const noexcept;
    TColumnValue Read(std::size_t column, TTransactionState& transaction);

    std::vector<XSQLVAR> descriptor_;  // its storage: the header takes the first elements
    std::vector<std::int64_t> data_;   // of the values, aligned
    std::vector<ISC_SHORT> nulls_;
    std::vector<TColumnType> types_;
    std::vector<TColumnValue> values_;
    std::vector<std::string> blobs_;
};

}  // namespace tolvane
