#include "system/OutputFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <system_error>

namespace tolvane {

TOutputFile::TOutputFile(const std::filesystem::path& file)
    : handle_(open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666)) {
    if (handle_ < 0) throw std::system_error(errno, std::system_category());
}

TOutputFile::~TOutputFile() {
    close(static_cast<int>(handle_));
}

void TOutputFile::Write(std::string_view bytes) {
    std::string_view rest = bytes;
    while (!rest.empty()) {
        const ssize_t written = write(static_cast<int>(handle_), rest.data(), rest.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) {
            const int error = errno;
            CutBack();
            throw std::system_error(error, std::system_category());
        }
        rest.remove_prefix(static_cast<std::size_t>(written));
    }
    size_ += static_cast<std::int64_t>(bytes.size());
}

// A pipe cannot be cut; its reader has what was written.
// NOLINTNEXTLINE(readability-make-member-function-const): it changes the file.
void TOutputFile::CutBack() noexcept {
    [[maybe_unused]] const int ignored = ftruncate(static_cast<int>(handle_), size_);
}

}  // namespace tolvane
