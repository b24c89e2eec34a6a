#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace tolvane {

// A file that one object at a time holds, in this process and all others. Unlike TFileLock it
// either is held or is not there. The file holds the number of its process, and is removed with the
// object. A process that is killed lets go of it, though its file may stay.
class TLockFile {
public:
    // Tries once. Nothing when another object holds the file. Throws std::system_error, with the
    // system's own number, when the file cannot be created or locked.
    static std::optional<TLockFile> TryHold(const std::filesystem::path& file);
    // Whether an object holds the file now. Looks without holding it, so that nobody is refused.
    // Throws std::system_error when the file is there and cannot be looked at.
    static bool IsHeld(const std::filesystem::path& file);
    // The process that the file names; nothing when there is no such file, or it names none.
    static std::optional<std::uint32_t> Holder(const std::filesystem::path& file);

    TLockFile(TLockFile&& other) noexcept;
    TLockFile& operator=(TLockFile&& other) noexcept;
    TLockFile(const TLockFile&) = delete;
    TLockFile& operator=(const TLockFile&) = delete;
    ~TLockFile();

private:
    TLockFile(std::filesystem::path file, std::intptr_t handle);
    void Release() noexcept;

    std::filesystem::path file_;
    std::intptr_t handle_;  // -1 when nothing is held
};

}  // namespace tolvane
