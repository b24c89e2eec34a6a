#pragma once

#include <cstdint>
#include <filesystem>

namespace tolvane {

// Keeps other programs and threads from changing a file between its reading and its writing, as
// long as they lock it too. It waits for another's lock, at most about two seconds, and ends with
// the program that holds it. Where there is no lock to be had (somebody keeps it for longer, the
// folder takes no new file) the work goes on without one.
class TFileLock {
public:
    explicit TFileLock(const std::filesystem::path& file) noexcept;
    TFileLock(const TFileLock&) = delete;
    TFileLock& operator=(const TFileLock&) = delete;
    ~TFileLock();

    bool IsHeld() const noexcept { return handle_ != -1; }

private:
    std::intptr_t handle_ = -1;
};

}  // namespace tolvane
