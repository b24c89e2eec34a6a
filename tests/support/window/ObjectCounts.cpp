#include "tests/support/window/ObjectCounts.h"

#include <tlhelp32.h>

#include <algorithm>
#include <vector>

namespace tolvane::test {
namespace {

// An entry of the process's table of GDI objects (32-bit system).
struct TGdiEntry {
    std::uint64_t object;
    std::uint32_t owner;
    std::uint16_t unique;
    std::uint8_t type;
    std::uint8_t flags;
    std::uint64_t userPointer;
};
constexpr std::size_t kGdiTableOffset = 0x94;  // in the process environment block
constexpr std::size_t kGdiEntries = 0x4000;

BOOL CALLBACK CountWindow(HWND, LPARAM count) {
    ++*reinterpret_cast<int*>(count);
    return TRUE;
}

std::uint64_t MadeAt(DWORD thread) {
    const HANDLE handle = OpenThread(THREAD_QUERY_INFORMATION, FALSE, thread);
    FILETIME made{};
    FILETIME other{};
    GetThreadTimes(handle, &made, &other, &other, &other);
    CloseHandle(handle);
    return std::uint64_t{made.dwHighDateTime} << 32 | made.dwLowDateTime;
}

}  // namespace

int GdiObjects() {
    const std::uint8_t* block = nullptr;
    asm("movl %%fs:0x30, %0" : "=r"(block));
    const auto* table = *reinterpret_cast<const TGdiEntry* const*>(block + kGdiTableOffset);
    int count = 0;
    for (std::size_t i = 0; i < kGdiEntries; ++i)
        count += table[i].type != 0 ? 1 : 0;
    return count;
}

std::uintptr_t NextHandle() {
    const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    CloseHandle(event);
    return reinterpret_cast<std::uintptr_t>(event);
}

int OpenHandles() {
    constexpr std::uintptr_t kStep = 4;
    constexpr std::uintptr_t kHighest = 0x10000;
    int count = 0;
    DWORD flags = 0;
    for (std::uintptr_t handle = kStep; handle < kHighest; handle += kStep)
        count += GetHandleInformation(reinterpret_cast<HANDLE>(handle), &flags) != 0 ? 1 : 0;
    return count;
}

// The low word of a handle is twice its index in the table of such objects. This makes more menus
// than the table has free entries, so that their highest index shows how many entries were taken.
// Each call leaves as many free entries as it had menus, and objects that have gone since add to
// them; the next call therefore makes more menus.
int UserObjects() {
    static int menuCount = 1000;
    constexpr int kMoreHoles = 40;
    menuCount += kMoreHoles;
    std::vector<HMENU> menus;
    menus.reserve(static_cast<std::size_t>(menuCount));
    int highest = 0;
    for (int i = 0; i < menuCount; ++i) {
        menus.push_back(CreateMenu());
        highest = std::max<int>(highest, LOWORD(reinterpret_cast<std::uintptr_t>(menus.back())));
    }
    for (const HMENU menu : menus)
        DestroyMenu(menu);
    return highest / 2 - menuCount;
}

int NextAtom() {
    const ATOM atom = GlobalAddAtomW(L"tolvane next atom");
    GlobalDeleteAtom(atom);
    return atom;
}

int ThreadWindows() {
    int count = 0;
    EnumThreadWindows(GetCurrentThreadId(), &CountWindow, reinterpret_cast<LPARAM>(&count));
    return count;
}

int FreeThreadPlaces() {
    std::vector<DWORD> places;
    for (DWORD place = 0; (place = TlsAlloc()) != TLS_OUT_OF_INDEXES;)
        places.push_back(place);
    for (const DWORD place : places)
        TlsFree(place);
    return static_cast<int>(places.size());
}

std::size_t PrivateBytes() {
    std::size_t bytes = 0;
    MEMORY_BASIC_INFORMATION region{};
    for (const char* at = nullptr; VirtualQuery(at, &region, sizeof region) != 0;
         at = static_cast<const char*>(region.BaseAddress) + region.RegionSize) {
        if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE) bytes += region.RegionSize;
    }
    return bytes;
}

std::size_t HeapBytes() {
    std::vector<HANDLE> heaps(GetProcessHeaps(0, nullptr));
    heaps.resize(std::min<std::size_t>(
        heaps.size(), GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data())));
    std::size_t bytes = 0;
    for (const HANDLE heap : heaps) {
        HeapLock(heap);
        PROCESS_HEAP_ENTRY entry{};
        while (HeapWalk(heap, &entry) != 0)
            bytes += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? entry.cbData : 0;
        HeapUnlock(heap);
    }
    return bytes;
}

std::set<TThreadKey> Threads() {
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    std::set<TThreadKey> threads;
    for (BOOL more = Thread32First(snapshot, &entry); more != 0;
         more = Thread32Next(snapshot, &entry)) {
        if (entry.th32OwnerProcessID == GetCurrentProcessId())
            threads.emplace(entry.th32ThreadID, MadeAt(entry.th32ThreadID));
    }
    CloseHandle(snapshot);
    return threads;
}

}  // namespace tolvane::test
