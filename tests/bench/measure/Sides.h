#pragma once

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace tolvane::bench {

// One side of a ratio: what is measured, and what is done before it each time.
struct TSide {
    std::string_view name;
    std::function<void()> run;
    std::function<void()> prepare = [] {};
};

inline double MillisecondsOf(const std::function<void()>& body) {
    const auto start = std::chrono::steady_clock::now();
    body();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

// The median of some numbers with the smallest and the largest.
struct TSpread {
    explicit TSpread(std::vector<double> values) {
        std::ranges::sort(values);
        median = values[values.size() / 2];
        least = values.front();
        most = values.back();
    }
    double median;
    double least;
    double most;
};

// Runs both sides in turns and prints what each takes and their ratio, round by round.
inline void Compare(const TSide& ours, const TSide& other, std::optional<double> atMost = {},
                    int rounds = 11) {
    const std::array<const TSide*, 2> sides = {&ours, &other};
    std::array<std::vector<double>, 2> times;
    std::vector<double> ratios;
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t side = 0; side < sides.size(); ++side) {
            sides[side]->prepare();
            times[side].push_back(MillisecondsOf(sides[side]->run));
        }
        ratios.push_back(times[0].back() / times[1].back());
    }
    for (std::size_t side = 0; side < sides.size(); ++side) {
        const TSpread spread(times[side]);
        std::printf("%-44s %9.2f ms (%.2f to %.2f)\n", sides[side]->name.data(), spread.median,
                    spread.least, spread.most);
    }
    const TSpread ratio(ratios);
    std::printf("%44s %9.2f    (%.2f to %.2f)", "ratio", ratio.median, ratio.least, ratio.most);
    if (atMost) std::printf(", at most %.1f", *atMost);
    std::printf("\n\n");
    std::fflush(stdout);
}

}  // namespace tolvane::bench
