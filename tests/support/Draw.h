#pragma once

#include <cstddef>
#include <cstdint>
#include <random>

namespace tolvane {

// Draws numbers by chance, the same ones for the same seed on every system.
class TDraw {
public:
    explicit TDraw(std::uint32_t seed) : random_(seed) {}
    // A number from 0 to `limit` - 1. The distributions of standard libraries differ, so this draws
    // by the remainder.
    unsigned operator()(std::size_t limit) { return static_cast<unsigned>(random_() % limit); }

private:
    std::mt19937 random_;
};

}  // namespace tolvane
