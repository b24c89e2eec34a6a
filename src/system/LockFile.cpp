#include "system/LockFile.h"

#include <charconv>
#include <string>
#include <system_error>
#include <utility>

#include "system/TemporaryFile.h"

namespace tolvane {

TLockFile::TLockFile(std::filesystem::path file, std::intptr_t handle)
    : file_(std::move(file)), handle_(handle) {}

TLockFile::TLockFile(TLockFile&& other) noexcept
    : file_(std::move(other.file_)), handle_(std::exchange(other.handle_, -1)) {}

TLockFile& TLockFile::operator=(TLockFile&& other) noexcept {
    if (this == &other) return *this;
    Release();
    file_ = std::move(other.file_);
    handle_ = std::exchange(other.handle_, -1);
    return *this;
}

TLockFile::~TLockFile() {
    Release();
}

std::optional<std::uint32_t> TLockFile::Holder(const std::filesystem::path& file) {
    std::optional<std::string> text;
    try {
        text = ReadWholeFile(file);
    } catch (const std::system_error&) {
        return std::nullopt;
    }
    std::uint32_t number = 0;
    if (!text ||
        std::from_chars(text->data(), text->data() + text->size(), number).ec != std::errc())
        return std::nullopt;
    return number;
}

}  // namespace tolvane
