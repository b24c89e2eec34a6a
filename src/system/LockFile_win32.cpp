#include "system/LockFile.h"

#include <windows.h>

#include <string>
#include <system_error>
#include <utility>

namespace tolvane {

namespace {

using std::filesystem::path;

// Others may read it, and nobody else may open it for writing. The system removes it when it is
// closed, also when its program is killed.
HANDLE Open(const path& file) {
    return CreateFileW(file.c_str(), GENERIC_WRITE | DELETE, FILE_SHARE_READ, nullptr, OPEN_ALWAYS,
                       FILE_ATTRIBUTE_NORMAL | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
}

// The number only helps people: a full disk does not keep anybody from the lock.
void WriteProcess(HANDLE handle) {
    const std::string text = std::to_string(GetCurrentProcessId()) + "\n";
    DWORD written = 0;
    SetEndOfFile(handle);
    WriteFile(handle, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

}  // namespace

std::optional<TLockFile> TLockFile::TryHold(const path& file) {
    constexpr DWORD kPauseMs = 2;
    // A file that is about to be removed is denied for a moment, a folder without rights for ever.
    constexpr ULONGLONG kLongestDeniedMs = 100;
    for (const ULONGLONG start = GetTickCount64();; Sleep(kPauseMs)) {
        const HANDLE handle = Open(file);
        if (handle != INVALID_HANDLE_VALUE) {
            WriteProcess(handle);
            return TLockFile(file, reinterpret_cast<std::intptr_t>(handle));
        }
        const DWORD error = GetLastError();
        if (error == ERROR_SHARING_VIOLATION) return std::nullopt;
        if (error != ERROR_ACCESS_DENIED || GetTickCount64() - start > kLongestDeniedMs)
            throw std::system_error(static_cast<int>(error), std::system_category());
    }
}

// Only who holds the file denies others to write. Nobody does in one that a power cut has left.
bool TLockFile::IsHeld(const path& file) {
    const HANDLE handle = CreateFileW(file.c_str(), GENERIC_WRITE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    const DWORD error = GetLastError();
    if (handle != INVALID_HANDLE_VALUE) CloseHandle(handle);
    if (handle != INVALID_HANDLE_VALUE || error == ERROR_FILE_NOT_FOUND ||
        error == ERROR_PATH_NOT_FOUND)
        return false;
    if (error == ERROR_SHARING_VIOLATION) return true;
    throw std::system_error(static_cast<int>(error), std::system_category());
}

void TLockFile::Release() noexcept {
    const auto handle = std::exchange(handle_, -1);
    if (handle != -1) CloseHandle(reinterpret_cast<HANDLE>(handle));
}

}  // namespace tolvane
