#pragma once

// Private to this folder: the client library's functions as a table.

#include <ibase.h>

#include "database/ClientLibrary.h"

namespace tolvane {

struct TClientFunctions {
    decltype(&isc_start_multiple) startMultiple = nullptr;
    decltype(&isc_commit_transaction) commitTransaction = nullptr;
    decltype(&isc_rollback_transaction) rollbackTransaction = nullptr;
    decltype(&isc_dsql_allocate_statement) allocateStatement = nullptr;
    decltype(&isc_dsql_prepare) prepare = nullptr;
    decltype(&isc_dsql_describe) describe = nullptr;
    decltype(&isc_dsql_execute) execute = nullptr;
    decltype(&isc_dsql_execute_immediate) executeImmediate = nullptr;
    decltype(&isc_dsql_fetch) fetch = nullptr;
    decltype(&isc_dsql_free_statement) freeStatement = nullptr;
    decltype(&isc_open_blob2) openBlob = nullptr;
    decltype(&isc_get_segment) getSegment = nullptr;
    decltype(&isc_close_blob) closeBlob = nullptr;
    decltype(&isc_sqlcode) sqlCode = nullptr;
    // InterBase and early Firebird have only the older one of these two; one of them is set.
    decltype(&fb_interpret) interpret = nullptr;
    ISC_LONG(ISC_EXPORT* interpretUnbounded)(ISC_SCHAR*, ISC_STATUS**) = nullptr;
    // Only of a library that we have loaded; the host attaches by itself.
    decltype(&isc_attach_database) attachDatabase = nullptr;
    decltype(&isc_detach_database) detachDatabase = nullptr;
    // Since Firebird 2.5; null in others.
    decltype(&fb_cancel_operation) cancel = nullptr;
    TCallCount calls = std::make_shared<std::atomic<std::uint64_t>>();
    // Those that have not come back.
    std::shared_ptr<std::atomic<int>> open = std::make_shared<std::atomic<int>>();
};

}  // namespace tolvane
