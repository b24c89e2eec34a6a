#pragma once

// Private to this folder: owners of the client library's handles.

#include <utility>

#include "database/Status.h"
#include "database/TransactionState.h"

namespace tolvane {

// A prepared statement.
class TStatement {
public:
    explicit TStatement(TTransactionState& transaction);
    TStatement(TStatement&& other) noexcept
        : functions_(other.functions_), handle_(std::exchange(other.handle_, isc_stmt_handle{})) {}
    TStatement& operator=(TStatement&& other) noexcept {
        Free();
        functions_ = other.functions_;
        handle_ = std::exchange(other.handle_, isc_stmt_handle{});
        return *this;
    }
    ~TStatement() { Free(); }

    isc_stmt_handle* Handle() noexcept { return &handle_; }

private:
    void Free() noexcept;

    const TClientFunctions* functions_;
    isc_stmt_handle handle_{};
};

// An open BLOB, to be read.
class TBlob {
public:
    TBlob(TTransactionState& transaction, ISC_QUAD id);
    TBlob(const TBlob&) = delete;
    TBlob& operator=(const TBlob&) = delete;
    ~TBlob();

    isc_blob_handle* Handle() noexcept { return &handle_; }

private:
    const TClientFunctions& functions_;
    isc_blob_handle handle_{};
};

}  // namespace tolvane
