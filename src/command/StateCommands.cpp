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
#include "config/IniFile.h"
#include "database/DatabaseError.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

TReportTable StatusTable() {
    return {.key = "scales",
            .title = {},
            .columns = {{"number", "No"},
                        {"name", "Scale"},
                        {"outcome", "Last run"},
                        {"ended", "Ended"},
                        {"written", "Written"},
                        {"refused", "Refused"},
                        {"leftOut", "Left out"},
                        {"held", "Held"},
                        {"pending", "Pending"},
                        {"version", "Version"},
                        {"mayBeProgramming", "May not weigh"},
                        {"ledger", "Ledger"},
                        {"error", "Error"}}};
}

// A run that was killed says to the end that it is running.
std::string LastOutcome(const TLastRun& run, const TScaleRec& rec, const TCommandOptions& options) {
    const bool isBroken = run.outcome == TRunOutcome::Running && !IsRunLockHeld(options.state, rec);
    return std::string(isBroken ? "broken off" : OutcomeName(run.outcome));
}

std::vector<TCell> StatusRow(const TScaleRec& rec, const TLedger& ledger,
                             const TCommandOptions& options, const TScaleResult* planned) {
    const auto& run = ledger.LastRun();
    const auto ran = [&](auto cell) { return run ? TCell(cell(*run)) : TCell(); };
    const bool isPlanned = planned != nullptr && planned->error.empty();
    const std::string planError = planned != nullptr ? ToUtf8(planned->error) : std::string();
    return {Number(rec.ScaleNumb),
            ToUtf8(rec.ScaleName.View()),
            ran([&](const TLastRun& r) { return LastOutcome(r, rec, options); }),
            run && run->end ? TCell(UtcText(*run->end)) : TCell(),
            ran([](const TLastRun& r) { return std::int64_t{r.written}; }),
            ran([](const TLastRun& r) { return std::int64_t{r.refused}; }),
            ran([](const TLastRun& r) { return std::int64_t{r.leftOut}; }),
            Number(static_cast<std::int64_t>(ledger.Claims().size())),
            isPlanned ? Number(static_cast<std::int64_t>(planned->pending)) : TCell(),
            ledger.Report() ? TCell(ToUtf8(ledger.Report()->version)) : TCell(),
            run || ledger.MayBeProgramming() ? TCell(ledger.MayBeProgramming()) : TCell(),
            ToUtf8(ledger.DropReason()),
            planError.empty() ? ran([](const TLastRun& r) { return ToUtf8(r.error); })
                              : TCell(planError)};
}

// Of a scale of which nothing can be said but why.
std::vector<TCell> ErrorRow(const TScaleRec& rec, TCell outcome, const std::string& error) {
    std::vector<TCell> row(StatusTable().columns.size());
    row[0] = Number(rec.ScaleNumb);
    row[1] = ToUtf8(rec.ScaleName.View());
    row[2] = std::move(outcome);
    row.back() = ToUtf8(error);
    return row;
}

// The rows of all scales, and whether something is wrong with them.
class TStatusRows {
public:
    TStatusRows(const TCommandOptions& options, const TWorld& world, const TShop& shop)
        : options_(options), world_(world), shop_(shop) {}

    // `planned`: null without a database.
    void Add(const TListedScale& scale, const TScaleResult* planned) {
        if (!scale.IsUsable()) {
            const TScaleResult result = UnusableResult(scale);
            table.rows.push_back(
                ErrorRow(scale.rec, std::string(OutcomeName(result.outcome)), result.error));
            ++unusable_;
            return;
        }
        try {
            const TLedger ledger = LedgerOf(options_, world_, shop_, scale.rec);
            table.rows.push_back(StatusRow(scale.rec, ledger, options_, planned));
            if (planned != nullptr && !planned->error.empty()) ++unknown_;
        } catch (const TFileError& error) {
            table.rows.push_back(ErrorRow(scale.rec, {}, error.what()));
            ++unknown_;
        }
    }
    TExitCode ExitCode() const {
        if (unusable_ > 0 && unusable_ == table.rows.size()) return TExitCode::Usage;
        return unusable_ + unknown_ > 0 ? TExitCode::SomeFailed : TExitCode::Done;
    }

    TReportTable table = StatusTable();

private:
    const TCommandOptions& options_;
    const TWorld& world_;
    const TShop& shop_;
    std::size_t unusable_ = 0;
    std::size_t unknown_ = 0;
};

}  // namespace

TAnswer ShowStatus(const TCommandOptions& options, TWorld& world) {
    const TShop shop = ReadShop(options);
    const std::vector<TListedScale> scales = ChosenScales(shop, options, world);
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
    TStatusRows rows(options, world, shop);
    for (std::size_t i = 0; i < scales.size(); ++i)
        rows.Add(scales[i], planned ? &planned->scales[i] : nullptr);
    if (answer.exitCode == TExitCode::Done) answer.exitCode = rows.ExitCode();
    answer.report.tables.push_back(std::move(rows.table));
    if (options.format == TFormat::Table && !options.quiet)
        world.err << "What the window writes or deletes is not known here." << std::endl;
    return answer;
}

TAnswer ForgetScale(const TCommandOptions& options, TWorld& world) {
    const TShop shop = ReadShop(options);
    const std::vector<TScaleRec> scales = RecordsOf(ChosenScales(shop.scales, {options.forget}));
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
