#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>

#include "config/FileLock.h"

namespace tolvane {

// The folder itself is locked, so that nothing is left behind in it.
TFileLock::TFileLock(const std::filesystem::path& file) noexcept {
    constexpr int kTries = 1000;
    constexpr timespec kPause{0, 2'000'000};
    try {
        const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : ".";
        handle_ = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    } catch (const std::bad_alloc&) {
        return;
    }
    if (handle_ < 0) return;
    const int descriptor = static_cast<int>(handle_);
    for (int i = 0; i < kTries; ++i) {
        if (flock(descriptor, LOCK_EX | LOCK_NB) == 0) return;
        if (errno != EWOULDBLOCK && errno != EINTR) break;
        nanosleep(&kPause, nullptr);
    }
    close(descriptor);
    handle_ = -1;
}

TFileLock::~TFileLock() {
    if (IsHeld()) close(static_cast<int>(handle_));
}

}  // namespace tolvane
