#pragma once

#include <windows.h>

#include <cstdint>
#include <stdexcept>
#include <string>

#include "host/HostSettings.h"

namespace tolvane::host {

// The message (code page 1251) tells what failed and what to do.
class TConnectionError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The host's connection to its database, character set WIN1251. One object per connection; the
// client library stays loaded for as long as the program runs, because modules use it as well.
class TConnection {
public:
    TConnection() = default;
    TConnection(const TConnection&) = delete;
    TConnection& operator=(const TConnection&) = delete;
    ~TConnection() { Close(); }

    // Throws TConnectionError. An open connection is closed first.
    void Open(const THostSettings& settings);
    void Close() noexcept;
    bool IsOpen() const noexcept { return handle_ != 0; }

    // The attachment handle's cell, and the library's name as a module finds it.
    void* HandleCell() noexcept { return &handle_; }
    const char* ClientLibrary() const noexcept { return library_.c_str(); }

private:
    void LoadClient(const std::string& library);
    std::string ErrorText() const;

    HMODULE client_ = nullptr;
    std::string library_;
    std::uint32_t handle_ = 0;
    std::intptr_t status_[20] = {};
};

}  // namespace tolvane::host
