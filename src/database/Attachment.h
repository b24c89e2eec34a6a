#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "database/ClientLibrary.h"
#include "database/DatabaseError.h"

namespace tolvane {

// Which database, and as whom. The texts are UTF-8, as paths may hold letters that code page 1251
// lacks.
struct TDatabaseLogin {
    // "server:path", "server/port:path" or a URL ("inet://...") for a server; a path alone, or an
    // alias of the client's databases.conf, for the embedded engine.
    std::string database;
    // Empty with the embedded engine: SYSDBA. That engine asks for no password; who may open the
    // file may read it.
    std::string user = {};
    std::string password = {};
    // The client library's file name or path; empty for the usual names.
    std::filesystem::path clientLibrary = {};
};

// Another program has the file, which the embedded engine takes for itself. It may soon be free.
class TDatabaseInUse : public TDatabaseError {
public:
    using TDatabaseError::TDatabaseError;
};

// Whether a plain path or alias is meant, which the embedded engine opens in this process.
bool IsEmbedded(const std::string& database);

// A connection of our own, in code page 1251 and dialect 3, through a client library that is loaded
// for it. One thread at a time.
//
// For the embedded engine on Linux (Debian: firebird3.0-server-core) a user needs the right to read
// and write the file, as the engine counts transactions in it, and a folder for the engine's locks.
// That is what FIREBIRD_LOCK names, else /tmp/firebird when this user may use it (Debian: members
// of the group firebird), else a private folder in the folder for temporary files, made here and
// told to the engine by FIREBIRD_LOCK. A private folder is only good while nobody else has the file
// open, so the file is then refused when it is in use, or when the engine would share it
// (ServerMode in firebird.conf, by default not). The environment is set here: attach before threads
// start that read or set it.
//
// The client library's handlers of Ctrl+C and SIGTERM are put away again: the program's own stay.
class TAttachment {
public:
    // Throws TDatabaseError with the server's words, the database and the user, and the cure where
    // it is known; English but for those words. The password is in no text. TDatabaseInUse for a
    // file that the embedded engine cannot have now.
    explicit TAttachment(const TDatabaseLogin& login);
    TAttachment(TAttachment&&) noexcept;
    // What the target had is detached.
    TAttachment& operator=(TAttachment&&) noexcept;
    // Detaches. Transactions on it must have ended.
    ~TAttachment();

    // For TTransaction; both are good as long as this object, also after it has been moved.
    const TClientLibrary& Library() const noexcept;
    void* Handle() noexcept;

private:
    struct TState;
    std::unique_ptr<TState> state_;
};

}  // namespace tolvane
