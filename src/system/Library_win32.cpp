#include "system/Library.h"

#include <windows.h>

#include <system_error>

#include "system/SystemError.h"
#include "text/Cp1251.h"
#include "text/Failure.h"

namespace tolvane {
namespace {

// Loads without the system's box about a file that is no library.
HMODULE LoadQuietly(const std::filesystem::path& name) {
    DWORD mode = 0;
    SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &mode);
    // The libraries that a file at a given place needs lie beside it.
    const DWORD flags = name.is_absolute() ? LOAD_WITH_ALTERED_SEARCH_PATH : 0;
    const HMODULE library = LoadLibraryExW(name.c_str(), nullptr, flags);
    const DWORD error = GetLastError();
    SetThreadErrorMode(mode, nullptr);
    SetLastError(error);
    return library;
}

}  // namespace

void* FindLoadedLibrary(const char* name) {
    const std::u16string wide = ToUtf16(name);
    return GetModuleHandleW(reinterpret_cast<const wchar_t*>(wide.c_str()));
}

void* FindFunction(void* library, const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

std::vector<std::string> UsualClientLibraries() {
    return {"fbclient.dll", "gds32.dll"};
}

void IgnoreLibrariesOfCurrentFolder() noexcept {
    SetDllDirectoryW(L"");
}

std::string_view ClientLibraryCure() {
    return "Install the 32-bit Firebird client (fbclient.dll)";
}

TLibrary::TLibrary(const std::filesystem::path& name) : handle_(LoadQuietly(name)) {
    if (handle_ != nullptr) return;
    throw TFailure(SystemErrorText({static_cast<int>(GetLastError()), std::system_category()}));
}

TLibrary::~TLibrary() {
    if (handle_ != nullptr) FreeLibrary(static_cast<HMODULE>(handle_));
}

}  // namespace tolvane
