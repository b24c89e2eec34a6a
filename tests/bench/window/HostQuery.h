#pragma once

#include <cstddef>
#include <string>

namespace tolvane::bench {

// Prepares and runs a query and fetches its rows into the space of one row, with calls of the
// host's client library alone. Returns the number of rows. `database` points to the attachment's
// handle.
std::size_t FetchAll(void* database, const std::string& text);

}  // namespace tolvane::bench
