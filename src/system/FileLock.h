#pragma once

#include <filesystem>

#include "system/OwnedFile.h"

namespace tolvane {

// Keeps other programs and threads that lock the same file from changing it between reading and
// writing. The constructor waits about two seconds at most for another program's lock. The lock
// ends with this object, or with its program. When another program keeps its lock longer, or the
// folder accepts no new file, the object holds no lock and the work goes on without one.
class TFileLock {
public:
    explicit TFileLock(const std::filesystem::path& file) noexcept;

    bool IsHeld() const noexcept { return static_cast<bool>(file_); }

private:
    TOwnedFile file_;
};

}  // namespace tolvane
