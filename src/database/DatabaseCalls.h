#pragma once

#include <cstdint>

#include "database/ClientLibrary.h"

namespace tolvane {

// What a thread may see of the calls that another one makes on a connection, and the one thing that
// it may do about them. Any thread.
class TDatabaseCalls {
public:
    // `database`: the connection's handle cell, as for TTransaction. Both outlive this object.
    TDatabaseCalls(const TClientLibrary& library, void* database)
        : functions_(&library.Functions()), database_(database) {}

    // The number of the call that is under way; 0 for none.
    std::uint64_t Current() const noexcept;
    // Whether the library can end a call: Firebird 2.5 or later.
    bool CanEnd() const noexcept;
    // Breaks the connection, and with it this call, unless that has come back meanwhile.
    void End(std::uint64_t call) const noexcept;

private:
    const TClientFunctions* functions_;
    void* database_;
};

}  // namespace tolvane
