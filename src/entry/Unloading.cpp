// What ends when the module is unloaded. The loader calls all of this and holds its lock.

#include <windows.h>

#include "entry/Operation.h"
#include "window/ThreadState.h"

namespace __gnu_cxx {
void __freeres();  // NOLINT: the C++ library's name
}

namespace tolvane {
namespace {

bool IsUnloaded(DWORD reason, const void* processEnds) {
    return reason == DLL_PROCESS_DETACH && processEnds == nullptr;
}

void NTAPI OnUnload(void* /*module*/, DWORD reason, void* processEnds) {
    if (IsUnloaded(reason, processEnds)) EndThreadState();
}

// The loader calls these in the order of their sections' names. This one comes before that of the
// thread library (XLF), which at unload forgets the state of the thread without giving it back.
__attribute__((section(".CRT$XLB"), used)) const PIMAGE_TLS_CALLBACK kOnUnload = &OnUnload;

}  // namespace
}  // namespace tolvane

extern "C" BOOL WINAPI DllMain(HINSTANCE /*module*/, DWORD reason, void* processEnds) {
    if (tolvane::IsUnloaded(reason, processEnds)) {
        tolvane::ReleaseWindowClasses();
        // What the C++ library keeps for exceptions when memory is short.
        __gnu_cxx::__freeres();
    }
    return TRUE;
}
