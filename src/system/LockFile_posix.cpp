#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>
#include <utility>

#include "system/LockFile.h"

namespace tolvane {

namespace {

using std::filesystem::path;

[[noreturn]] void Fail(int error) {
    throw std::system_error(error, std::system_category());
}

int Open(const path& file) {
    for (;;) {
        const int descriptor =
            open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0666);
        if (descriptor >= 0) return descriptor;
        if (errno != EINTR) Fail(errno);
    }
}

// Whether the name still leads to the open file: its holder may have removed it meanwhile.
bool IsAt(const path& file, int descriptor) {
    struct stat open {};
    struct stat named {};
    return fstat(descriptor, &open) == 0 && lstat(file.c_str(), &named) == 0 &&
           open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

struct flock WholeFile() {
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return lock;
}

// A lock of the other kind, which can be looked at without being taken. The first one decides.
void Mark(int descriptor) {
    struct flock lock = WholeFile();
    fcntl(descriptor, F_OFD_SETLK, &lock);
}

// The number only helps people: a full disk does not keep anybody from the lock.
void WriteProcess(int descriptor) {
    const std::string text = std::to_string(getpid()) + "\n";
    if (ftruncate(descriptor, 0) != 0) return;
    [[maybe_unused]] const ssize_t ignored = write(descriptor, text.data(), text.size());
}

}  // namespace

std::optional<TLockFile> TLockFile::TryHold(const path& file) {
    for (;;) {
        const int descriptor = Open(file);
        if (flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
            const int error = errno;
            close(descriptor);
            if (error == EWOULDBLOCK) return std::nullopt;
            if (error != EINTR) Fail(error);
        } else if (IsAt(file, descriptor)) {
            Mark(descriptor);
            WriteProcess(descriptor);
            return TLockFile(file, descriptor);
        } else {
            close(descriptor);
        }
    }
}

bool TLockFile::IsHeld(const path& file) {
    const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (descriptor < 0) {
        if (errno == ENOENT || errno == ENOTDIR) return false;
        Fail(errno);
    }
    struct flock lock = WholeFile();
    const int error = fcntl(descriptor, F_OFD_GETLK, &lock) == 0 ? 0 : errno;
    close(descriptor);
    if (error != 0) Fail(error);
    return lock.l_type != F_UNLCK;
}

// While the lock is still held, so that nobody's new file is removed.
void TLockFile::Release() noexcept {
    const int descriptor = static_cast<int>(std::exchange(handle_, -1));
    if (descriptor < 0) return;
    if (IsAt(file_, descriptor)) unlink(file_.c_str());
    close(descriptor);
}

}  // namespace tolvane
