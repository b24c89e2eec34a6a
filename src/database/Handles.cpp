#include "database/Handles.h"

namespace tolvane {

TStatement::TStatement(TTransactionState& transaction) : functions_(&transaction.functions) {
    TStatus status(*functions_);
    functions_->allocateStatement(status, transaction.database, &handle_);
    status.Check();
}

void TStatement::Free() noexcept {
    if (handle_ == isc_stmt_handle{}) return;
    // Its failure, after a lost connection, leaves nothing that could be freed.
    TStatus status(*functions_);
    functions_->freeStatement(status, &handle_, DSQL_drop);
    handle_ = {};
}

TBlob::TBlob(TTransactionState& transaction, ISC_QUAD id) : functions_(transaction.functions) {
    TStatus status(functions_);
    functions_.openBlob(status, transaction.database, &transaction.handle, &handle_, &id, 0,
                        nullptr);
    status.Check();
}

TBlob::~TBlob() {
    TStatus status(functions_);
    functions_.closeBlob(status, &handle_);
}

}  // namespace tolvane
