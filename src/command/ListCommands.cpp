// What there is: articles, article lines, scales.

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "articles/ArticleFields.h"
#include "command/Command.h"
#include "command/LedgerContent.h"
#include "command/LinkFactory.h"
#include "command/PlannedResults.h"
#include "command/ProblemTable.h"
#include "command/ScaleArticles.h"
#include "command/ScaleProblems.h"
#include "command/Shop.h"
#include "command/WritePlan.h"
#include "config/IniFile.h"
#include "text/Cp1251.h"
#include "upload/ArticleLineBuilder.h"

namespace tolvane {
namespace {

TCell FieldCell(const TArticleTable& table, TRowId row, const TFieldInfo& info) {
    switch (info.type) {
        case TFieldType::Integer:
            return Number(table.Integer(row, info.field));
        case TFieldType::Float:
            return table.Float(row, info.field);
        case TFieldType::Boolean:
            return table.Boolean(row, info.field);
        case TFieldType::Text:
            return ToUtf8(table.Text(row, info.field));
    }
    return {};
}

// Without a scale, any article.
bool IsForOneOf(const std::vector<TListedScale>& scales, std::string_view forScales) {
    return scales.empty() || std::ranges::any_of(scales, [&](const TListedScale& scale) {
               return IsForScale(forScales, scale.rec.ScaleNumb);
           });
}

// How many articles a scale can hold; one whose ledger cannot be read is as unknown as one that was
// never reached.
std::int32_t CapacityOf(const TScaleRec& rec, const TCommandOptions& options, const TWorld& world,
                        const TShop& shop) {
    try {
        return KnownVersion(LedgerOf(options, world, shop, rec)).maxPlu;
    } catch (const TFileError&) {
        return KnownVersion(std::nullopt).maxPlu;
    }
}

// The lines of one scale.
class TLines {
public:
    TLines(const TArticleTable& table, const TScaleRec& rec, const TLineChoices& choices,
           const TRegionalSettings& regional, std::int32_t maxPlu)
        : table_(table),
          rec_(rec),
          builder_(table, choices, regional, [](std::string_view) {}),
          articles_(ArticlesForScale(table, rec.ScaleNumb, choices, regional)),
          winners_(WinnersOf(articles_, maxPlu)),
          maxPlu_(maxPlu) {}

    void AddTo(TReportTable& report) {
        for (const TRowId row : table_.Order()) {
            const TArticleLine line = builder_.LineFor(row, rec_.ScaleNumb);
            if (!line.isForScale) continue;
            report.rows.push_back(
                {Number(rec_.ScaleNumb), Number(table_.Integer(row, TField::PLU_SCALE_NUMB)),
                 ToUtf8(table_.Text(row, TField::PLU_NAME)), ToUtf8(line.line),
                 ToUtf8(line.fault ? std::string(FaultText(*line.fault)) : WhyNotWritten(row))});
        }
    }

private:
    // Rows come in the order of the articles.
    std::string WhyNotWritten(TRowId row) {
        const std::vector<TScaleArticle>& articles = articles_.articles;
        if (next_ == articles.size() || articles[next_].row != row) return {};
        const std::size_t index = next_++;
        return tolvane::WhyNotWritten(articles[index], index, winners_, maxPlu_);
    }

    const TArticleTable& table_;
    const TScaleRec& rec_;
    TArticleLineBuilder builder_;
    TScaleArticles articles_;
    TWinners winners_;
    std::int32_t maxPlu_;
    std::size_t next_ = 0;
};

}  // namespace

TAnswer ListArticles(const TCommandOptions& options, TWorld& world) {
    std::vector<TListedScale> chosen;
    if (!options.scales.empty()) chosen = ChosenScales(ReadShop(options), options, world);
    const TArticleReading reading = ReadShopArticles(options, world);
    TReportTable table{.key = "articles", .title = {}, .columns = {}};
    for (const TFieldInfo& info : kFields)
        table.columns.push_back({std::string(info.name), ToUtf8(info.label)});
    for (const TRowId row : reading.articles.Order()) {
        if (!IsForOneOf(chosen, reading.articles.Text(row, TField::PLU_FORSCALES))) continue;
        std::vector<TCell>& cells = table.rows.emplace_back();
        for (const TFieldInfo& info : kFields)
            cells.push_back(FieldCell(reading.articles, row, info));
    }
    return {.report = {.command = "articles", .tables = {std::move(table)}}};
}

TAnswer ListLines(const TCommandOptions& options, TWorld& world) {
    const TShop shop = ReadShop(options);
    // What an article's line is does not depend on the scale's connection.
    const std::vector<TScaleRec> scales = RecordsOf(ChosenScales(shop, options, world));
    const TArticleReading reading = ReadShopArticles(options, world);
    TReportTable table{.key = "lines",
                       .title = {},
                       .columns = {{"scale", "Scale"},
                                   {"number", "Number"},
                                   {"name", "Name"},
                                   {"line", "Line"},
                                   {"leftOut", "Left out"}}};
    for (const TScaleRec& rec : scales) {
        TLines(reading.articles, rec, shop.choices, world.regional,
               CapacityOf(rec, options, world, shop))
            .AddTo(table);
    }
    return {.report = {.command = "lines", .tables = {std::move(table)}}};
}

TAnswer ListScales(const TCommandOptions& options, TWorld& world) {
    const TShop shop = ReadShop(options);
    const std::vector<TListedScale> scales =
        options.scales.empty() ? shop.scales : ChosenScales(shop, options, world);
    const TLinkFactory links(world.clock, options.serialPorts, options.udpPort);
    TReportTable table{.key = "scales",
                       .title = {},
                       .columns = {{"number", "No"},
                                   {"name", "Name"},
                                   {"model", "Model"},
                                   {"connection", "Connection"},
                                   {"encoding", "Code table"},
                                   {"checked", "Checked"}}};
    constexpr std::array kCodeTables = {"WIN-1252", "PC-855", "PC-866"};
    for (const TScaleRec& rec : RecordsOf(scales)) {
        const auto encoding = static_cast<std::size_t>(rec.Encoding);
        table.rows.push_back(
            {Number(rec.ScaleNumb), ToUtf8(rec.ScaleName.View()), ModelName(rec.ScaleType),
             ConnectionName(rec),
             std::string(encoding < kCodeTables.size() ? kCodeTables[encoding] : "?"),
             rec.Checked});
    }
    const std::vector<TProblem> problems = ProblemsOfScales(scales, ReachBy(links));
    TReportTable found = ProblemTable(problems);
    found.title = "Problems";
    return {.report = {.command = "scales", .tables = {std::move(table), std::move(found)}},
            .exitCode = problems.empty() ? TExitCode::Done : TExitCode::ProblemsFound};
}

}  // namespace tolvane
