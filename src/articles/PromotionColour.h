#pragma once

#include <cstdint>

namespace tolvane {

struct TRgb {
    std::uint8_t red;
    std::uint8_t green;
    std::uint8_t blue;
    bool operator==(const TRgb&) const = default;
};

// The background of an article that is in a promotion: cream, mixed with a little of the system's
// window colour.
constexpr TRgb PromotionColour(TRgb window) {
    constexpr TRgb kCream = {255, 251, 240};
    constexpr int kWeight = 16;
    constexpr int kWhole = 255;
    const auto blend = [&](int own, int cream) {
        return static_cast<std::uint8_t>(kWeight * own / kWhole +
                                         (kWhole - kWeight) * cream / kWhole);
    };
    return {blend(window.red, kCream.red), blend(window.green, kCream.green),
            blend(window.blue, kCream.blue)};
}

}  // namespace tolvane
