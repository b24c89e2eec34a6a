#pragma once

#include <memory>

namespace tolvane {

struct TClientFunctions;

// The functions of the InterBase/Firebird client library through which the host has opened its
// connection. The library is one that this process has loaded already; it is neither loaded nor
// unloaded here, and must stay loaded as long as anything uses this object.
class TClientLibrary {
public:
    // `name`: file name or path, code page 1251, zero-terminated; null for the usual names.
    // Throws TDatabaseError naming the library or the function that is missing.
    explicit TClientLibrary(const char* name);
    TClientLibrary(TClientLibrary&&) noexcept;
    TClientLibrary& operator=(TClientLibrary&&) noexcept;
    ~TClientLibrary();

    const TClientFunctions& Functions() const noexcept { return *functions_; }

private:
    std::unique_ptr<const TClientFunctions> functions_;
};

}  // namespace tolvane
