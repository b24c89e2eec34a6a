#pragma once

#include <cstddef>
#include <string>

namespace tolvane::bench {

// Prepares and runs a query and fetches its rows into one row's space, by nothing but calls of the
// client library. Returns the number of rows. `database` points to the attachment's handle.
std::size_t BareFetch(void* database, const std::string& text);

}  // namespace tolvane::bench
