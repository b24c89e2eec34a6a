// What code that is compiled with -fstack-protector needs: the value that stands behind the buffers
// of a function, and what happens when it has been overwritten. The compiler's own library would
// load the system's cryptography while the module is being loaded, and write to a console.
#include <windows.h>

#include <cstdint>

extern "C" {
extern std::uintptr_t __stack_chk_guard;  // NOLINT: the compiler's name
std::uintptr_t __stack_chk_guard = 0;     // NOLINT
[[noreturn]] void __stack_chk_fail();     // NOLINT
}

namespace {

constexpr DWORD kOverwrittenStack = 0xC0000409;  // STATUS_STACK_BUFFER_OVERRUN
constexpr unsigned kFastFailStackCookie = 2;

// Spreads each bit of the number over all of it.
std::uint32_t Mix(std::uint64_t seed, std::uint64_t number) {
    std::uint64_t mixed = (seed ^ number) * 0x9E3779B97F4A7C15U;
    mixed ^= mixed >> 32U;
    mixed *= 0xD6E8FEB86659FD93U;
    return static_cast<std::uint32_t>(mixed ^ mixed >> 32U);
}

// Nothing here waits for another thread or loads a library, as the loader's lock is held.
__attribute__((constructor(101))) void ChooseStackGuard() {
    FILETIME time{};
    GetSystemTimeAsFileTime(&time);
    LARGE_INTEGER counter{};
    QueryPerformanceCounter(&counter);
    std::uint64_t guard = Mix(static_cast<std::uint64_t>(counter.QuadPart), time.dwLowDateTime);
    guard = Mix(guard, GetCurrentProcessId());
    guard = Mix(guard, GetCurrentThreadId());
    // Where the system has put the stack and this module.
    guard = Mix(guard, reinterpret_cast<std::uintptr_t>(&time));
    guard = Mix(guard, reinterpret_cast<std::uintptr_t>(&ChooseStackGuard));
    // A text that is copied too far ends at the zero byte.
    __stack_chk_guard = static_cast<std::uintptr_t>(guard) & ~std::uintptr_t{0xFF};
}

}  // namespace

// Whoever has overwritten the stack may have overwritten what a handler would use: none is called.
void __stack_chk_fail() {
    if (IsProcessorFeaturePresent(PF_FASTFAIL_AVAILABLE) != 0)
        asm volatile("int $0x29" : : "c"(kFastFailStackCookie));
    TerminateProcess(GetCurrentProcess(), kOverwrittenStack);
    for (;;) {
    }
}
