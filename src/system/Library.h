#pragma once

// Libraries of this process: those that somebody has loaded already, and those that we load. Any
// thread.

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tolvane {

// A library that is loaded in this process, or null. `name` in code page 1251.
void* FindLoadedLibrary(const char* name);
// The address of an exported function, or null.
void* FindFunction(void* library, const char* name);
// What a client library is usually called, likeliest first.
std::vector<std::string> UsualClientLibraries();
// From now on a library that is named without a folder is not looked for in the current one, where
// anybody may have put a file. For a program at its start: a module leaves it to its host.
void IgnoreLibrariesOfCurrentFolder() noexcept;
// Where this system gets a missing one from, as the beginning of an English sentence.
std::string_view ClientLibraryCure();

// A library that this object has loaded, and frees at its end.
class TLibrary {
public:
    // A file's path, or a name alone, which the system looks for in its usual places. Shows no
    // window. Throws TFailure with the system's own words.
    explicit TLibrary(const std::filesystem::path& name);
    TLibrary(TLibrary&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    TLibrary& operator=(TLibrary&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~TLibrary();

    void* Handle() const noexcept { return handle_; }
    // Leaves the library loaded for as long as the process runs.
    void Keep() noexcept { handle_ = nullptr; }

private:
    void* handle_;
};

}  // namespace tolvane
