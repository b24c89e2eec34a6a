#include <windows.h>

#include <algorithm>
#include <string>
#include <system_error>

#include "system/NameLock.h"

namespace tolvane {
namespace {

constexpr std::size_t kLongestName = 90;

// For all sessions of the computer.
std::wstring NameOf(std::string_view name) {
    name = name.substr(name.size() - std::min(name.size(), kLongestName));
    std::wstring text(name.begin(), name.end());
    std::replace(text.begin(), text.end(), L'\\', L'_');
    return L"Global\\tolvane/" + text;
}

}  // namespace

// The mutex is never waited for: that it is there is the lock.
std::optional<TNameLock> TNameLock::TryHold(std::string_view name) {
    const HANDLE handle = CreateMutexW(nullptr, FALSE, NameOf(name).c_str());
    const DWORD error = GetLastError();
    if (handle != nullptr && error != ERROR_ALREADY_EXISTS)
        return TNameLock(reinterpret_cast<std::intptr_t>(handle));
    if (handle != nullptr) CloseHandle(handle);
    // Another user's.
    if (handle != nullptr || error == ERROR_ACCESS_DENIED) return std::nullopt;
    throw std::system_error(static_cast<int>(error), std::system_category());
}

void TNameLock::Release() noexcept {
    if (handle_ != -1) CloseHandle(reinterpret_cast<HANDLE>(handle_));
    handle_ = -1;
}

}  // namespace tolvane
