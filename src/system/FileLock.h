#pragma once

#include <cstdint>
#include <filesystem>

namespace tolvane {

// Keeps other programs and threads that lock the same file from changing it between its reading and
// its writing. The constructor waits for another's lock, at most about two seconds. A lock ends
// with this object, or with its program. Where there is none to be had (somebody keeps it for
// longer, the folder takes no new file) the work goes on without one.
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
