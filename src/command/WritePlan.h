#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "command/Ledger.h"
#include "command/ScaleArticles.h"
#include "command/ScaleResult.h"

namespace tolvane {

// Which of a scale's articles a run is about.
struct TWriteChoice {
    bool changedOnly = false;
    // The articles' numbers in the database; nothing: all.
    std::optional<std::set<std::int32_t>> numbers{};
};

// An article with the number that the scale uses.
struct TPlannedArticle {
    TPLUD plu{};
    std::int32_t uncutNumber = 0;
    std::uint64_t digest = 0;
};

// What a run has to do in one scale.
struct TWritePlan {
    std::vector<TPlannedArticle> toWrite{};  // in the order of the articles
    std::size_t unchanged = 0;
    std::vector<TRefusedArticle> refused{};
    std::vector<TRefusedArticle> leftOut{};
    std::vector<std::int32_t> strays{};
};

// The number that an article has in a scale whose highest one is `maxPlu`; 0: the scale has no such
// number.
std::int32_t NumberInScale(std::int32_t number, std::int32_t maxPlu);

// Whether a scale can hold the price, in hundredths.
bool IsPriceOfScale(std::int32_t hundredths);

// For each number of the scale the index of the article that it ends up with: the last one that can
// be written.
using TWinners = std::unordered_map<std::int32_t, std::size_t>;
TWinners WinnersOf(const TScaleArticles& articles, std::int32_t maxPlu);

// Why the article at `index` is not written into a scale with these winners, in a few words, code
// page 1251; empty when it is.
std::string WhyNotWritten(const TScaleArticle& article, std::size_t index, const TWinners& winners,
                          std::int32_t maxPlu);

// The plan for a scale that has reported `version`. Of several articles with one number the last
// one wins, as it does in the scale; the others are left out. Linear in the articles.
TWritePlan PlanWrite(const TScaleArticles& articles, const TArticleTable& table,
                     const TScaleRec& rec, const TScaleVersion& version, const TLedger& ledger,
                     const TWriteChoice& choice);

// Why a scale cannot hold the price of an article, in a few words, code page 1251.
std::string_view BadPriceText(const TScaleArticle& article);
std::string NoSuchNumberText(std::int32_t maxPlu);
std::string_view FaultText(TLineFault fault);

}  // namespace tolvane
