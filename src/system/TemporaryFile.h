#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tolvane {

// What writing a file atomically needs from the system. All errors are std::system_error with the
// system's own number (errno, GetLastError).

// A new file beside `target`, named after it, that is removed again unless it takes the target's
// place. Held so that RemoveLeftovers of another program does not take it for a leftover.
class TTemporaryFile {
public:
    explicit TTemporaryFile(const std::filesystem::path& target);
    TTemporaryFile(TTemporaryFile&& other) noexcept;
    TTemporaryFile& operator=(TTemporaryFile&& other) noexcept;
    TTemporaryFile(const TTemporaryFile&) = delete;
    TTemporaryFile& operator=(const TTemporaryFile&) = delete;
    ~TTemporaryFile();

    const std::filesystem::path& Path() const { return path_; }
    // Writes all bytes and has the system put them on the disk.
    void Write(std::string_view bytes);
    // Replaces the target, whose permissions stay. Answers false when somebody has removed the
    // temporary file meanwhile; nothing has changed then.
    bool TakePlaceOfTarget();

private:
    void Release() noexcept;

    std::filesystem::path target_;
    std::filesystem::path path_;  // empty when nothing is owned
    std::intptr_t handle_;
};

// The file's bytes; nothing when it or its folder does not exist.
std::optional<std::string> ReadWholeFile(const std::filesystem::path& file);
// Fails when the file is there and may not be written. (Its folder's rights would allow to replace
// it all the same.)
void RequireWritable(const std::filesystem::path& file);
// The file that a link stands for, or the path itself.
std::filesystem::path ResolveLink(const std::filesystem::path& file);
// Removes a temporary file of a killed save; one in use stays, and so does one that will not go.
void RemoveLeftover(const std::filesystem::path& file) noexcept;
// The system's text of an error number, and a path, in code page 1251.
std::string SystemMessage(int error);
std::string PathText(const std::filesystem::path& path);

// A name of its own for each save: the target's with ".tolvane-", 16 hexadecimal digits and ".tmp".
std::filesystem::path UniqueTemporaryPath(const std::filesystem::path& target);
// Whether a file's name is one of those (letters without regard to case).
bool IsTemporaryOf(const std::filesystem::path& target, const std::filesystem::path& file);

}  // namespace tolvane
