#include "system/Library.h"

#include <dlfcn.h>

#include "text/Cp1251.h"
#include "text/Failure.h"

namespace tolvane {

void* FindLoadedLibrary(const char* name) {
    void* const library = dlopen(ToUtf8(name).c_str(), RTLD_LAZY | RTLD_NOLOAD);
    // The handle stays valid, because whoever loaded the library keeps it loaded.
    if (library != nullptr) dlclose(library);
    return library;
}

void* FindFunction(void* library, const char* name) {
    return dlsym(library, name);
}

std::vector<std::string> UsualClientLibraries() {
    return {"libfbclient.so.2"};
}

// This system never looks there.
void IgnoreLibrariesOfCurrentFolder() noexcept {}

std::string_view ClientLibraryCure() {
    return "Install the Firebird client (Debian: libfbclient2)";
}

void* LoadLibraryOf(const std::filesystem::path& name) {
    return dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL);
}

TLibrary::TLibrary(const std::filesystem::path& name) : handle_(LoadLibraryOf(name)) {
    if (handle_ == nullptr) throw TFailure(FromUtf8(dlerror()));
}

TLibrary::~TLibrary() {
    if (handle_ != nullptr) dlclose(handle_);
}

}  // namespace tolvane
