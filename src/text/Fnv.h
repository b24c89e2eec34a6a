#pragma once

#include <cstdint>

namespace tolvane {

// FNV-1a, 64 bits: any single byte that changes changes the hash. Begin with the basis.
inline constexpr std::uint64_t kFnvBasis = 0xCBF29CE484222325U;

constexpr std::uint64_t FnvNext(std::uint64_t hash, std::uint8_t byte) {
    return (hash ^ byte) * 0x100000001B3U;
}

}  // namespace tolvane
