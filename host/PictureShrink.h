#pragma once

#include <cstdint>
#include <vector>

namespace tolvane::host {

// Makes a picture smaller by a whole number of times: each dot becomes the mean of the square of
// dots that it stands for. `large` holds rows of 32-bit dots, 8 bits a colour, width * times
// across; the result holds width * height dots of that kind.
std::vector<std::uint32_t> ShrinkPicture(const std::uint32_t* large, int width, int height,
                                         int times);

}  // namespace tolvane::host
