#pragma once

#include <cstring>

namespace tolvane {

// The value of type T whose bytes begin at `at`, which need not be aligned for it.
template <class T>
T Get(const char* at) {
    T value;
    std::memcpy(&value, at, sizeof(value));
    return value;
}

}  // namespace tolvane
