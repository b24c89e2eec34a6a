#include "system/TemporaryFile.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <memory>
#include <system_error>

#include "text/Cp1251.h"

namespace tolvane {

namespace {

using std::filesystem::path;

[[noreturn]] void Fail(DWORD error) {
    throw std::system_error(static_cast<int>(error), std::system_category());
}

HANDLE HandleOf(const TOwnedFile& file) {
    return reinterpret_cast<HANDLE>(file.Get());
}

TOwnedFile Open(const path& file, DWORD access, DWORD share, DWORD disposition) {
    return TOwnedFile(reinterpret_cast<std::intptr_t>(CreateFileW(
        file.c_str(), access, share, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr)));
}

struct TEndSearch {
    void operator()(HANDLE search) const noexcept { FindClose(search); }
};

bool IsMissing(DWORD error) {
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

// The system's error, or 0. Another program, such as a virus scanner, may have the target open for
// a moment.
DWORD Replace(const path& target, const path& by) {
    constexpr DWORD kPauseMs = 10;
    constexpr ULONGLONG kLongestMs = 500;
    for (const ULONGLONG start = GetTickCount64();; Sleep(kPauseMs)) {
        if (MoveFileExW(by.c_str(), target.c_str(),
                        MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
            return 0;
        const DWORD error = GetLastError();
        const DWORD attributes = GetFileAttributesW(target.c_str());
        const bool mayPass =
            (error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED) &&
            attributes != INVALID_FILE_ATTRIBUTES &&
            (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) == 0;
        if (!mayPass || GetTickCount64() - start >= kLongestMs) return error;
    }
}

}  // namespace

TTemporaryFile::TTemporaryFile(const path& target) : target_(target) {
    do {
        path_ = UniqueTemporaryPath(target);
        // Without sharing, no other program can remove the file while it is being written.
        file_ = Open(path_, GENERIC_WRITE, 0, CREATE_NEW);
    } while (!file_ && GetLastError() == ERROR_FILE_EXISTS);
    if (!file_) Fail(GetLastError());
}

// NOLINTNEXTLINE(readability-make-member-function-const): it changes the file.
void TTemporaryFile::Write(std::string_view bytes) {
    while (!bytes.empty()) {
        constexpr std::size_t kBlock = 1U << 20U;
        DWORD written = 0;
        const auto count = static_cast<DWORD>(std::min(bytes.size(), kBlock));
        if (!WriteFile(HandleOf(file_), bytes.data(), count, &written, nullptr))
            Fail(GetLastError());
        if (written == 0) Fail(ERROR_DISK_FULL);
        bytes.remove_prefix(written);
    }
    if (!FlushFileBuffers(HandleOf(file_))) Fail(GetLastError());
}

bool TTemporaryFile::TakePlaceOfTarget() {
    file_.Reset();
    if (const DWORD error = Replace(target_, path_); error != 0) {
        if (IsMissing(error) && GetFileAttributesW(path_.c_str()) == INVALID_FILE_ATTRIBUTES)
            return false;
        Fail(error);
    }
    path_.clear();
    return true;
}

void TTemporaryFile::Release() noexcept {
    file_.Reset();
    if (!path_.empty()) DeleteFileW(path_.c_str());
    path_.clear();
}

std::optional<std::string> ReadWholeFile(const path& file) {
    const TOwnedFile opened = Open(
        file, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, OPEN_EXISTING);
    if (!opened) {
        const DWORD error = GetLastError();
        if (IsMissing(error)) return std::nullopt;
        Fail(error);
    }
    std::string bytes;
    std::array<char, 65536> block{};
    for (;;) {
        DWORD count = 0;
        if (!ReadFile(HandleOf(opened), block.data(), static_cast<DWORD>(block.size()), &count,
                      nullptr))
            Fail(GetLastError());
        if (count == 0) return bytes;
        bytes.append(block.data(), count);
    }
}

void RequireWritable(const path& file) {
    const DWORD attributes = GetFileAttributesW(file.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) return;
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) Fail(ERROR_ACCESS_DENIED);
}

path ResolveLink(const path& file) {
    return file;
}

std::vector<path> NamesIn(const path& folder) {
    std::vector<path> names;
    WIN32_FIND_DATAW entry{};
    const HANDLE found = FindFirstFileW((folder / L"*").c_str(), &entry);
    if (found == INVALID_HANDLE_VALUE) return names;
    const std::unique_ptr<void, TEndSearch> search(found);
    do {
        names.emplace_back(entry.cFileName);
    } while (FindNextFileW(search.get(), &entry));
    return names;
}

void RemoveLeftover(const path& file) noexcept {
    DeleteFileW(file.c_str());
}

std::string PathText(const path& path) {
    return FromUtf16(path.u16string());
}

}  // namespace tolvane
