#pragma once

// Private to this folder: what a transaction is to the client library.

#include "database/ClientFunctions.h"
#include "database/Transaction.h"

namespace tolvane {

struct TTransactionState {
    const TClientFunctions& functions;
    isc_db_handle* database;
    TTransactionKind kind;
    isc_tr_handle handle{};

    TTransactionState(const TClientFunctions& table, isc_db_handle* cell, TTransactionKind wanted)
        : functions(table), database(cell), kind(wanted) {}
    TTransactionState(const TTransactionState&) = delete;
    TTransactionState& operator=(const TTransactionState&) = delete;
    ~TTransactionState();
};

}  // namespace tolvane
