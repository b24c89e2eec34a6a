// What would go wrong, and what the scales would hold.

#include <cstddef>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "command/ArticleProblems.h"
#include "command/Command.h"
#include "command/InScaleProblems.h"
#include "command/LinkFactory.h"
#include "command/PlannedResults.h"
#include "command/ProblemTable.h"
#include "command/ScaleArticles.h"
#include "command/ScaleProblems.h"
#include "command/Shop.h"
#include "command/ShownTexts.h"
#include "command/WritePlan.h"
#include "config/IniFile.h"
#include "text/Cp1251.h"
#include "text/Numbers.h"
#include "upload/LabelTexts.h"

namespace tolvane {
namespace {

void Append(std::vector<TProblem>& all, std::vector<TProblem> more) {
    all.insert(all.end(), std::make_move_iterator(more.begin()),
               std::make_move_iterator(more.end()));
}

TReportTable TextTable() {
    return {.key = "texts",
            .title = {},
            .columns = {{"scale", "Scale"},
                        {"scaleName", "Name"},
                        {"number", "Number"},
                        {"parameter", "Parameter"},
                        {"label", "Field"},
                        {"shown", "In the scale"},
                        {"wanted", "In the database"},
                        {"note", "Note"}}};
}

// What the scale holds of an article, and what the database has of it. The scale holds nothing of
// an article that is not written, for a reason.
void AppendTexts(const TScaleArticle& article, const std::string& notWritten, const TScaleRec& rec,
                 const TScaleVersion& version, TReportTable& table) {
    const std::int32_t cut = PluTail(article.plu.ScaleNumber, version.maxPlu);
    const auto add = [&](TCell parameter, std::string label, std::string shown, std::string wanted,
                         std::string note) {
        table.rows.push_back({Number(rec.ScaleNumb), ToUtf8(rec.ScaleName.View()), Number(cut),
                              std::move(parameter), std::move(label),
                              notWritten.empty() ? std::move(shown) : std::string(),
                              std::move(wanted), std::move(note)});
    };
    std::string note;
    if (!notWritten.empty())
        note = "not written: " + ToUtf8(notWritten);
    else if (article.plu.WholeUnits && rec.ScaleType == kScaleTypeS300)
        note = "sold by the piece";
    add({}, "price", FormatFixed(article.plu.PriceHundredths / 100.0, 1, 2, '.'),
        FormatFixed(article.price, 1, 2, '.'), std::move(note));
    for (const TShownText& text : ShownTexts(article.plu, article.plu.ScaleNumber, rec, version)) {
        note = text.isCut ? "cut" : "";
        if (!text.lost.empty())
            note += (note.empty() ? "" : "; ") + ("the code table lacks " + ToUtf8(text.lost));
        add(Number(text.parameter), ToUtf8(text.label), ToUtf8(text.shown), ToUtf8(text.wanted),
            notWritten.empty() ? note : std::string());
    }
}

// What is known of a scale. One whose ledger cannot be read is as unknown as one that was never
// reached, and this is a problem.
std::optional<TScaleReport> ReportedBy(const TScaleRec& rec, const TCommandOptions& options,
                                       const TWorld& world, const TShop& shop,
                                       std::vector<TProblem>& problems) {
    try {
        return LedgerOf(options, world, shop, rec).Report();
    } catch (const TFileError& error) {
        problems.push_back(OfScale(rec, error.what(),
                                   "mend the file, or forget it: tolvane ledger "
                                   "forget " +
                                       std::to_string(rec.ScaleNumb)));
        return std::nullopt;
    }
}

// What is taken for granted of scales that have not told it.
class TAssumptions {
public:
    TScaleVersion VersionOf(const TScaleRec& rec, const std::optional<TScaleReport>& report) {
        TScaleVersion version = KnownVersion(report);
        const bool isTold = !table_.rows.empty() && table_.rows.back()[0] == Number(rec.ScaleNumb);
        if (!report && !isTold)
            table_.rows.push_back({Number(rec.ScaleNumb), ToUtf8(rec.ScaleName.View()),
                                   Number(version.maxPlu), Number(version.mode)});
        return version;
    }
    // On standard error where the report shows one table alone.
    void AddTo(TAnswer& answer, const TCommandOptions& options, TWorld& world) {
        if (options.format == TFormat::Csv && !options.quiet)
            for (const auto& row : table_.rows)
                world.err << "tolvane: scale " << std::get<std::int64_t>(row[0]) << " "
                          << std::get<std::string>(row[1])
                          << " has not told what it holds; assumed: capacity "
                          << std::get<std::int64_t>(row[2]) << ", label mode "
                          << std::get<std::int64_t>(row[3]) << std::endl;
        answer.report.tables.push_back(std::move(table_));
    }

private:
    TReportTable table_{.key = "assumed",
                        .title = "Not known of these scales, and assumed (tolvane test asks them)",
                        .columns = {{"scale", "Scale"},
                                    {"name", "Name"},
                                    {"capacity", "Capacity"},
                                    {"labelMode", "Label mode"}}};
};

// A part for each table; of the first one also when it is empty.
TPageContent PageOf(const TReport& report, const TWorld& world) {
    TPageContent content;
    if (!world.page.IsOpen()) return content;
    for (const TReportTable& table : report.tables)
        content.sections.push_back({.title = table.title, .table = table});
    TPageSection& first = content.sections.front();
    first.title = first.table.key == "problems" ? "Problems" : "What the scales would hold";
    if (first.table.rows.empty()) first.note = "None.";
    std::erase_if(content.sections, [](const TPageSection& section) {
        return section.table.rows.empty() && section.note.empty();
    });
    return content;
}

}  // namespace

TAnswer CheckShop(const TCommandOptions& options, TWorld& world) {
    const TShop shop = ReadShop(options);
    const std::vector<TListedScale> scales = ChosenScales(shop, options, world);
    const TArticleReading reading = ReadShopArticles(options, world);
    const TLinkFactory links(world.clock, options.serialPorts, options.udpPort);
    std::vector<TProblem> problems = ProblemsOfScales(scales, ReachBy(links));
    Append(problems, ProblemsOfArticles(reading, shop.choices.price, shop.scales));
    TAssumptions assumptions;
    for (const TScaleRec& rec : UsableOf(scales)) {
        const auto report = ReportedBy(rec, options, world, shop, problems);
        const TScaleArticles articles =
            ArticlesForScale(reading.articles, rec.ScaleNumb, shop.choices, world.regional);
        Append(problems, ProblemsInScale(articles, reading.articles, rec,
                                         assumptions.VersionOf(rec, report)));
    }
    TAnswer answer{.report = {.command = "check", .tables = {ProblemTable(problems)}},
                   .exitCode = problems.empty() ? TExitCode::Done : TExitCode::ProblemsFound};
    assumptions.AddTo(answer, options, world);
    answer.page = PageOf(answer.report, world);
    return answer;
}

TAnswer ShowArticle(const TCommandOptions& options, TWorld& world) {
    const TShop shop = ReadShop(options);
    const std::vector<TListedScale> scales = ChosenScales(shop, options, world);
    const TArticleReading reading = ReadShopArticles(options, world);
    TReportTable table = TextTable();
    TAssumptions assumptions;
    std::vector<TProblem> problems;
    bool allWritten = true;
    for (const TScaleRec& rec : UsableOf(scales)) {
        const auto report = ReportedBy(rec, options, world, shop, problems);
        const TScaleArticles articles =
            ArticlesForScale(reading.articles, rec.ScaleNumb, shop.choices, world.regional);
        const TScaleVersion known = KnownVersion(report);
        const TWinners winners = WinnersOf(articles, known.maxPlu);
        for (std::size_t i = 0; i < articles.articles.size(); ++i) {
            const TScaleArticle& article = articles.articles[i];
            if (article.plu.ScaleNumber != *options.show) continue;
            const std::string notWritten = WhyNotWritten(article, i, winners, known.maxPlu);
            allWritten = allWritten && notWritten.empty();
            AppendTexts(article, notWritten, rec, assumptions.VersionOf(rec, report), table);
        }
    }
    for (const TProblem& problem : problems)
        world.err << "tolvane: " << ToUtf8(problem.problem) << std::endl;
    if (table.rows.empty())
        throw TUsageError("None of these scales would get an article with number " +
                          std::to_string(*options.show) + ". tolvane check tells why.");
    TAnswer answer{.report = {.command = "check", .tables = {std::move(table)}},
                   .exitCode = allWritten ? TExitCode::Done : TExitCode::ProblemsFound};
    assumptions.AddTo(answer, options, world);
    answer.page = PageOf(answer.report, world);
    return answer;
}

}  // namespace tolvane
