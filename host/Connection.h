#pragma once

#include <windows.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/HostSettings.h"

namespace tolvane::host {

// The message (code page 1251) says what failed and what to do.
class TConnectionError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The host's connection to its database, character set WIN1251, dialect 3. One object per program;
// a client library stays loaded for as long as the program runs, because modules use it as well.
class TConnection {
public:
    TConnection() = default;
    TConnection(const TConnection&) = delete;
    TConnection& operator=(const TConnection&) = delete;
    ~TConnection() { Close(); }

    // Closes an open connection first. A relative path of a client library counts from `folder`.
    // Throws TConnectionError.
    void Open(const THostSettings& settings, const std::filesystem::path& folder);
    // Whether the client library that Open would use brings an engine, which opens a database file
    // in this process.
    bool FindEngine(const THostSettings& settings, const std::filesystem::path& folder);
    // Makes the database that the settings name, and what is in it; leaves no connection open. What
    // has failed leaves no database. `statements` as SqlStatements gives them, in code page 1251;
    // "commit" begins a new transaction. Throws TConnectionError.
    void Make(const THostSettings& settings, const std::filesystem::path& folder,
              const std::vector<std::string>& statements);
    void Close() noexcept;
    bool IsOpen() const noexcept { return handle_ != 0; }
    // server/port:path of the open connection; empty when no connection is open.
    const std::string& Database() const noexcept { return database_; }

    // The cell that holds the attachment handle, and the name under which a module finds the client
    // library.
    void* HandleCell() noexcept { return &handle_; }
    const char* ClientLibrary() const noexcept { return library_.c_str(); }
    // What the client library tells of its version; empty when none is loaded.
    std::string ClientVersion() const;

private:
    void LoadClient(const std::string& wanted, const std::filesystem::path& folder);
    bool TryClient(const std::filesystem::path& file);
    void Attach(const THostSettings& settings);
    void Create(const THostSettings& settings);
    void Run(const std::vector<std::string>& statements);
    void CheckStatus() const;
    std::string ErrorText() const;

    HMODULE client_ = nullptr;
    std::optional<std::string> wanted_;  // the setting with which client_ was loaded
    std::string library_;
    std::uint32_t handle_ = 0;
    std::string database_;
    std::intptr_t status_[20] = {};
};

}  // namespace tolvane::host
