#pragma once

// Private to this folder: what a transaction is to the client library.

#include "database/ClientFunctions.h"

namespace tolvane {

struct TTransactionState {
    const TClientFunctions& functions;
    isc_db_handle* database;
    isc_tr_handle handle{};

    TTransactionState(const TClientFunctions& table, isc_db_handle* cell)
        : functions(table), database(cell) {}
    TTransactionState(const TTransactionState&) = delete;
    TTransactionState& operator=(const TTransactionState&) = delete;
    ~TTransactionState();
};

}  // namespace tolvane
