#include "tests/support/module/Connection.h"

#include <array>
#include <stdexcept>
#include <vector>

#include "tests/support/Environment.h"

namespace tolvane::test {
namespace {

HMODULE Client() {
    static const HMODULE kClient = LoadLibraryW(L"fbclient.dll");
    if (kClient == nullptr) throw std::runtime_error("fbclient.dll does not load");
    return kClient;
}

template <class Function>
Function Entry(const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(Client(), name)));
}

#define TOLVANE_ENTRY(name) Entry<decltype(&(name))>(#name)

void Check(const std::array<ISC_STATUS, 20>& status, const std::string& what) {
    if (status[0] != 1 || status[1] == 0) return;
    std::array<char, 512> text{};
    const ISC_STATUS* at = status.data();
    TOLVANE_ENTRY(fb_interpret)(text.data(), text.size(), &at);
    throw std::runtime_error(what + ": " + text.data());
}

// The argument of isc_start_multiple; the public header does not define its type.
struct TTransactionBlock {
    isc_db_handle* database;
    long optionsLength;
    const char* options;
};

void AddText(std::string& block, char item, const std::string& text) {
    block += item;
    block += static_cast<char>(text.size());
    block += text;
}

}  // namespace

std::string TConnection::Server() {
    return Environment("TOLVANE_FB_SERVER");
}

TConnection::TConnection(const std::string& name, const std::string& server) : name_(name) {
    Attach(server);
    database_ = {sizeof database_, &handle_, "fbclient.dll"};
}

void TConnection::Attach(const std::string& server) {
    std::string block(1, static_cast<char>(isc_dpb_version1));
    AddText(block, isc_dpb_user_name, "SYSDBA");
    AddText(block, isc_dpb_password, Environment("TOLVANE_FB_PASSWORD"));
    AddText(block, isc_dpb_lc_ctype, "WIN1251");
    const std::string path = server + ":" + Environment("TOLVANE_FB_FOLDER") + "/" + name_;
    std::array<ISC_STATUS, 20> status{};
    TOLVANE_ENTRY(isc_attach_database)
    (status.data(), 0, path.c_str(), &handle_, static_cast<short>(block.size()), block.data());
    Check(status, "attach " + path);
}

TConnection::~TConnection() {
    std::array<ISC_STATUS, 20> status{};
    if (handle_ != isc_db_handle{}) TOLVANE_ENTRY(isc_detach_database)(status.data(), &handle_);
}

void TConnection::ShutDown() {
    std::array<ISC_STATUS, 20> status{};
    TOLVANE_ENTRY(isc_detach_database)(status.data(), &handle_);
    Check(status, "detach");
}

void TConnection::Abort() {
    std::array<ISC_STATUS, 20> status{};
    TOLVANE_ENTRY(fb_cancel_operation)(status.data(), &handle_, fb_cancel_abort);
}

void TConnection::Renew() {
    std::array<ISC_STATUS, 20> status{};
    TOLVANE_ENTRY(isc_detach_database)(status.data(), &handle_);
    handle_ = {};
    Attach(Server());
}

void TConnection::EndOthers() {
    Execute(
        "delete from MON$ATTACHMENTS where MON$ATTACHMENT_ID <> CURRENT_CONNECTION and "
        "MON$USER = CURRENT_USER");
}

void TConnection::Execute(const std::string& sql) {
    std::array<ISC_STATUS, 20> status{};
    isc_tr_handle transaction{};
    TTransactionBlock block{&handle_, 0, nullptr};
    TOLVANE_ENTRY(isc_start_multiple)(status.data(), &transaction, 1, &block);
    Check(status, "start");
    TOLVANE_ENTRY(isc_dsql_execute_immediate)
    (status.data(), &handle_, &transaction, 0, sql.c_str(), 3, nullptr);
    Check(status, sql);
    TOLVANE_ENTRY(isc_commit_transaction)(status.data(), &transaction);
    Check(status, "commit");
}

long long TConnection::Number(const std::string& sql) {
    std::array<ISC_STATUS, 20> status{};
    isc_tr_handle transaction{};
    isc_stmt_handle statement{};
    TTransactionBlock block{&handle_, 0, nullptr};
    TOLVANE_ENTRY(isc_start_multiple)(status.data(), &transaction, 1, &block);
    Check(status, "start");
    TOLVANE_ENTRY(isc_dsql_allocate_statement)(status.data(), &handle_, &statement);
    Check(status, "allocate");
    XSQLDA row{};
    row.version = SQLDA_VERSION1;
    row.sqln = 1;
    TOLVANE_ENTRY(isc_dsql_prepare)
    (status.data(), &transaction, &statement, 0, sql.c_str(), 3, &row);
    Check(status, sql);
    long long value = 0;
    short isNull = 0;
    row.sqlvar[0].sqltype = SQL_INT64 + 1;
    row.sqlvar[0].sqllen = sizeof value;
    row.sqlvar[0].sqldata = reinterpret_cast<char*>(&value);
    row.sqlvar[0].sqlind = &isNull;
    TOLVANE_ENTRY(isc_dsql_execute)(status.data(), &transaction, &statement, 1, nullptr);
    Check(status, sql);
    TOLVANE_ENTRY(isc_dsql_fetch)(status.data(), &statement, 1, &row);
    Check(status, sql);
    TOLVANE_ENTRY(isc_dsql_free_statement)(status.data(), &statement, DSQL_drop);
    TOLVANE_ENTRY(isc_commit_transaction)(status.data(), &transaction);
    Check(status, "commit");
    return value;
}

}  // namespace tolvane::test
