#include "system/TemporaryFile.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <memory>
#include <system_error>

#include "text/Cp1251.h"

namespace tolvane {

namespace {

using std::filesystem::path;

[[noreturn]] void Fail(int error) {
    throw std::system_error(error, std::system_category());
}

TOwnedFile Open(const path& file, int flags) noexcept {
    return TOwnedFile(open(file.c_str(), flags | O_CLOEXEC));
}

int Descriptor(const TOwnedFile& file) noexcept {
    return static_cast<int>(file.Get());
}

struct TCloseFolder {
    void operator()(DIR* folder) const noexcept { closedir(folder); }
};

bool IsMissing(int error) {
    return error == ENOENT || error == ENOTDIR;
}

// Some file systems cannot do this. That is not an error: the new file has already replaced the old
// one.
void FlushFolder(const path& folder) noexcept {
    const TOwnedFile opened = Open(folder, O_RDONLY | O_DIRECTORY);
    if (opened) fsync(Descriptor(opened));
}

// Only a privileged user may give a file to its old owner; otherwise the user who saves becomes the
// owner.
void CopyPermissions(const path& from, int to) {
    struct stat old {};
    if (stat(from.c_str(), &old) != 0) {
        if (IsMissing(errno)) return;
        Fail(errno);
    }
    [[maybe_unused]] const int ignored = fchown(to, old.st_uid, old.st_gid);
    if (fchmod(to, old.st_mode & 07777U) != 0) Fail(errno);
}

}  // namespace

TTemporaryFile::TTemporaryFile(const path& target) : target_(target) {
    do {
        path_ = UniqueTemporaryPath(target);
        file_.Reset(open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    } while (!file_ && errno == EEXIST);
    if (!file_) Fail(errno);
    flock(Descriptor(file_), LOCK_EX | LOCK_NB);
}

void TTemporaryFile::Write(std::string_view bytes) {
    const int descriptor = Descriptor(file_);
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) Fail(errno);
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    CopyPermissions(target_, descriptor);
    if (fsync(descriptor) != 0) Fail(errno);
}

bool TTemporaryFile::TakePlaceOfTarget() {
    // After the rename nothing may fail.
    const path folder = target_.has_parent_path() ? target_.parent_path() : path(".");
    if (rename(path_.c_str(), target_.c_str()) != 0) {
        const int error = errno;
        if (error == ENOENT && access(path_.c_str(), F_OK) != 0) return false;
        Fail(error);
    }
    path_.clear();
    FlushFolder(folder);
    return true;
}

void TTemporaryFile::Release() noexcept {
    if (!path_.empty()) unlink(path_.c_str());
    path_.clear();
    file_.Reset();
}

std::optional<std::string> ReadWholeFile(const path& file) {
    const TOwnedFile opened = Open(file, O_RDONLY);
    if (!opened) {
        if (IsMissing(errno)) return std::nullopt;
        Fail(errno);
    }
    std::string bytes;
    std::array<char, 65536> block{};
    for (;;) {
        const ssize_t count = read(Descriptor(opened), block.data(), block.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) Fail(errno);
        if (count == 0) return bytes;
        bytes.append(block.data(), static_cast<std::size_t>(count));
    }
}

// Also checks the mode, because to the administrator every file is writable.
void RequireWritable(const path& file) {
    struct stat status {};
    if (stat(file.c_str(), &status) != 0) return;
    if ((status.st_mode & 0222U) == 0) Fail(EACCES);
    if (access(file.c_str(), W_OK) != 0) Fail(errno);
}

path ResolveLink(const path& file) {
    std::error_code error;
    if (!std::filesystem::is_symlink(file, error)) return file;
    path resolved = std::filesystem::weakly_canonical(file, error);
    return error ? file : resolved;
}

std::vector<path> NamesIn(const path& folder) {
    std::vector<path> names;
    const std::unique_ptr<DIR, TCloseFolder> opened(opendir(folder.c_str()));
    if (!opened) return names;
    while (const dirent* const entry = readdir(opened.get()))
        names.emplace_back(entry->d_name);
    return names;
}

void RemoveLeftover(const path& file) noexcept {
    const TOwnedFile opened = Open(file, O_WRONLY | O_NOFOLLOW);
    if (!opened) return;
    if (flock(Descriptor(opened), LOCK_EX | LOCK_NB) == 0) unlink(file.c_str());
}

std::string PathText(const path& path) {
    return FromUtf8(path.string());
}

}  // namespace tolvane
