#include "host/PictureShrink.h"

#include <array>
#include <cstddef>

namespace tolvane::host {
namespace {

constexpr std::size_t kColours = 4;
using TSums = std::array<std::uint32_t, kColours>;

void Add(TSums& sums, std::uint32_t dot) {
    for (std::size_t colour = 0; colour < kColours; ++colour)
        sums[colour] += (dot >> (8 * colour)) & 0xFFU;
}

std::uint32_t Mean(const TSums& sums, std::uint32_t count) {
    std::uint32_t dot = 0;
    for (std::size_t colour = 0; colour < kColours; ++colour)
        dot |= (sums[colour] + count / 2) / count << (8 * colour);
    return dot;
}

}  // namespace

std::vector<std::uint32_t> ShrinkPicture(const std::uint32_t* large, int width, int height,
                                         int times) {
    const auto across = static_cast<std::size_t>(width);
    const auto step = static_cast<std::size_t>(times);
    std::vector<std::uint32_t> small;
    small.reserve(across * static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y) {
        const std::uint32_t* rows = large + static_cast<std::size_t>(y) * step * step * across;
        for (std::size_t x = 0; x < across; ++x) {
            TSums sums{};
            for (std::size_t row = 0; row < step; ++row) {
                for (std::size_t dot = 0; dot < step; ++dot)
                    Add(sums, rows[row * step * across + x * step + dot]);
            }
            small.push_back(Mean(sums, static_cast<std::uint32_t>(step * step)));
        }
    }
    return small;
}

}  // namespace tolvane::host
