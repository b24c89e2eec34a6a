#pragma once

#include <windows.h>

#include <ibase.h>

#include <string>

#include "entry/HostInterface.h"

namespace tolvane::test {

// The host's connection: a real Firebird server through fbclient.dll. The environment says where it
// is: TOLVANE_FB_SERVER (host/port), TOLVANE_FB_FOLDER (the server's folder of databases) and
// TOLVANE_FB_PASSWORD (of SYSDBA).
class TConnection {
public:
    // host/port of the server.
    static std::string Server();
    // `name`: a database of that folder, as "shop.fdb"; `server`: the host/port to connect to,
    // which may be a proxy's.
    explicit TConnection(const std::string& name, const std::string& server = Server());
    TConnection(const TConnection&) = delete;
    TConnection& operator=(const TConnection&) = delete;
    ~TConnection();

    // For OperationProcedure; lives as long as the connection.
    const THostDatabase* Database() const { return &database_; }
    // Runs one statement in a transaction of its own.
    void Execute(const std::string& sql);
    // The first column of the first row, an integer.
    long long Number(const std::string& sql);
    // Ends the connection without telling the module, whose later statements then fail.
    void ShutDown();
    // Ends its wait for an answer, and the connection; any thread.
    void Abort();
    // Connects again, directly, with the new connection in the same place.
    void Renew();
    // Has the server end this user's other connections to the database, transactions included.
    void EndOthers();

private:
    void Attach(const std::string& server);

    std::string name_;
    isc_db_handle handle_{};
    THostDatabase database_{};
};

}  // namespace tolvane::test
