#pragma once

// What a database engine inside this process needs of the system, and what its client library does
// to the process. Only Linux needs any of it; on other systems these do nothing.

#include <cstdint>
#include <filesystem>
#include <memory>

namespace tolvane {

// For the length of a block of this thread: file names are UTF-8 whatever the locale says, which is
// how the client library reads them; SIGINT and SIGTERM wait; at its end the program's own handlers
// of these are back, where the library has put its own.
class TClientCallScope {
public:
    TClientCallScope();
    TClientCallScope(const TClientCallScope&) = delete;
    TClientCallScope& operator=(const TClientCallScope&) = delete;
    ~TClientCallScope();

private:
    struct TKept;
    std::unique_ptr<TKept> kept_;
};

// Makes sure that the engine has a folder for its locks. Returns whether it is a private one, which
// other users' programs do not see: the environment variable FIREBIRD_LOCK names it from then on.
// Throws std::system_error or TFailure. While no other thread uses the environment.
bool PrepareEngineLocks();

// Whether anybody, also this process, has a database file open. Unknown: no such file, no right to
// read it, or another system.
enum class TFileUse : std::uint8_t { Unknown, Free, Shared, Exclusive };
TFileUse UseOf(const std::filesystem::path& file);

}  // namespace tolvane
