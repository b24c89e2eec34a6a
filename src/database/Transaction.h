#pragma once

#include <cstdint>
#include <memory>

#include "database/ClientLibrary.h"

namespace tolvane {

struct TTransactionState;

// A number for the connection that a handle cell (isc_db_handle) holds now: another connection has
// another number, and 0 means no connection. Any thread.
std::uintptr_t ConnectionIn(const void* database) noexcept;

enum class TTransactionKind : std::uint8_t { Writing, ReadOnly };

// A transaction on a connection: a snapshot, and one that fails at once when somebody else holds a
// lock. One thread.
class TTransaction {
public:
    // `database` points to the connection's handle cell (isc_db_handle); Start fails when it is
    // null or cannot be read any more. Both must outlive this object.
    TTransaction(const TClientLibrary& library, void* database,
                 TTransactionKind kind = TTransactionKind::Writing);
    TTransaction(TTransaction&&) noexcept;
    // An active transaction of the target is rolled back.
    TTransaction& operator=(TTransaction&& other) noexcept;
    // Rolls back when active; never commits.
    ~TTransaction();

    bool IsActive() const noexcept;
    // These throw TDatabaseError. Start while active, and Commit or Rollback while not, are errors.
    // After a failed Commit the transaction is still active; after a failed Rollback it is not.
    void Start();
    void Commit();
    void Rollback();

    TTransactionState& State() const noexcept { return *state_; }

private:
    std::unique_ptr<TTransactionState> state_;
};

}  // namespace tolvane
