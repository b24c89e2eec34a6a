#include "host/PictureShrink.h"

#include <gtest/gtest.h>

#include <vector>

namespace tolvane::host {
namespace {

TEST(PictureShrinkTest, ADotIsTheMeanOfItsSquareColourByColour) {
    // Two squares of 2 by 2: black, white, and twice blue (255); then four dots that are the same.
    const std::vector<std::uint32_t> large = {0x000000, 0xFFFFFF, 0x102030, 0x102030,
                                              0x0000FF, 0x0000FF, 0x102030, 0x102030};
    // Red and green: 255 / 4 = 63.75, so 64; blue: 3 * 255 / 4 = 191.25, so 191.
    EXPECT_EQ(ShrinkPicture(large.data(), 2, 1, 2),
              (std::vector<std::uint32_t>{0x4040BF, 0x102030}));
}

TEST(PictureShrinkTest, RowsAreTakenInOrder) {
    const std::vector<std::uint32_t> large = {1, 1, 3, 3, 1, 1, 3, 3, 5, 5, 7, 7, 5, 5, 7, 7};
    EXPECT_EQ(ShrinkPicture(large.data(), 2, 2, 2), (std::vector<std::uint32_t>{1, 3, 5, 7}));
}

TEST(PictureShrinkTest, OnceLeavesThePictureAsItIs) {
    const std::vector<std::uint32_t> large = {1, 2, 3, 4, 5, 6};
    EXPECT_EQ(ShrinkPicture(large.data(), 3, 2, 1), large);
}

TEST(PictureShrinkTest, WhiteStaysWhite) {
    const std::vector<std::uint32_t> large(9, 0xFFFFFFFF);
    EXPECT_EQ(ShrinkPicture(large.data(), 1, 1, 3), (std::vector<std::uint32_t>{0xFFFFFFFF}));
}

}  // namespace
}  // namespace tolvane::host
