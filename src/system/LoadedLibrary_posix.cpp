#include <dlfcn.h>

#include "system/LoadedLibrary.h"
#include "text/Cp1251.h"

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

}  // namespace tolvane
