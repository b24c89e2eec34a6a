#pragma once

#include <cstddef>

namespace tolvane::bench {

// What this process has of the computer's memory, in bytes: now, and at most so far.
std::size_t PhysicalMemory();
std::size_t PeakOfPhysicalMemory();

}  // namespace tolvane::bench
