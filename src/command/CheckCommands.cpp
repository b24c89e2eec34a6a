// What would go wrong, and what the scales would hold.

#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "command/Command.h"
#include "command/PlannedResults.h"
#include "command/ProblemTable.h"
#include "command/Problems.h"
#include "command/ScaleArticles.h"
#include "command/Shop.h"
#include "command/ShownTexts.h"
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

void AppendTexts(const TScaleArticle& article, const TScaleRec& rec, const TScaleVersion& version,
                 TReportTable& table) {
    const std::int32_t cut = PluTail(article.plu.ScaleNumber, version.maxPlu);
    const auto add = [&](TCell parameter, std::string label, std::string shown, std::string wanted,
                         std::string note) {
        table.rows.push_back({Number(rec.ScaleNumb), ToUtf8(rec.ScaleName.View()), Number(cut),
                              std::move(parameter), std::move(label), std::move(shown),
                              std::move(wanted), std::move(note)});
    };
    const std::string price = FormatFixed(article.plu.PriceHundredths / 100.0, 1, 2, '.');
    const bool byPiece = article.plu.WholeUnits && rec.ScaleType == kScaleTypeS300;
    add({}, "price", price, price, byPiece ? "sold by the piece" : "");
    for (const TShownText& text : ShownTexts(article.plu, article.plu.ScaleNumber, rec, version)) {
        std::string note = text.isCut ? "cut" : "";
        if (!text.lost.empty())
            note += (note.empty() ? "" : "; ") + ("the code table lacks " + ToUtf8(text.lost));
        add(Number(text.parameter), ToUtf8(text.label), ToUtf8(text.shown), ToUtf8(text.wanted),
            note);
    }
}

}  // namespace

TAnswer CheckShop(const TCommandOptions& options, TWorld& world) {
    const TShop shop = ReadShop(options);
    const std::vector<TScaleRec> scales = ChosenScales(shop, options, world);
    const TArticleReading reading = ReadShopArticles(options, world);
    std::vector<TProblem> problems = ProblemsOfScales(scales);
    Append(problems, ProblemsOfArticles(reading, shop.choices.price));
    for (const TScaleRec& rec : scales) {
        const TScaleArticles articles =
            ArticlesForScale(reading.articles, rec.ScaleNumb, shop.choices, world.regional);
        Append(problems, ProblemsInScale(articles, reading.articles, rec,
                                         KnownVersion(LedgerOf(options, world, shop, rec))));
    }
    return {.report = {.command = "check", .tables = {ProblemTable(problems)}},
            .exitCode = problems.empty() ? TExitCode::Done : TExitCode::ProblemsFound};
}

TAnswer ShowArticle(const TCommandOptions& options, TWorld& world) {
    const TShop shop = ReadShop(options);
    const std::vector<TScaleRec> scales = ChosenScales(shop, options, world);
    const TArticleReading reading = ReadShopArticles(options, world);
    TReportTable table = TextTable();
    for (const TScaleRec& rec : scales) {
        const TScaleVersion version = KnownVersion(LedgerOf(options, world, shop, rec));
        const TScaleArticles articles =
            ArticlesForScale(reading.articles, rec.ScaleNumb, shop.choices, world.regional);
        for (const TScaleArticle& article : articles.articles)
            if (article.plu.ScaleNumber == *options.show) AppendTexts(article, rec, version, table);
    }
    if (table.rows.empty())
        throw TUsageError("None of these scales would get an article with number " +
                          std::to_string(*options.show) + ". tolvane check tells why.");
    return {.report = {.command = "check", .tables = {std::move(table)}}};
}

}  // namespace tolvane
