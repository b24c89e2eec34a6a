#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

namespace tolvane {

struct TClientFunctions;

// How many calls of a library have begun: while it stands still, one of them has not come back. To
// be read by any thread.
using TCallCount = std::shared_ptr<std::atomic<std::uint64_t>>;

// The functions of an InterBase/Firebird client library.
class TClientLibrary {
public:
    // The library through which the host has opened its connection: one that this process has
    // loaded already. It is neither loaded nor unloaded here, and must stay loaded as long as
    // anything uses this object. `name`: file name or path, code page 1251, zero-terminated; null
    // for the usual names. Throws TDatabaseError naming the library or the function that is
    // missing.
    explicit TClientLibrary(const char* name);
    // Loads the library, with what TAttachment needs beside the above. An empty name stands for the
    // usual names. It stays loaded as long as the process runs: it leaves threads behind, which
    // would not survive it. Throws TDatabaseError, in English, that names what was tried with the
    // system's words for each, and the cure.
    static TClientLibrary Load(const std::filesystem::path& name);
    // The first of these that can be loaded.
    static TClientLibrary LoadOneOf(const std::vector<std::filesystem::path>& names);
    TClientLibrary(TClientLibrary&&) noexcept;
    TClientLibrary& operator=(TClientLibrary&&) noexcept;
    ~TClientLibrary();

    const TClientFunctions& Functions() const noexcept { return *functions_; }
    TCallCount Calls() const;

private:
    explicit TClientLibrary(const TClientFunctions& functions);

    std::unique_ptr<const TClientFunctions> functions_;
};

}  // namespace tolvane
