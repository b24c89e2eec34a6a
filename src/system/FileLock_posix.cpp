#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <chrono>
#include <new>
#include <thread>

#include "system/FileLock.h"

namespace tolvane {

// Locks the folder itself, so that no lock file remains in it.
TFileLock::TFileLock(const std::filesystem::path& file) noexcept {
    constexpr std::chrono::seconds kLongest(2);
    constexpr std::chrono::milliseconds kPause(2);
    try {
        const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : ".";
        file_.Reset(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    } catch (const std::bad_alloc&) {
        return;
    }
    if (!file_) return;
    const int descriptor = static_cast<int>(file_.Get());
    const auto start = std::chrono::steady_clock::now();
    while (std::chrono::steady_clock::now() - start < kLongest) {
        if (flock(descriptor, LOCK_EX | LOCK_NB) == 0) return;
        if (errno != EWOULDBLOCK && errno != EINTR) break;
        std::this_thread::sleep_for(kPause);
    }
    file_.Reset();
}

}  // namespace tolvane
