#include "tests/bench/articles/BareFetch.h"

#include <ibase.h>

#include <cstdint>
#include <stdexcept>
#include <vector>

namespace tolvane::bench {
namespace {

constexpr short kColumns = 40;

void Check(const ISC_STATUS* status) {
    if (status[0] == 1 && status[1] != 0) throw std::runtime_error("the bare fetch failed");
}

}  // namespace

std::size_t BareFetch(void* database, const std::string& text) {
    auto* const handle = static_cast<isc_db_handle*>(database);
    std::vector<XSQLVAR> storage(kColumns + 1);
    auto* const columns = reinterpret_cast<XSQLDA*>(storage.data());
    columns->version = SQLDA_VERSION1;
    columns->sqln = kColumns;

    ISC_STATUS_ARRAY status{};
    isc_tr_handle transaction = 0;
    isc_stmt_handle statement = 0;
    isc_start_transaction(status, &transaction, 1, handle, 0, nullptr);
    Check(status);
    isc_dsql_allocate_statement(status, handle, &statement);
    Check(status);
    isc_dsql_prepare(status, &transaction, &statement, 0, text.c_str(), 3, columns);
    Check(status);

    std::vector<std::vector<std::int64_t>> data;
    std::vector<ISC_SHORT> nulls(kColumns);
    for (short i = 0; i < columns->sqld; ++i) {
        XSQLVAR& column = columns->sqlvar[i];
        data.emplace_back(static_cast<std::size_t>(column.sqllen) / 8 + 2);
        column.sqldata = reinterpret_cast<char*>(data.back().data());
        column.sqlind = &nulls[static_cast<std::size_t>(i)];
    }
    isc_dsql_execute(status, &transaction, &statement, SQLDA_VERSION1, nullptr);
    Check(status);
    std::size_t rows = 0;
    while (isc_dsql_fetch(status, &statement, SQLDA_VERSION1, columns) == 0)
        ++rows;
    Check(status);
    isc_dsql_free_statement(status, &statement, DSQL_drop);
    isc_commit_transaction(status, &transaction);
    return rows;
}

}  // namespace tolvane::bench
