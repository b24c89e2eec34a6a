#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

namespace tolvane::test {

// An entry of the process's table of GDI objects (32-bit system).
struct TGdiEntry {
    std::uint64_t object;
    std::uint32_t owner;
    std::uint16_t unique;
    std::uint8_t type;
    std::uint8_t flags;
    std::uint64_t userPointer;
};
inline constexpr std::size_t kGdiTableOffset = 0x94;  // in the process environment block
inline constexpr std::size_t kGdiEntries = 0x4000;

// The process's GDI objects. The system's own counts are stubs where the tests run.
inline int GdiObjects() {
    const std::uint8_t* block = nullptr;
    asm("movl %%fs:0x30, %0" : "=r"(block));
    const auto* table = *reinterpret_cast<const TGdiEntry* const*>(block + kGdiTableOffset);
    int count = 0;
    for (std::size_t i = 0; i < kGdiEntries; ++i)
        count += table[i].type != 0 ? 1 : 0;
    return count;
}

// The system gives the lowest free handle: a leak pushes the next one up.
inline std::uintptr_t NextHandle() {
    const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    CloseHandle(event);
    return reinterpret_cast<std::uintptr_t>(event);
}

inline BOOL CALLBACK CountWindow(HWND, LPARAM count) {
    ++*reinterpret_cast<int*>(count);
    return TRUE;
}

// The thread's top-level windows, hidden ones included.
inline int ThreadWindows() {
    int count = 0;
    EnumThreadWindows(GetCurrentThreadId(), &CountWindow, reinterpret_cast<LPARAM>(&count));
    return count;
}

}  // namespace tolvane::test
