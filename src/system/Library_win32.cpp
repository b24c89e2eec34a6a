#include "system/Library.h"

#include <windows.h>

#include <string>
#include <system_error>

#include "system/SystemError.h"
#include "text/Cp1251.h"
#include "text/Failure.h"

namespace tolvane {
namespace {

// The libraries that such a file needs lie beside it.
HMODULE LoadFile(const wchar_t* path) {
    return LoadLibraryExW(path, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

HMODULE LoadFromSearchPath(const wchar_t* name) {
    constexpr DWORD kLongest = 32767;
    std::wstring folders(kLongest, L'\0');
    folders.resize(GetEnvironmentVariableW(L"PATH", folders.data(), kLongest));
    std::wstring file(kLongest, L'\0');
    const DWORD length =
        SearchPathW(folders.c_str(), name, L".dll", kLongest, file.data(), nullptr);
    if (length != 0 && length < kLongest) return LoadFile(file.c_str());
    SetLastError(ERROR_MOD_NOT_FOUND);
    return nullptr;
}

// From the usual places except the current folder, where anybody may have put a file.
HMODULE LoadByNameAlone(const wchar_t* name) {
    const HMODULE library = LoadLibraryExW(
        name, nullptr, LOAD_LIBRARY_SEARCH_APPLICATION_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (library != nullptr) return library;
    switch (GetLastError()) {
        case ERROR_MOD_NOT_FOUND:
            return LoadFromSearchPath(name);
        case ERROR_INVALID_PARAMETER:  // Windows 7 without an update
            return LoadLibraryExW(name, nullptr, 0);
        default:
            return nullptr;
    }
}

}  // namespace

void* LoadLibraryOf(const std::filesystem::path& name) {
    std::error_code ignored;
    DWORD mode = 0;
    SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &mode);
    const HMODULE library = name.has_parent_path() ? LoadFile(absolute(name, ignored).c_str())
                                                   : LoadByNameAlone(name.c_str());
    const DWORD error = GetLastError();
    SetThreadErrorMode(mode, nullptr);
    SetLastError(error);
    return library;
}

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

TLibrary::TLibrary(const std::filesystem::path& name) : handle_(LoadLibraryOf(name)) {
    if (handle_ != nullptr) return;
    throw TFailure(SystemErrorText({static_cast<int>(GetLastError()), std::system_category()}));
}

TLibrary::~TLibrary() {
    if (handle_ != nullptr) FreeLibrary(static_cast<HMODULE>(handle_));
}

}  // namespace tolvane
