#pragma once

#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

#include "database/ClientLibrary.h"

namespace tolvane::test {

// The server that the tests run on, from the environment variables TOLVANE_FB_SERVER (host/port),
// TOLVANE_FB_PASSWORD (of SYSDBA) and TOLVANE_FB_DIR (a folder in which it may make databases).
// Throws std::runtime_error naming the variable that is not set.
struct TServer {
    std::string address;
    std::string password;
    std::filesystem::path folder;
};
const TServer& Server();

struct TLogin {
    std::string address = Server().address;
    std::string user = "SYSDBA";
    std::string password = Server().password;
};

// A connection as a host opens it: WIN1251, by the same client library that the code under test
// finds in the process. Throws TDatabaseError.
class TAttachment {
public:
    TAttachment(const std::filesystem::path& file, const TLogin& login);
    TAttachment(const TAttachment&) = delete;
    TAttachment& operator=(const TAttachment&) = delete;
    ~TAttachment();

    // What a host hands over: a pointer to its isc_db_handle.
    void* Handle();
    // Connects again, with the new connection in the same place, as a host may do it.
    void Renew();
    // Runs and commits one statement (UTF-8).
    void Run(std::string_view statement);
    // Runs statements that each end with a semicolon at the end of a line. Skips lines that start
    // with -- and statements "commit;". Commits after each definition and at the end.
    void RunScript(std::string_view script);
    // The first column of the first row as text.
    std::string Ask(std::string_view query);

private:
    struct TState;
    std::unique_ptr<TState> state_;
};

const TClientLibrary& Library();

// A database made by a script for one test, removed at the end.
class TTestDatabase {
public:
    explicit TTestDatabase(std::string_view script);
    TTestDatabase(const TTestDatabase&) = delete;
    TTestDatabase& operator=(const TTestDatabase&) = delete;
    ~TTestDatabase();

    TAttachment& Host() { return *host_; }
    const std::filesystem::path& File() const { return file_; }
    std::unique_ptr<TAttachment> Attach(const TLogin& login = {}) const;
    // Replaces the host's connection by one with another login or address.
    void Reconnect(const TLogin& login);

private:
    std::filesystem::path file_;
    std::unique_ptr<TAttachment> host_;
};

std::string ReadFile(const std::filesystem::path& file);

// The demo's tables. Each pair of `changes` replaces a piece of the text, as "PLU_NUMB integer" by
// "PLU_NUMB bigint"; a piece that is not there is an error.
struct TSchemaChange {
    std::string_view from;
    std::string_view to;
};
std::string Schema(std::initializer_list<TSchemaChange> changes = {});

}  // namespace tolvane::test
