#include <ibase.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "tests/support/client/FakeClient.h"

namespace tolvane::test {
namespace {

constexpr ISC_STATUS kErrorCode = 335544345;
constexpr ISC_STATUS kNoMoreRows = 100;
constexpr unsigned kHandle = 1;

TFakeClient& Client() {
    static TFakeClient client;
    return client;
}

ISC_STATUS Failed(ISC_STATUS* status, const char* function) {
    status[0] = isc_arg_gds;
    status[1] = kErrorCode;
    status[2] = isc_arg_string;
    status[3] = Client().nullsInStatus ? 0 : reinterpret_cast<ISC_STATUS>(function);
    status[4] = isc_arg_end;
    return kErrorCode;
}

ISC_STATUS Succeeded(ISC_STATUS* status) {
    status[0] = isc_arg_gds;
    status[1] = 0;
    status[2] = isc_arg_end;
    return 0;
}

// Counts the call; whether it is to fail.
bool Fails(const char* function) {
    TFakeClient& client = Client();
    ++client.calls;
    if (client.during != nullptr) client.during(client.context);
    const bool fails =
        client.failingCall != 0 && (client.failsForGood ? client.calls >= client.failingCall
                                                        : client.calls == client.failingCall);
    if (fails && client.firstFailed.empty()) client.firstFailed = function;
    return fails;
}

void Require(bool holds) {
    if (!holds) ++Client().misuses;
}

TFakeClient::TStatement& StatementOf(const isc_stmt_handle* handle) {
    const bool known = *handle >= 1 && *handle <= TFakeClient::kMostStatements;
    Require(known && Client().statement[*handle - 1].open);
    return Client().statement[known ? *handle - 1 : 0];
}

const TFakeResult* ResultFor(std::string_view sql) {
    for (const TFakeResult& result : Client().results)
        if (sql.find(result.words) != std::string_view::npos) return &result;
    return nullptr;
}

void Describe(const TFakeResult& result, int reported, XSQLDA* descriptor) {
    const auto count = static_cast<ISC_SHORT>(result.columns.size());
    descriptor->sqld = reported != 0 ? static_cast<ISC_SHORT>(reported) : count;
    if (count > descriptor->sqln) return;
    for (ISC_SHORT i = 0; i < count; ++i) {
        const TFakeColumn& column = result.columns[static_cast<std::size_t>(i)];
        XSQLVAR& variable = descriptor->sqlvar[i];
        variable.sqltype = column.type;
        variable.sqllen = column.length;
        variable.sqlscale = column.scale;
        std::copy(column.alias.begin(), column.alias.end(), variable.aliasname);
        variable.aliasname_length = static_cast<ISC_SHORT>(column.alias.size());
        if (Client().aliasLength != 0) variable.aliasname_length = Client().aliasLength;
    }
}

template <class T>
void Put(char* at, const T& value) {
    std::memcpy(at, &value, sizeof(value));
}

void PutText(XSQLVAR& variable, std::string_view text) {
    // As many bytes as there is room for; the length is the text's own.
    const auto room = static_cast<std::size_t>(static_cast<unsigned short>(variable.sqllen));
    const std::size_t fitting = std::min(text.size(), room);
    if ((variable.sqltype & ~1) == SQL_VARYING) {
        Put(variable.sqldata, static_cast<ISC_USHORT>(text.size()));
        std::memcpy(variable.sqldata + sizeof(ISC_USHORT), text.data(), fitting);
    } else {
        std::memset(variable.sqldata, ' ', room);
        std::memcpy(variable.sqldata, text.data(), fitting);
    }
}

void PutValue(XSQLVAR& variable, const TFakeValue& value) {
    switch (variable.sqltype & ~1) {
        case SQL_SHORT:
            return Put(variable.sqldata, static_cast<std::int16_t>(value.integer));
        case SQL_LONG:
            return Put(variable.sqldata, static_cast<std::int32_t>(value.integer));
        case SQL_INT64:
            return Put(variable.sqldata, value.integer);
        case SQL_FLOAT:
            return Put(variable.sqldata, static_cast<float>(value.number));
        case SQL_DOUBLE:
            return Put(variable.sqldata, value.number);
        case SQL_TYPE_DATE:
            return Put(variable.sqldata, static_cast<ISC_DATE>(value.integer));
        case SQL_TYPE_TIME:
            return Put(variable.sqldata, static_cast<ISC_TIME>(value.integer));
        case SQL_TIMESTAMP:
            return Put(variable.sqldata, ISC_TIMESTAMP{static_cast<ISC_DATE>(value.integer), 0});
        case SQL_BOOLEAN:
            return Put(variable.sqldata, static_cast<FB_BOOLEAN>(value.integer));
        case SQL_BLOB:
            Client().blobText = value.text;
            return Put(variable.sqldata, ISC_QUAD{1, 1});
        default:
            PutText(variable, value.text);
    }
}

}  // namespace
}  // namespace tolvane::test

