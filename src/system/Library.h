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
// From now on no library of this process is looked for in the current folder, whoever loads it and
// however old the system is. For a program at its start: a module leaves it to its host.
void IgnoreLibrariesOfCurrentFolder() noexcept;
// Where this system gets a missing one from, as the beginning of an English sentence.
std::string_view ClientLibraryCure();

// Loads a file at a path, or by its name alone what the system finds in its usual places: never in
// the current folder. Shows no window. Null when it cannot; the system then knows why
// (GetLastError, dlerror).
void* LoadLibraryOf(const std::filesystem::path& name);

// A library that this object has loaded, and frees at its end.
class TLibrary {
public:
    // As LoadLibraryOf. Throws TFailure with the system's own words.
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
