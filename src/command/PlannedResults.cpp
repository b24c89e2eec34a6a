#include "command/PlannedResults.h"

#include <exception>
#include <utility>

#include "command/EnglishWords.h"
#include "command/ScaleArticles.h"
#include "system/SystemError.h"

namespace tolvane {
namespace {

// The most that a request can name, and the mode in which every model takes the most texts.
constexpr std::int32_t kMostArticles = 65535;
constexpr std::int32_t kFullestMode = 2;

void Plan(const TCommandOptions& options, const TWorld& world, const TShop& shop,
          const TArticleTable& table, const TWriteChoice& choice, TScaleResult& result) {
    const TScaleRec& rec = result.rec;
    const TScaleArticles articles =
        ArticlesForScale(table, rec.ScaleNumb, shop.choices, world.regional);
    const TLedger ledger = LedgerOf(options, world, shop, rec);
    result.ledgerNote = ledger.DropReason();
    TWritePlan plan = PlanWrite(articles, table, rec, KnownVersion(ledger), ledger, choice);
    if (!plan.refused.empty()) result.outcome = TScaleOutcome::Failed;
    result.unchanged = plan.unchanged;
    result.pending = plan.toWrite.size();
    if (!options.report.empty())
        for (const TPlannedArticle& article : plan.toWrite)
            result.sent.push_back(
                {.number = article.plu.ScaleNumber, .name = article.plu.LabelName1});
    result.refused = std::move(plan.refused);
    result.leftOut = std::move(plan.leftOut);
    result.strays = std::move(plan.strays);
}

TScaleResult PlannedResult(const TCommandOptions& options, const TWorld& world, const TShop& shop,
                           const TScaleRec& rec, const TArticleTable& table,
                           const TWriteChoice& choice) {
    TScaleResult result{.rec = rec};
    try {
        Plan(options, world, shop, table, choice, result);
    } catch (const std::exception& error) {
        result.outcome = TScaleOutcome::Failed;
        result.error = InEnglish(FailureText(error));
    }
    return result;
}

}  // namespace

TLedger LedgerOf(const TCommandOptions& options, const TWorld& world, const TShop& shop,
                 const TScaleRec& rec) {
    return TLedger::Load(options.state, rec, shop.choices, world.now(), options.maxAge);
}

TScaleVersion KnownVersion(const std::optional<TScaleReport>& report) {
    if (report)
        return {.maxPlu = report->maxPlu, .mode = report->labelMode, .text = report->version};
    return {.maxPlu = kMostArticles, .mode = kFullestMode, .text = {}};
}

TScaleResults PlannedResults(const TCommandOptions& options, const TWorld& world, const TShop& shop,
                             const std::vector<TListedScale>& scales, const TArticleTable& table,
                             const TWriteChoice& choice) {
    TScaleResults results;
    for (const TListedScale& scale : scales)
        results.scales.push_back(scale.IsUsable()
                                     ? PlannedResult(options, world, shop, scale.rec, table, choice)
                                     : UnusableResult(scale));
    return results;
}

}  // namespace tolvane
