#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "system/OwnedFile.h"

namespace tolvane {

// What writing a file atomically needs from the system. All errors are std::system_error with the
// system's own number (errno, GetLastError).

// A new file beside `target`, named after it. The destructor removes it unless it has replaced the
// target. The file is locked as long as this object owns it, so that no other program removes it as
// a leftover.
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
    // Replaces the target and keeps its permissions. Returns false, and changes nothing, when
    // another program has removed the temporary file meanwhile.
    bool TakePlaceOfTarget();

private:
    void Release() noexcept;

    std::filesystem::path target_;
    std::filesystem::path path_;  // empty when nothing is owned
    TOwnedFile file_;
};

// The file's bytes; nothing when it or its folder does not exist.
std::optional<std::string> ReadWholeFile(const std::filesystem::path& file);
// Throws when the file exists and is write-protected. Its folder's rights alone would allow
// replacing it.
void RequireWritable(const std::filesystem::path& file);
// The file that a link points to; the path itself when it is not a link.
std::filesystem::path ResolveLink(const std::filesystem::path& file);
// What is in a folder, without the folder's path; nothing when it cannot be read. The standard
// library's own iterator ends the process when memory is short.
std::vector<std::filesystem::path> NamesIn(const std::filesystem::path& folder);
// Removes a temporary file of a killed save. The file stays when it is in use or cannot be removed.
void RemoveLeftover(const std::filesystem::path& file) noexcept;
// The same for all that killed saves of the target left beside it.
void RemoveLeftovers(const std::filesystem::path& target);
// Replaces the file atomically, through a TTemporaryFile.
void ReplaceWholeFile(const std::filesystem::path& target, std::string_view bytes);
// A path in code page 1251; what the code page lacks becomes '?'.
std::string PathText(const std::filesystem::path& path);

// A new name for each save: the target's with ".tolvane-", 16 hexadecimal digits and ".tmp".
std::filesystem::path UniqueTemporaryPath(const std::filesystem::path& target);
// Whether a file has such a name, without regard to case.
bool IsTemporaryOf(const std::filesystem::path& target, const std::filesystem::path& file);

}  // namespace tolvane
