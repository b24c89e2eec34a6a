#include "articles/PromotionColour.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

TEST(PromotionColour, OnWhiteIsCream) {
    // 16*255/255 = 16 for each channel; 239*255/255 = 239, 239*251/255 = 235, 239*240/255 = 224.
    EXPECT_EQ(PromotionColour({255, 255, 255}), (TRgb{255, 251, 240}));
}

TEST(PromotionColour, EachQuotientIsCutSeparately) {
    // 16*200/255 = 12 (12.5), 16*100/255 = 6 (6.3), 16*31/255 = 1 (1.9).
    EXPECT_EQ(PromotionColour({200, 100, 31}), (TRgb{251, 241, 225}));
}

TEST(PromotionColour, OnBlackIsDarkerCream) {
    EXPECT_EQ(PromotionColour({0, 0, 0}), (TRgb{239, 235, 224}));
}

}  // namespace
}  // namespace tolvane
