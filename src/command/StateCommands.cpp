// What is known of the scales without asking them.

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "command/Command.h"
#include "command/PlannedResults.h"
#include "command/RunLock.h"
#include "command/Shop.h"
#include "command/UtcTime.h"
#include "database/DatabaseError.h"
#include "text/Cp1251.h"

namespace tolvane {
TAnswer ShowStatus(const TCommandOptions& options, TWorld& world) {
    const TShop shop = ReadShop(options);
    const std::vector<TScaleRec> scales = ChosenScales(shop, options, world);
    TAnswer answer{.report = {.command = "status"}};
    std::optional<TScaleResults> planned;
    if (!options.database.empty()) {
        try {
            const TArticleReading reading = ReadShopArticles(options, world);
            planned = PlannedResults(options, world, shop, scales, reading.articles,
                                     {.changedOnly = true});
        } catch (const TDatabaseError& error) {
            // What the ledgers know does not depend on it.
            world.err << "tolvane: " << ToUtf8(error.what()) << std::endl;
            answer.exitCode = TExitCode::Database;
        }
    }
    TReportTable table{.key = "scales",
                       .title = {},
                       .columns = {{"number", "No"},
                                   {"name", "Scale"},
                                   {"outcome", "Last run"},
                                   {"ended", "Ended"},
                                   {"written", "Written"},
                                   {"refused", "Refused"},
                                   {"held", "Held"},
                                   {"pending", "Pending"},
                                   {"version", "Version"},
                                   {"mayBeProgramming", "May not weigh"},
                                   {"ledger", "Ledger"},
                                   {"error", "Error"}}};
    for (std::size_t i = 0; i < scales.size(); ++i) {
        const TLedger ledger = LedgerOf(options, world, shop, scales[i]);
        const auto& run = ledger.LastRun();
        const auto ran = [&](auto cell) { return run ? TCell(cell(*run)) : TCell(); };
        table.rows.push_back(
            {Number(scales[i].ScaleNumb), ToUtf8(scales[i].ScaleName.View()),
             ran([](const TLastRun& r) { return std::string(OutcomeName(r.outcome)); }),
             run && run->end ? TCell(UtcText(*run->end)) : TCell(),
             ran([](const TLastRun& r) { return std::int64_t{r.written}; }),
             ran([](const TLastRun& r) { return std::int64_t{r.refused}; }),
             Number(static_cast<std::int64_t>(ledger.Claims().size())),
             planned ? Number(static_cast<std::int64_t>(planned->scales[i].pending)) : TCell(),
             ledger.Report() ? TCell(ToUtf8(ledger.Report()->version)) : TCell(),
             ran([](const TLastRun& r) { return r.mayBeInProgrammingMode; }),
             ToUtf8(ledger.DropReason()), ran([](const TLastRun& r) { return ToUtf8(r.error); })});
    }
    answer.report.tables.push_back(std::move(table));
    if (options.format == TFormat::Table && !options.quiet)
        world.err << "What the window writes or deletes is not known here." << std::endl;
    return answer;
}

TAnswer ForgetScale(const TCommandOptions& options, TWorld& world) {
    const TShop shop = ReadShop(options);
    const std::vector<TScaleRec> scales = ChosenScales(shop.scales, {options.forget});
    TReportTable table{
        .key = "scales",
        .title = {},
        .columns = {{"number", "No"}, {"name", "Scale"}, {"forgotten", "Forgotten"}}};
    for (const TScaleRec& rec : scales) {
        const TRunLock lock(options.state, rec,
                            std::chrono::duration_cast<TMilliseconds>(options.lockWait),
                            world.clock);
        if (!lock.IsHeld()) {
            world.err << "tolvane: " << ToUtf8(lock.Refusal()) << std::endl;
            return {.report = {.command = "ledger forget", .tables = {std::move(table)}},
                    .exitCode = lock.State() == TRunLockState::HeldByOther ? TExitCode::Locked
                                                                           : TExitCode::Usage};
        }
        table.rows.push_back({Number(rec.ScaleNumb), ToUtf8(rec.ScaleName.View()),
                              TLedger::Forget(options.state, rec.ScaleNumb)});
    }
    return {.report = {.command = "ledger forget", .tables = {std::move(table)}}};
}

}  // namespace tolvane
