#include "database/DatabaseCalls.h"

#include "database/ClientFunctions.h"

namespace tolvane {

std::uint64_t TDatabaseCalls::Current() const noexcept {
    return *functions_->open > 0 ? functions_->calls->load() : 0;
}

bool TDatabaseCalls::CanEnd() const noexcept {
    return functions_->cancel != nullptr;
}

void TDatabaseCalls::End(std::uint64_t call) const noexcept {
    if (!CanEnd() || call == 0 || Current() != call) return;
    ISC_STATUS_ARRAY status = {};
    functions_->cancel(status, static_cast<isc_db_handle*>(database_), fb_cancel_abort);
}

}  // namespace tolvane
