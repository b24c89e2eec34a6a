#pragma once

// Private to this folder: the one place that turns a status vector into an error.

#include "database/ClientFunctions.h"

namespace tolvane {

// The status vector of one call.
class TStatus {
public:
    explicit TStatus(const TClientFunctions& functions) noexcept : functions_(functions) {
        ++*functions.calls;
        ++*functions.open;
    }
    TStatus(const TStatus&) = delete;
    TStatus& operator=(const TStatus&) = delete;
    ~TStatus() { --*functions_.open; }

    operator ISC_STATUS*() noexcept { return vector_; }  // NOLINT: what every call takes first
    bool Failed() const noexcept { return vector_[0] == isc_arg_gds && vector_[1] != 0; }
    // Throws TDatabaseError when the call failed; it may also say so by its result alone.
    void Check(ISC_STATUS result = 0) const {
        if (Failed() || result != 0) Throw();
    }

private:
    [[noreturn]] void Throw() const;

    const TClientFunctions& functions_;
    ISC_STATUS_ARRAY vector_ = {};
};

}  // namespace tolvane
