#include <windows.h>
//
#include <psapi.h>

#include "tests/bench/measure/PhysicalMemory.h"

namespace tolvane::bench {
namespace {

PROCESS_MEMORY_COUNTERS Counters() {
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters));
    return counters;
}

}  // namespace

std::size_t PhysicalMemory() {
    return Counters().WorkingSetSize;
}

std::size_t PeakOfPhysicalMemory() {
    return Counters().PeakWorkingSetSize;
}

}  // namespace tolvane::bench
