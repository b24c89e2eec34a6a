#pragma once

#include <optional>
#include <vector>

#include "articles/ArticleTable.h"
#include "command/Options.h"
#include "command/RunReport.h"
#include "command/Shop.h"
#include "command/WritePlan.h"

namespace tolvane {

// What is known of a scale.
TLedger LedgerOf(const TCommandOptions& options, const TWorld& world, const TShop& shop,
                 const TScaleRec& rec);

// What a scale reported last, by its ledger; one that was never reached takes every number and
// every text.
TScaleVersion KnownVersion(const std::optional<TScaleReport>& report);
inline TScaleVersion KnownVersion(const TLedger& ledger) {
    return KnownVersion(ledger.Report());
}

// What a run would do, by what the ledgers know; touches no scale. A scale whose ledger cannot be
// read has failed.
TScaleResults PlannedResults(const TCommandOptions& options, const TWorld& world, const TShop& shop,
                             const std::vector<TListedScale>& scales, const TArticleTable& table,
                             const TWriteChoice& choice);

}  // namespace tolvane
