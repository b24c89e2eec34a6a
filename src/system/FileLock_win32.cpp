#include "system/FileLock.h"

#include <windows.h>

#include <new>
#include <string>

namespace tolvane {
namespace {

// A file beside the locked one, which nobody else can open. The system removes it when it is
// closed, also when its program is killed.
HANDLE OpenLockFile(const std::wstring& name) noexcept {
    return CreateFileW(name.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, CREATE_ALWAYS,
                       FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE,
                       nullptr);
}

}  // namespace

TFileLock::TFileLock(const std::filesystem::path& file) noexcept {
    constexpr DWORD kPauseMs = 2;
    constexpr ULONGLONG kLongestMs = 2000;
    // Access to a file that is just being removed is denied for a moment; without the right to
    // write in the folder, it is always denied.
    constexpr ULONGLONG kLongestDeniedMs = 100;
    try {
        const std::wstring name = file.wstring() + L".tolvane-lock";
        const ULONGLONG start = GetTickCount64();
        ULONGLONG deniedFrom = start;
        for (ULONGLONG now = start; now - start < kLongestMs; now = GetTickCount64()) {
            const HANDLE lock = OpenLockFile(name);
            if (lock != INVALID_HANDLE_VALUE) {
                file_.Reset(reinterpret_cast<std::intptr_t>(lock));
                return;
            }
            const DWORD error = GetLastError();
            if (error == ERROR_SHARING_VIOLATION)
                deniedFrom = GetTickCount64();
            else if (error != ERROR_ACCESS_DENIED ||
                     GetTickCount64() - deniedFrom > kLongestDeniedMs)
                return;
            Sleep(kPauseMs);
        }
    } catch (const std::bad_alloc&) {  // NOLINT(bugprone-empty-catch): then there is no lock
    }
}

}  // namespace tolvane