// NOLINTBEGIN(readability-identifier-naming): the client library's own names
using namespace tolvane::test;

extern "C" {

TFakeClient* tolvane_fake_client() {
    return &Client();
}

ISC_STATUS isc_start_multiple(ISC_STATUS* status, isc_tr_handle* transaction, short, void*) {
    if (Fails("isc_start_multiple")) return Failed(status, "isc_start_multiple");
    Require(*transaction == 0);
    *transaction = kHandle;
    ++Client().transactions;
    return Succeeded(status);
}

ISC_STATUS isc_commit_transaction(ISC_STATUS* status, isc_tr_handle* transaction) {
    if (Fails("isc_commit_transaction")) return Failed(status, "isc_commit_transaction");
    Require(*transaction == kHandle);
    *transaction = 0;
    --Client().transactions;
    return Succeeded(status);
}

// What fails here and in the next two has been lost with its connection.
ISC_STATUS isc_rollback_transaction(ISC_STATUS* status, isc_tr_handle* transaction) {
    Require(*transaction == kHandle);
    --Client().transactions;
    if (Fails("isc_rollback_transaction")) return Failed(status, "isc_rollback_transaction");
    *transaction = 0;
    return Succeeded(status);
}

ISC_STATUS isc_dsql_free_statement(ISC_STATUS* status, isc_stmt_handle* handle, unsigned short) {
    StatementOf(handle) = {};
    --Client().statements;
    if (Fails("isc_dsql_free_statement")) return Failed(status, "isc_dsql_free_statement");
    *handle = 0;
    return Succeeded(status);
}

ISC_STATUS isc_close_blob(ISC_STATUS* status, isc_blob_handle* blob) {
    Require(*blob == kHandle);
    --Client().blobs;
    if (Fails("isc_close_blob")) return Failed(status, "isc_close_blob");
    *blob = 0;
    return Succeeded(status);
}

ISC_STATUS isc_dsql_allocate_statement(ISC_STATUS* status, isc_db_handle*,
                                       isc_stmt_handle* handle) {
    if (Fails("isc_dsql_allocate_statement")) return Failed(status, "isc_dsql_allocate_statement");
    for (int i = 0; i < TFakeClient::kMostStatements; ++i) {
        if (Client().statement[i].open) continue;
        Client().statement[i] = {.open = true};
        ++Client().statements;
        *handle = static_cast<isc_stmt_handle>(i + 1);
        return Succeeded(status);
    }
    return Failed(status, "too many statements");
}

ISC_STATUS isc_dsql_prepare(ISC_STATUS* status, isc_tr_handle* transaction, isc_stmt_handle* handle,
                            unsigned short, const ISC_SCHAR* sql, unsigned short,
                            XSQLDA* descriptor) {
    if (Fails("isc_dsql_prepare")) return Failed(status, "isc_dsql_prepare");
    Require(*transaction == kHandle);
    TFakeClient::TStatement& statement = StatementOf(handle);
    statement.result = ResultFor(sql);
    if (statement.result == nullptr) return Failed(status, "unknown statement");
    Describe(*statement.result, Client().columnsAtPrepare, descriptor);
    return Succeeded(status);
}

ISC_STATUS isc_dsql_describe(ISC_STATUS* status, isc_stmt_handle* handle, unsigned short,
                             XSQLDA* descriptor) {
    if (Fails("isc_dsql_describe")) return Failed(status, "isc_dsql_describe");
    Describe(*StatementOf(handle).result, Client().columnsAtDescribe, descriptor);
    return Succeeded(status);
}

ISC_STATUS isc_dsql_execute(ISC_STATUS* status, isc_tr_handle* transaction, isc_stmt_handle* handle,
                            unsigned short, const XSQLDA*) {
    if (Fails("isc_dsql_execute")) return Failed(status, "isc_dsql_execute");
    Require(*transaction == kHandle);
    StatementOf(handle).nextRow = 0;
    return Succeeded(status);
}

ISC_STATUS isc_dsql_execute_immediate(ISC_STATUS* status, isc_db_handle*,
                                      isc_tr_handle* transaction, unsigned short, const ISC_SCHAR*,
                                      unsigned short, const XSQLDA*) {
    if (Fails("isc_dsql_execute_immediate")) return Failed(status, "isc_dsql_execute_immediate");
    Require(*transaction == kHandle);
    return Succeeded(status);
}

ISC_STATUS isc_dsql_fetch(ISC_STATUS* status, isc_stmt_handle* handle, unsigned short,
                          const XSQLDA* constDescriptor) {
    if (Fails("isc_dsql_fetch")) return Failed(status, "isc_dsql_fetch");
    const TFakeClient& client = Client();
    if (client.resultOfFetch != 0) return client.resultOfFetch;
    TFakeClient::TStatement& statement = StatementOf(handle);
    const std::size_t columns = statement.result->columns.size();
    const std::size_t first = statement.nextRow * columns;
    if (first >= statement.result->values.size()) return kNoMoreRows;
    ++statement.nextRow;
    auto* const descriptor = const_cast<XSQLDA*>(constDescriptor);
    for (std::size_t i = 0; i < columns; ++i) {
        const TFakeValue& value = statement.result->values[first + i];
        XSQLVAR& variable = descriptor->sqlvar[i];
        *variable.sqlind = value.isNull ? client.indicatorOfNull : client.indicatorOfValue;
        if (!value.isNull) PutValue(variable, value);
        if (client.takesPointersAway) variable.sqldata = nullptr;
    }
    return Succeeded(status);
}

ISC_STATUS isc_open_blob2(ISC_STATUS* status, isc_db_handle*, isc_tr_handle* transaction,
                          isc_blob_handle* blob, ISC_QUAD*, ISC_USHORT, const ISC_UCHAR*) {
    if (Fails("isc_open_blob2")) return Failed(status, "isc_open_blob2");
    Require(*transaction == kHandle);
    *blob = kHandle;
    ++Client().blobs;
    return Succeeded(status);
}

ISC_STATUS isc_get_segment(ISC_STATUS* status, isc_blob_handle* blob, unsigned short* length,
                           unsigned short size, ISC_SCHAR* buffer) {
    if (Fails("isc_get_segment")) return Failed(status, "isc_get_segment");
    TFakeClient& client = Client();
    Require(*blob == kHandle);
    *length = 0;
    if (client.hasEmptySegments) return Succeeded(status);
    if (client.blobText.empty()) {
        Failed(status, "isc_get_segment");
        return isc_segstr_eof;
    }
    const std::size_t count = std::min<std::size_t>(client.blobText.size(), size);
    std::copy_n(client.blobText.begin(), count, buffer);
    client.blobText.remove_prefix(count);
    *length = client.segmentsAreTooLong ? USHRT_MAX : static_cast<unsigned short>(count);
    return Succeeded(status);
}

ISC_STATUS fb_cancel_operation(ISC_STATUS* status, isc_db_handle* database, ISC_USHORT kind) {
    ++Client().cancels;
    Client().cancelled = database;
    Client().cancelKind = kind;
    return Succeeded(status);
}

ISC_LONG isc_sqlcode(const ISC_STATUS*) {
    return -901;
}

// The first line names what has failed, the second is always the same.
ISC_LONG fb_interpret(ISC_SCHAR* buffer, unsigned int size, const ISC_STATUS** vector) {
    const ISC_STATUS* const next = *vector;
    if (next[0] == isc_arg_gds && next[1] != 0) {
        *vector += 2;
        const auto* const function = reinterpret_cast<const char*>(next[3]);
        return std::snprintf(buffer, size, "%s failed", function != nullptr ? function : "?");
    }
    if (next[0] != isc_arg_string) return 0;
    if (!Client().wordsHaveNoEnd) *vector += 2;
    return std::snprintf(buffer, size, "as the test wants it");
}

}  // extern "C"
// NOLINTEND(readability-identifier-naming)
