#include <windows.h>

#include "system/LoadedLibrary.h"
#include "text/Cp1251.h"

namespace tolvane {

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

}  // namespace tolvane
