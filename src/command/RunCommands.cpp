// The commands that work on the scales.

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "command/ArticleJobs.h"
#include "command/Command.h"
#include "command/PlannedResults.h"
#include "command/RunPage.h"
#include "command/ScaleRunner.h"
#include "command/ScaleView.h"
#include "command/Shop.h"
#include "command/UnknownNumbers.h"
#include "text/Cp1251.h"

namespace tolvane {
namespace {

TLedgerJob::TLedgerParts LedgerParts(const TCommandOptions& options, const TWorld& world,
                                     const TShop& shop) {
    return {.choices = shop.choices, .maxAge = options.maxAge, .now = world.now};
}

// Where no progress is shown, the reasons of failures stand in lines of their own.
TAnswer AnswerOf(std::string command, const TCommandOptions& options, TWorld& world,
                 const TScaleResults& results) {
    if (!options.progress)
        for (const std::string& line : FailureLines(results))
            world.err << "tolvane: " << line << std::endl;
    return {.report = ReportOf(std::move(command), results), .exitCode = ExitCodeOf(results)};
}

void LogUnknown(const std::vector<TRefusedArticle>& unknown, TEventLog& log) {
    for (const TRefusedArticle& article : unknown)
        log.Write("leftOut",
                  {{"number", std::int64_t{article.number}}, {"text", ToUtf8(article.reason)}});
}

// What a run would do.
TScaleResults DryRun(const TCommandOptions& options, TWorld& world, const TShop& shop,
                     const std::vector<TListedScale>& scales, const TArticleTable& table,
                     const TWriteChoice& choice) {
    TScaleResults planned = PlannedResults(options, world, shop, scales, table, choice);
    for (const TScaleResult& result : planned.scales)
        LogResult(world.log, result, 0);
    return planned;
}

}  // namespace

TAnswer WriteArticles(const TCommandOptions& options, TWorld& world) {
    const TShop shop = ReadShop(options);
    const std::vector<TListedScale> scales = ChosenScales(shop, options, world);
    const TArticleReading reading = ReadShopArticles(options, world);
    const TWriteChoice choice{.changedOnly = options.changedOnly, .numbers = options.numbers};
    std::vector<TRefusedArticle> unknown;
    if (choice.numbers)
        unknown = UnknownNumbers(*choice.numbers, reading.articles, RecordsOf(scales));
    LogUnknown(unknown, world.log);
    const TWriteJob::TTask task{.table = reading.articles,
                                .regional = world.regional,
                                .choice = choice,
                                .prune = options.prune,
                                .keepSent = world.page.IsOpen()};
    TScaleResults results =
        options.dryRun
            ? DryRun(options, world, shop, scales, reading.articles, choice)
            : RunScales(options, world, scales, [&](const TJobParts& parts, const TScaleRec& rec) {
                  return std::make_unique<TWriteJob>(parts, rec, LedgerParts(options, world, shop),
                                                     task);
              });
    results.unknown = std::move(unknown);
    results.named = choice.numbers.has_value();
    TAnswer answer = AnswerOf("write", options, world, results);
    if (world.page.IsOpen()) answer.page = RunPage(results, options.dryRun);
    return answer;
}

TAnswer DeleteArticles(const TCommandOptions& options, TWorld& world) {
    const TShop shop = ReadShop(options);
    std::optional<std::vector<std::int32_t>> numbers;
    if (options.numbers) numbers.emplace(options.numbers->begin(), options.numbers->end());
    TScaleResults results =
        RunScales(options, world, ChosenScales(shop, options, world),
                  [&](const TJobParts& parts, const TScaleRec& rec) {
                      return std::make_unique<TDeleteJob>(
                          parts, rec, LedgerParts(options, world, shop), numbers);
                  });
    results.named = numbers.has_value();
    return AnswerOf("delete", options, world, results);
}

TAnswer TestScales(const TCommandOptions& options, TWorld& world) {
    const TShop shop = ReadShop(options);
    const TScaleResults results = RunScales(options, world, ChosenScales(shop, options, world),
                                            [&](const TJobParts& parts, const TScaleRec& rec) {
                                                return std::make_unique<TTestJob>(
                                                    parts, rec, LedgerParts(options, world, shop));
                                            });
    return AnswerOf("test", options, world, results);
}

TAnswer ReleaseScales(const TCommandOptions& options, TWorld& world) {
    const TShop shop = ReadShop(options);
    const TScaleResults results = RunScales(options, world, ChosenScales(shop, options, world),
                                            [&](const TJobParts& parts, const TScaleRec& rec) {
                                                return std::make_unique<TReleaseJob>(
                                                    parts, rec, LedgerParts(options, world, shop));
                                            });
    return AnswerOf("release", options, world, results);
}

}  // namespace tolvane
