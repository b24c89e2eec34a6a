#pragma once

#include <cstdint>
#include <vector>

namespace tolvane::host {

// Shrinks a picture to 1/times of its width and height: each dot of the result is the mean of a
// square of times * times dots. `large` has rows of width * times dots of 32 bits, 8 bits per
// colour; the result has width * height such dots.
std::vector<std::uint32_t> ShrinkPicture(const std::uint32_t* large, int width, int height,
                                         int times);

}  // namespace tolvane::host
