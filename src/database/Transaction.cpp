#include "database/Transaction.h"

#include <array>
#include <cstring>

#include "database/DatabaseError.h"
#include "database/Status.h"
#include "database/TransactionState.h"
#include "system/ProcessMemory.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

using TParameters = std::array<char, 4>;
constexpr TParameters kWriting = {isc_tpb_version3, isc_tpb_write, isc_tpb_concurrency,
                                  isc_tpb_nowait};
constexpr TParameters kReadOnly = {isc_tpb_version3, isc_tpb_read, isc_tpb_concurrency,
                                   isc_tpb_nowait};

// What isc_start_multiple takes per database; the client library's header has no type for it.
struct TTransactionBlock {
    isc_db_handle* database;
    int parametersLength;
    const char* parameters;
};

void Require(bool active, bool wanted) {
    if (active == wanted) return;
    throw TDatabaseError(std::string(wanted ? "Няма започната транзакция"_cp1251
                                            : "Транзакцията вече е започната"_cp1251));
}

}  // namespace

// The client library's handles are pointers or numbers, depending on its header.
std::uintptr_t ConnectionIn(const void* database) noexcept {
    static_assert(sizeof(isc_db_handle) <= sizeof(std::uintptr_t));
    std::uintptr_t number = 0;
    std::memcpy(&number, database, sizeof(isc_db_handle));
    return number;
}

TTransactionState::~TTransactionState() {
    if (handle == isc_tr_handle{}) return;
    TStatus status(functions);
    functions.rollbackTransaction(status, &handle);
}

TTransaction::TTransaction(const TClientLibrary& library, void* database, TTransactionKind kind)
    : state_(std::make_unique<TTransactionState>(library.Functions(),
                                                 static_cast<isc_db_handle*>(database), kind)) {}
TTransaction::TTransaction(TTransaction&&) noexcept = default;
TTransaction& TTransaction::operator=(TTransaction&& other) noexcept = default;
TTransaction::~TTransaction() = default;

bool TTransaction::IsActive() const noexcept {
    return state_ != nullptr && state_->handle != isc_tr_handle{};
}

void TTransaction::Start() {
    Require(IsActive(), false);
    if (!CanRead(state_->database, sizeof(isc_db_handle)))
        throw TDatabaseError(std::string("Няма връзка с базата данни"_cp1251));
    const TParameters& parameters =
        state_->kind == TTransactionKind::ReadOnly ? kReadOnly : kWriting;
    TTransactionBlock block{state_->database, static_cast<int>(parameters.size()),
                            parameters.data()};
    TStatus status(state_->functions);
    state_->functions.startMultiple(status, &state_->handle, 1, &block);
    status.Check();
}

void TTransaction::Commit() {
    Require(IsActive(), true);
    TStatus status(state_->functions);
    state_->functions.commitTransaction(status, &state_->handle);
    status.Check();
}

void TTransaction::Rollback() {
    Require(IsActive(), true);
    TStatus status(state_->functions);
    state_->functions.rollbackTransaction(status, &state_->handle);
    // A transaction that cannot even be rolled back has been lost with its connection.
    state_->handle = {};
    status.Check();
}

}  // namespace tolvane
