#pragma once

#include <vector>

#include "articles/ArticleTable.h"
#include "command/Options.h"
#include "command/ScaleRunner.h"
#include "command/Shop.h"
#include "command/WritePlan.h"

namespace tolvane {

// What is known of a scale.
TLedger LedgerOf(const TCommandOptions& options, const TWorld& world, const TShop& shop,
                 const TScaleRec& rec);

// What a scale reported last, by its ledger; a scale that was never reached takes every number and
// every text.
TScaleVersion KnownVersion(const TLedger& ledger);

// What a run would do, by what the ledgers know; touches no scale.
TScaleResults PlannedResults(const TCommandOptions& options, const TWorld& world, const TShop& shop,
                             const std::vector<TScaleRec>& scales, const TArticleTable& table,
                             const TWriteChoice& choice);

}  // namespace tolvane
