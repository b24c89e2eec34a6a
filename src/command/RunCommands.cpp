// The commands that work on the scales.

#include <memory>
#include <utility>
#include <vector>

#include "command/ArticleJobs.h"
#include "command/Command.h"
#include "command/PlannedResults.h"
#include "command/ScaleRunner.h"
#include "command/Shop.h"
#include "command/UnknownNumbers.h"

namespace tolvane {
namespace {

TLedgerJob::TLedgerParts LedgerParts(const TCommandOptions& options, const TWorld& world,
                                     const TShop& shop) {
    return {.choices = shop.choices, .maxAge = options.maxAge, .now = world.now};
}

TAnswer AnswerOf(std::string command, const TScaleResults& results) {
    return {.report = ReportOf(std::move(command), results), .exitCode = ExitCodeOf(results)};
}

}  // namespace

TAnswer WriteArticles(const TCommandOptions& options, TWorld& world) {
    const TShop shop = ReadShop(options);
    const std::vector<TScaleRec> scales = ChosenScales(shop, options, world);
    const TArticleReading reading = ReadShopArticles(options, world);
    const TWriteChoice choice{.changedOnly = options.changedOnly, .numbers = options.numbers};
    std::vector<TRefusedArticle> unknown;
    if (choice.numbers) unknown = UnknownNumbers(*choice.numbers, reading.articles, scales);
    if (options.dryRun) {
        TScaleResults planned =
            PlannedResults(options, world, shop, scales, reading.articles, choice);
        planned.unknown = std::move(unknown);
        return AnswerOf("write", planned);
    }
    const TWriteJob::TTask task{.table = reading.articles,
                                .regional = world.regional,
                                .choice = choice,
                                .prune = options.prune};
    TScaleResults results =
        RunScales(options, world, scales, [&](const TJobParts& parts, const TScaleRec& rec) {
            return std::make_unique<TWriteJob>(parts, rec, LedgerParts(options, world, shop), task);
        });
    results.unknown = std::move(unknown);
    return AnswerOf("write", results);
}

TAnswer DeleteArticles(const TCommandOptions& options, TWorld& world) {
    const TShop shop = ReadShop(options);
    std::optional<std::vector<std::int32_t>> numbers;
    if (options.numbers) numbers.emplace(options.numbers->begin(), options.numbers->end());
    return AnswerOf("delete", RunScales(options, world, ChosenScales(shop, options, world),
                                        [&](const TJobParts& parts, const TScaleRec& rec) {
                                            return std::make_unique<TDeleteJob>(
                                                parts, rec, LedgerParts(options, world, shop),
                                                numbers);
                                        }));
}

TAnswer TestScales(const TCommandOptions& options, TWorld& world) {
    const TShop shop = ReadShop(options);
    return AnswerOf("test", RunScales(options, world, ChosenScales(shop, options, world),
                                      [&](const TJobParts& parts, const TScaleRec& rec) {
                                          return std::make_unique<TTestJob>(
                                              parts, rec, LedgerParts(options, world, shop));
                                      }));
}

TAnswer ReleaseScales(const TCommandOptions& options, TWorld& world) {
    const TShop shop = ReadShop(options);
    return AnswerOf("release", RunScales(options, world, ChosenScales(shop, options, world),
                                         [](const TJobParts& parts, const TScaleRec& rec) {
                                             return std::make_unique<TReleaseJob>(parts, rec);
                                         }));
}

}  // namespace tolvane
