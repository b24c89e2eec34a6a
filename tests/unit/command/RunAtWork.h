#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <numeric>
#include <random>
#include <vector>

#include "command/Ledger.h"
#include "tests/unit/command/Shop.h"

namespace tolvane::test {

inline constexpr std::int32_t kArticles = 300;

// What the scale holds: per article the digest of the commands that it has acknowledged, 0 while an
// article is only partly written. Memory that outlives the run.
using TScaleMemory = std::array<std::atomic<std::uint64_t>, kArticles + 1>;
static_assert(std::atomic<std::uint64_t>::is_always_lock_free);

// A run that never ends: it gives up some articles, writes them and claims them, again and again.
// `onStart` is called after the first save.
[[noreturn]] inline void WriteForEver(const std::filesystem::path& folder, unsigned seed,
                                      TScaleMemory& scale, const std::function<void()>& onStart) {
    std::mt19937 random(seed);
    std::chrono::sys_seconds now = kNoon + std::chrono::seconds(seed);
    TLedger ledger = LoadAt(folder, now);
    ledger.Confirm(Report());
    for (std::uint64_t pass = 1;; ++pass) {
        // Neighbours, so that no article is in it twice.
        std::vector<std::int32_t> numbers(1 + random() % 8);
        std::iota(numbers.begin(), numbers.end(),
                  1 + static_cast<std::int32_t>(random() % (kArticles - numbers.size() + 1)));
        ledger.Withdraw(numbers, now);
        for (const std::int32_t number : numbers) {
            const std::uint64_t digest = (std::uint64_t{seed} << 32U) + pass;
            std::atomic<std::uint64_t>& place = scale[static_cast<std::size_t>(number)];
            place = 0;
            place = digest;
            ledger.Claim(number, digest, now);
            if (random() % 2 == 0) now += std::chrono::seconds(1);
            ledger.SaveIfDue(now);
        }
        if (pass == 1) onStart();
    }
}

// How many articles the ledger claims that the scale does not hold so; how many it claims rightly.
struct TClaimCheck {
    int wrong = 0;
    int right = 0;
};
inline TClaimCheck CheckClaims(const TLedger& ledger, const TScaleMemory& scale) {
    TClaimCheck check;
    for (const auto& [number, claim] : ledger.Claims())
        ++(scale.at(static_cast<std::size_t>(number)) == claim.digest ? check.right : check.wrong);
    return check;
}

// Later than anything that a run with one of this test's seeds has claimed.
inline constexpr std::chrono::sys_seconds kAfterwards = kNoon + std::chrono::days(6);

}  // namespace tolvane::test
