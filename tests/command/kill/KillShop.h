#pragma once

#include <array>
#include <chrono>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/support/program/ScaleShop.h"

namespace tolvane::test {

// For whatever must come in the end.
inline constexpr std::chrono::minutes kDeadline{1};
inline constexpr int kScales = 3;
inline constexpr int kArticles = 8;

// The database at three moments: as it was first; with a higher price of the articles 1 to 5; with
// a higher price of 3 to 8 and another label text of 1 (against the first).
inline constexpr std::array kMoments = {"first.fdb", "second.fdb", "third.fdb"};

// What one scale holds, without how often it was written.
using THeld = std::map<int, simulator::TArticle>;
THeld HeldBy(const simulator::TScaleState& state);

// A scale's claims as they are in the file: number and digest. None without a file.
using TClaimed = std::map<int, std::string>;

// A shop of three scales in which each of eight articles is in each scale.
class TKillShop : public TScaleShop {
public:
    TKillShop();

    std::unique_ptr<TProgramRun> Write(std::size_t moment, const std::string& which) const;
    TClaimed Claimed(std::size_t scale) const;
    // What a run at this moment would leave as it is, by scale, as the command says without
    // touching a scale.
    std::vector<int> Unchanged(std::size_t moment) const;
};

// What an undisturbed run leaves in new scales and with a new ledger, for each moment.
struct TReference {
    std::array<THeld, kScales> held;
    std::array<TClaimed, kScales> claimed;
    std::chrono::milliseconds duration{};
};
const TReference& ReferenceAt(std::size_t moment);

// Checks that the scales hold what they should at this moment, weigh, and are claimed so.
void ExpectComplete(TKillShop& shop, std::size_t moment);
// Checks that each article that the ledgers claim is in its scale as an undisturbed run leaves it.
// Answers how many articles of this moment each scale holds by its ledger.
std::vector<int> ExpectClaimsRight(TKillShop& shop, std::size_t moment);

// The report that a run has printed; empty when it is none.
nlohmann::json ReportOf(const TProgramRun& run);

}  // namespace tolvane::test
