#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>

#include "tests/bench/measure/PhysicalMemory.h"

namespace tolvane::bench {
namespace {

std::size_t FromStatus(std::string_view name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(name))
            return std::strtoull(line.c_str() + name.size(), nullptr, 10) * 1024;
    return 0;
}

}  // namespace

std::size_t PhysicalMemory() {
    return FromStatus("VmRSS:");
}

std::size_t PeakOfPhysicalMemory() {
    return FromStatus("VmHWM:");
}

}  // namespace tolvane::bench
