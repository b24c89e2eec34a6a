#pragma once

#include <cstddef>
#include <filesystem>
#include <iterator>

namespace tolvane::test {

// How many descriptors this process has open.
inline std::ptrdiff_t OpenDescriptors() {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return std::distance(begin(all), end(all));
}

}  // namespace tolvane::test
