// What ends when the module is unloaded. The loader calls all of this and holds its lock.

#include <pthread.h>
#include <windows.h>

#include <array>
#include <atomic>

#include "entry/Operation.h"
#include "window/ThreadState.h"

namespace __gnu_cxx {
void __freeres();  // NOLINT: the C++ library's name
}

// The linker has all that calls TlsAlloc and TlsFree call TakePlace and GiveBackPlace below
// instead. Calls to the system's libraries go through pointers that the loader fills in; these are
// theirs.
extern "C" {
extern const decltype(&TlsAlloc) kSystemTlsAlloc __asm__("___real__imp__TlsAlloc@0");
extern const decltype(&TlsFree) kSystemTlsFree __asm__("___real__imp__TlsFree@4");
extern const decltype(&TlsAlloc) kTakePlace __asm__("___wrap__imp__TlsAlloc@0");
extern const decltype(&TlsFree) kGiveBackPlace __asm__("___wrap__imp__TlsFree@4");
}

namespace tolvane {
namespace {

// The lock of the thread library's list of thread-local variables: the only lock of this kind in
// the module.
std::atomic<pthread_rwlock_t*> variablesLock = nullptr;

// The places for values of threads that the libraries hold, each as its number and 1. A process has
// about a thousand, and the thread library never gives its own back.
constexpr std::size_t kMostPlaces = 16;
std::array<std::atomic<DWORD>, kMostPlaces> heldPlaces;

bool ReplaceHeldPlace(DWORD from, DWORD to) {
    for (std::atomic<DWORD>& place : heldPlaces) {
        DWORD expected = from;
        if (place.compare_exchange_strong(expected, to)) return true;
    }
    return false;
}

DWORD WINAPI TakePlace() {
    const DWORD place = kSystemTlsAlloc();
    if (place != TLS_OUT_OF_INDEXES) ReplaceHeldPlace(0, place + 1);
    return place;
}

BOOL WINAPI GiveBackPlace(DWORD place) {
    ReplaceHeldPlace(place + 1, 0);
    return kSystemTlsFree(place);
}

bool isUnloading = false;

// Made before and so destroyed after every other static object: the libraries need their places
// until then.
class THeldPlaces {
public:
    THeldPlaces() = default;
    THeldPlaces(const THeldPlaces&) = delete;
    THeldPlaces& operator=(const THeldPlaces&) = delete;
    ~THeldPlaces() {
        if (!isUnloading) return;
        for (const std::atomic<DWORD>& place : heldPlaces) {
            if (place != 0) kSystemTlsFree(place - 1);
        }
    }
};
__attribute__((init_priority(101))) THeldPlaces givesBackPlaces;

bool IsUnloaded(DWORD reason, const void* processEnds) {
    return reason == DLL_PROCESS_DETACH && processEnds == nullptr;
}

void NTAPI OnUnload(void* /*module*/, DWORD reason, void* processEnds) {
    if (!IsUnloaded(reason, processEnds)) return;
    isUnloading = true;
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

const decltype(&TlsAlloc) kTakePlace = &tolvane::TakePlace;
const decltype(&TlsFree) kGiveBackPlace = &tolvane::GiveBackPlace;

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
