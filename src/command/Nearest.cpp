#include "command/Nearest.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>

namespace tolvane {
namespace {

// How many letters have to be changed, added, left out or swapped with their neighbour.
std::size_t Distance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    std::vector<std::size_t> before = row;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        const std::vector<std::size_t> twoBefore = std::exchange(before, row);
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = before[j - 1] + (a[i - 1] == b[j - 1] ? 0U : 1U);
            row[j] = std::min({replaced, before[j] + 1, row[j - 1] + 1});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                row[j] = std::min(row[j], twoBefore[j - 2] + 1);
        }
    }
    return row.back();
}

}  // namespace

std::string Nearest(const std::string& word, const std::vector<std::string>& words) {
    std::string nearest;
    std::size_t least = std::string::npos;
    for (const std::string& candidate : words) {
        const std::size_t distance = Distance(word, candidate);
        if (distance > std::max<std::size_t>(1, candidate.size() / 3) || distance >= least)
            continue;
        least = distance;
        nearest = candidate;
    }
    return nearest;
}

}  // namespace tolvane
