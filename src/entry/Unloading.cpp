// What ends when the module is unloaded. The loader calls all of this and holds its lock.

#include <pthread.h>
#include <windows.h>

#include <atomic>

#include "entry/Operation.h"
#include "window/ThreadState.h"

namespace __gnu_cxx {
void __freeres();  // NOLINT: the C++ library's name
}

namespace tolvane {
namespace {

// The lock of the thread library's list of thread-local variables: the only lock of this kind in
// the module.
std::atomic<pthread_rwlock_t*> variablesLock = nullptr;

bool IsUnloaded(DWORD reason, const void* processEnds) {
    return reason == DLL_PROCESS_DETACH && processEnds == nullptr;
}

void NTAPI OnUnload(void* /*module*/, DWORD reason, void* processEnds) {
    if (!IsUnloaded(reason, processEnds)) return;
    EndThreadState();
    // Two handles that the library keeps.
    if (pthread_rwlock_t* const lock = variablesLock) pthread_rwlock_destroy(lock);
}

// The loader calls these in the order of their sections' names. This one comes before that of the
// thread library (XLF), which at unload forgets the state of the thread without giving it back.
__attribute__((section(".CRT$XLB"), used)) const PIMAGE_TLS_CALLBACK kOnUnload = &OnUnload;

}  // namespace
}  // namespace tolvane

extern "C" {

int __real_pthread_rwlock_wrlock(pthread_rwlock_t* lock);  // NOLINT: the linker's names

// The linker has all that calls pthread_rwlock_wrlock call this.
int __wrap_pthread_rwlock_wrlock(pthread_rwlock_t* lock) {  // NOLINT
    tolvane::variablesLock = lock;
    return __real_pthread_rwlock_wrlock(lock);
}

BOOL WINAPI DllMain(HINSTANCE /*module*/, DWORD reason, void* processEnds) {
    if (tolvane::IsUnloaded(reason, processEnds)) {
        tolvane::ReleaseWindowClasses();
        // What the C++ library keeps for exceptions when memory is short.
        __gnu_cxx::__freeres();
    }
    return TRUE;
}

}  // extern "C"
