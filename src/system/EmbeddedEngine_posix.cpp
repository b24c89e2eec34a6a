#include "system/EmbeddedEngine.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <string>
#include <system_error>

#include "system/TemporaryFile.h"
#include "text/Failure.h"

namespace tolvane {
namespace {

constexpr const char* kLockVariable = "FIREBIRD_LOCK";
// The engine's own choice.
constexpr const char* kUsualFolder = "/tmp/firebird";
constexpr std::array<int, 2> kLibrarySignals = {SIGINT, SIGTERM};  // those that the library handles

std::filesystem::path PrivateFolder() {
    return std::filesystem::temp_directory_path() / ("tolvane-locks-" + std::to_string(geteuid()));
}

// The sticky bit of the folder above keeps others from replacing it once it is ours.
void MakeOurs(const std::filesystem::path& folder) {
    if (mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST)
        throw std::system_error(errno, std::system_category(), PathText(folder));
    struct stat info {};
    if (lstat(folder.c_str(), &info) != 0)
        throw std::system_error(errno, std::system_category(), PathText(folder));
    if (!S_ISDIR(info.st_mode) || info.st_uid != geteuid() || (info.st_mode & 0077) != 0)
        throw TFailure(PathText(folder) + " is not a folder of this user alone");
}

}  // namespace

struct TClientCallScope::TKept {
    std::array<struct sigaction, kLibrarySignals.size()> actions{};
    sigset_t mask{};
    locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    locale_t before = nullptr;
};

TClientCallScope::TClientCallScope() : kept_(std::make_unique<TKept>()) {
    // One that comes meanwhile waits for the program's own handler: the library's would shut the
    // connection down. The library's threads keep it blocked.
    sigset_t blocked;
    sigemptyset(&blocked);
    for (std::size_t i = 0; i < kLibrarySignals.size(); ++i) {
        sigaddset(&blocked, kLibrarySignals[i]);
        sigaction(kLibrarySignals[i], nullptr, &kept_->actions[i]);
    }
    pthread_sigmask(SIG_BLOCK, &blocked, &kept_->mask);
    if (kept_->utf8 != nullptr) kept_->before = uselocale(kept_->utf8);
}

TClientCallScope::~TClientCallScope() {
    for (std::size_t i = 0; i < kLibrarySignals.size(); ++i)
        sigaction(kLibrarySignals[i], &kept_->actions[i], nullptr);
    pthread_sigmask(SIG_SETMASK, &kept_->mask, nullptr);
    if (kept_->utf8 == nullptr) return;
    uselocale(kept_->before);
    freelocale(kept_->utf8);
}

bool PrepareEngineLocks() {
    const char* const named = std::getenv(kLockVariable);
    const std::filesystem::path folder = PrivateFolder();
    const bool isPrivate = named != nullptr && folder == named;
    if (!isPrivate && named != nullptr && *named != '\0') return false;
    if (!isPrivate && access(kUsualFolder, R_OK | W_OK | X_OK) == 0) return false;
    MakeOurs(folder);
    setenv(kLockVariable, folder.c_str(), 1);
    return true;
}

TFileUse UseOf(const std::filesystem::path& file) {
    const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor == -1) return TFileUse::Unknown;
    TFileUse use = TFileUse::Exclusive;
    if (flock(descriptor, LOCK_EX | LOCK_NB) == 0)
        use = TFileUse::Free;
    else if (flock(descriptor, LOCK_SH | LOCK_NB) == 0)
        use = TFileUse::Shared;
    close(descriptor);
    return use;
}

}  // namespace tolvane
