#pragma once

#include <cstdio>
#include <functional>
#include <string_view>
#include <vector>

#include "tests/bench/measure/Sides.h"

namespace tolvane::bench {

// Prints what each round of one thing takes.
inline void Tell(
    std::string_view name, const std::function<void()>& body, int rounds,
    const std::function<void()>& prepare = [] {}) {
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        prepare();
        times.push_back(MillisecondsOf(body));
    }
    const TSpread spread(times);
    std::printf("%-44s %9.2f ms (%.2f to %.2f)\n", name.data(), spread.median, spread.least,
                spread.most);
    std::fflush(stdout);
}

}  // namespace tolvane::bench
