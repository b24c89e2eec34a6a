#include "tests/bench/window/HostQuery.h"

#include <windows.h>

#include <ibase.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <vector>

namespace tolvane::bench {
namespace {

constexpr short kColumns = 40;
constexpr long kEndOfRows = 100;

template <class Function>
Function Entry(const char* name) {
    const FARPROC found = GetProcAddress(GetModuleHandleW(L"fbclient.dll"), name);
    if (found == nullptr) throw std::runtime_error(std::string("no ") + name);
    return reinterpret_cast<Function>(reinterpret_cast<void*>(found));
}

#define TOLVANE_CALL(name) Entry<decltype(&(name))>(#name)

// The argument of isc_start_multiple; the public header does not define its type.
struct TOneTransaction {
    isc_db_handle* database;
    long optionsLength;
    const char* options;
};

void Check(const ISC_STATUS* status, const char* what) {
    if (status[0] == 1 && status[1] != 0)
        throw std::runtime_error(std::string(what) + " failed: " + std::to_string(status[1]));
}

}  // namespace

std::size_t FetchAll(void* database, const std::string& text) {
    auto* const handle = static_cast<isc_db_handle*>(database);
    std::vector<XSQLVAR> storage(kColumns + 1);
    auto* const columns = reinterpret_cast<XSQLDA*>(storage.data());
    columns->version = SQLDA_VERSION1;
    columns->sqln = kColumns;

    ISC_STATUS_ARRAY status{};
    isc_tr_handle transaction{};
    isc_stmt_handle statement{};
    TOneTransaction block{handle, 0, nullptr};
    TOLVANE_CALL(isc_start_multiple)(status, &transaction, 1, &block);
    Check(status, "start");
    TOLVANE_CALL(isc_dsql_allocate_statement)(status, handle, &statement);
    Check(status, "allocate");
    TOLVANE_CALL(isc_dsql_prepare)
    (status, &transaction, &statement, 0, text.c_str(), 3, columns);
    Check(status, "prepare");

    std::vector<std::vector<std::int64_t>> data;
    std::vector<ISC_SHORT> nulls(kColumns);
    for (short i = 0; i < columns->sqld; ++i) {
        XSQLVAR& column = columns->sqlvar[i];
        data.emplace_back(static_cast<std::size_t>(column.sqllen) / 8 + 2);
        column.sqldata = reinterpret_cast<char*>(data.back().data());
        column.sqlind = &nulls[static_cast<std::size_t>(i)];
    }
    TOLVANE_CALL(isc_dsql_execute)(status, &transaction, &statement, SQLDA_VERSION1, nullptr);
    Check(status, "execute");
    const auto fetch = TOLVANE_CALL(isc_dsql_fetch);
    std::size_t rows = 0;
    ISC_STATUS result = 0;
    while ((result = fetch(status, &statement, SQLDA_VERSION1, columns)) == 0)
        ++rows;
    if (result != kEndOfRows) Check(status, "fetch");
    TOLVANE_CALL(isc_dsql_free_statement)(status, &statement, DSQL_drop);
    TOLVANE_CALL(isc_commit_transaction)(status, &transaction);
    Check(status, "commit");
    return rows;
}

}  // namespace tolvane::bench
