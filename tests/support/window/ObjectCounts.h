#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <set>
#include <utility>

namespace tolvane::test {

// How many objects of each kind the process holds, found in ways that also work where the system's
// own counts are stubs.

// Entries of the process's table of GDI objects.
int GdiObjects();
// The system gives the lowest free handle: a leak pushes the next one up.
std::uintptr_t NextHandle();
// Handles that are open, counted one by one.
int OpenHandles();
// Windows, menus, hooks and other objects of the interface, of all programs.
int UserObjects();
// The system gives the lowest free atom: a leak pushes the next one up.
int NextAtom();
// The thread's top-level windows, hidden ones included.
int ThreadWindows();
// The process's places for values of threads that are free; takes all of them for a moment.
int FreeThreadPlaces();
// Bytes of memory that only this process uses, whole pages.
std::size_t PrivateBytes();
// Bytes of all blocks allocated in the process's heaps.
std::size_t HeapBytes();

// The threads of this program, each by its number and, as numbers are used again, by its start
// time.
using TThreadKey = std::pair<DWORD, std::uint64_t>;
std::set<TThreadKey> Threads();

}  // namespace tolvane::test
