#pragma once

#include <algorithm>
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

// What was measured of both sides, round by round.
struct TRounds {
    std::vector<double> ours;
    std::vector<double> other;
};

inline void PrintSide(std::string_view name, std::string_view unit,
                      const std::vector<double>& values) {
    const TSpread spread(values);
    std::printf("%-44s %9.2f %s (%.2f to %.2f)\n", name.data(), spread.median, unit.data(),
                spread.least, spread.most);
}

inline void PrintRatio(const TRounds& rounds, std::optional<double> atMost = {}) {
    std::vector<double> ratios;
    for (std::size_t round = 0; round < rounds.ours.size(); ++round)
        ratios.push_back(rounds.ours[round] / rounds.other[round]);
    const TSpread ratio(ratios);
    std::printf("%44s %9.2f    (%.2f to %.2f)", "ratio", ratio.median, ratio.least, ratio.most);
    if (atMost) std::printf(", at most %.1f", *atMost);
    std::printf("\n\n");
    std::fflush(stdout);
}

// Runs both sides in turns and prints what each takes and their ratio, round by round.
inline void Compare(const TSide& ours, const TSide& other, std::optional<double> atMost = {},
                    int rounds = 11) {
    TRounds times;
    for (int round = 0; round < rounds; ++round) {
        ours.prepare();
        times.ours.push_back(MillisecondsOf(ours.run));
        other.prepare();
        times.other.push_back(MillisecondsOf(other.run));
    }
    PrintSide(ours.name, "ms", times.ours);
    PrintSide(other.name, "ms", times.other);
    PrintRatio(times, atMost);
}

}  // namespace tolvane::bench
