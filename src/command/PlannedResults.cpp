#include "command/PlannedResults.h"

#include "command/ScaleArticles.h"

namespace tolvane {
namespace {

// The most that a request can name, and the mode in which every model takes the most texts.
constexpr std::int32_t kMostArticles = 65535;
constexpr std::int32_t kFullestMode = 2;

TScaleResult PlannedResult(const TCommandOptions& options, const TWorld& world, const TShop& shop,
                           const TScaleRec& rec, const TArticleTable& table,
                           const TWriteChoice& choice) {
    const TScaleArticles articles =
        ArticlesForScale(table, rec.ScaleNumb, shop.choices, world.regional);
    const TLedger ledger = LedgerOf(options, world, shop, rec);
    TScaleResult result{.rec = rec};
    result.ledgerNote = ledger.DropReason();
    const TWritePlan plan = PlanWrite(articles, table, rec, KnownVersion(ledger), ledger, choice);
    result.unchanged = plan.unchanged;
    result.pending = plan.toWrite.size();
    result.refused = plan.refused;
    result.leftOut = plan.leftOut;
    result.strays = plan.strays;
    return result;
}

}  // namespace

TLedger LedgerOf(const TCommandOptions& options, const TWorld& world, const TShop& shop,
                 const TScaleRec& rec) {
    return TLedger::Load(options.state, rec, shop.choices, world.now(), options.maxAge);
}

TScaleVersion KnownVersion(const TLedger& ledger) {
    if (const auto& report = ledger.Report())
        return {.maxPlu = report->maxPlu, .mode = report->labelMode, .text = report->version};
    return {.maxPlu = kMostArticles, .mode = kFullestMode, .text = {}};
}

TScaleResults PlannedResults(const TCommandOptions& options, const TWorld& world, const TShop& shop,
                             const std::vector<TScaleRec>& scales, const TArticleTable& table,
                             const TWriteChoice& choice) {
    TScaleResults results;
    for (const TScaleRec& rec : scales)
        results.scales.push_back(PlannedResult(options, world, shop, rec, table, choice));
    return results;
}

}  // namespace tolvane
