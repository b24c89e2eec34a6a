#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tolvane::host {

// The statements of a script, which end with semicolons: without comments outside of texts, and
// without empty ones. "set term" is not known.
std::vector<std::string> SqlStatements(std::string_view script);

}  // namespace tolvane::host
