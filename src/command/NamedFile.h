#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace tolvane {

// The bytes of a file that the user has named; nothing when it is not there. `what`: what it is to
// the user, such as "password file". Throws TUsageError when it cannot be read.
std::optional<std::string> ReadNamedFile(const std::string& what,
                                         const std::filesystem::path& file);

// UTF-8.
std::string Utf8Path(const std::filesystem::path& path);

}  // namespace tolvane
