#include "ManyScales.h"

#include <cstdlib>
#include <iostream>
#include <memory>

#include "command/ArticleJobs.h"
#include "command/ScaleRunner.h"
#include "command/Shop.h"
#include "command/World.h"
#include "tests/support/scales/TestScales.h"

namespace tolvane::bench {

int WriteManyScales(const std::filesystem::path& stateFolder, const std::string& database,
                    const std::vector<std::string>& ports) {
    TWorld world{
        .out = std::cout,
        .err = std::cerr,
        .terminal = false,
        .clock = SystemClock(),
        .localClock = SystemLocalClock(),
        .now =
            [] {
                return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
            },
        .interrupts = [] { return 0; },
        .regional = SystemRegionalSettings()};
    TCommandOptions options;
    options.state = stateFolder;
    options.database = database;
    options.progress = false;
    std::vector<TListedScale> scales;
    for (const std::string& port : ports) {
        const int number = static_cast<int>(scales.size()) + 1;
        TScaleRec rec = NetworkScale(number, "S300", "127.0.0.1",
                                     static_cast<std::uint16_t>(std::atoi(port.c_str())));
        rec.ScaleType = kScaleTypeS300;
        scales.push_back({.rec = rec});
    }
    const TArticleReading reading = ReadShopArticles(options, world);
    const TScaleResults results =
        RunScales(options, world, scales, [&](const TJobParts& parts, const TScaleRec& rec) {
            return std::make_unique<TWriteJob>(
                parts, rec,
                TLedgerJob::TLedgerParts{.choices = {}, .maxAge = options.maxAge, .now = world.now},
                TWriteJob::TTask{
                    .table = reading.articles, .regional = world.regional, .choice = {}});
        });
    const TExitCode code = ExitCodeOf(results);
    std::cout << FormatReport(ReportOf("write", results), TFormat::Json, code) << std::flush;
    return static_cast<int>(code);
}

}  // namespace tolvane::bench
