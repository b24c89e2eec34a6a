#include "command/RunPage.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "text/Cp1251.h"
#include "text/Numbers.h"

namespace tolvane {
namespace {

std::string ScaleTitle(const TScaleResult& scale) {
    return std::to_string(scale.rec.ScaleNumb) + " " + ToUtf8(scale.rec.ScaleName.View());
}

TReportTable PageScaleTable(const std::vector<TScaleResult>& scales) {
    TReportTable table{.key = "scales",
                       .title = {},
                       .columns = {{"number", "No"},
                                   {"name", "Scale"},
                                   {"connection", "Connection"},
                                   {"outcome", "Outcome"},
                                   {"written", "Written"},
                                   {"unchanged", "Unchanged"},
                                   {"deleted", "Deleted"},
                                   {"refused", "Refused"},
                                   {"leftOut", "Left out"},
                                   {"pending", "Pending"}}};
    const auto count = [](std::size_t number) { return TCell(static_cast<std::int64_t>(number)); };
    for (const TScaleResult& scale : scales)
        table.rows.push_back({Number(scale.rec.ScaleNumb), ToUtf8(scale.rec.ScaleName.View()),
                              ConnectionName(scale.rec), std::string(OutcomeName(scale.outcome)),
                              count(scale.written), count(scale.unchanged), count(scale.deleted),
                              count(scale.refused.size()), count(scale.leftOut.size()),
                              count(scale.pending)});
    return table;
}

// The sentences have a table of their own: on paper there is no room for them beside the numbers.
TReportTable NotesTable(const std::vector<TScaleResult>& scales) {
    TReportTable table{
        .key = "notes",
        .title = {},
        .columns = {
            {"number", "No"}, {"name", "Scale"}, {"reason", "Reason"}, {"ledger", "Ledger"}}};
    for (const TScaleResult& scale : scales) {
        const bool isDone = scale.outcome == TScaleOutcome::Done;
        if (isDone && scale.ledgerNote.empty()) continue;
        table.rows.push_back({Number(scale.rec.ScaleNumb), ToUtf8(scale.rec.ScaleName.View()),
                              isDone ? std::string() : ToUtf8(ReasonOf(scale)),
                              ToUtf8(scale.ledgerNote)});
    }
    return table;
}

std::vector<TPageBar> BarsOf(const std::vector<TScaleResult>& scales) {
    std::vector<TPageBar> bars;
    for (const TScaleResult& scale : scales) {
        const std::string outcome(OutcomeName(scale.outcome));
        std::string text = scale.outcome == TScaleOutcome::Done ? std::string() : outcome;
        if (scale.exchange)
            text += (text.empty() ? "" : ", ") +
                    FormatFixed(static_cast<double>(scale.exchange->count()) / 1000.0, 1, 1, '.') +
                    " ms per exchange";
        bars.push_back({.name = ScaleTitle(scale),
                        .seconds = static_cast<double>(scale.duration.count()) / 1000.0,
                        .text = std::move(text),
                        .state = outcome});
    }
    return bars;
}

void AppendNumber(std::string& list, std::int32_t number) {
    list += (list.empty() ? "" : ", ") + std::to_string(number);
}

// One row for an article, however many scales it went to.
TReportTable SentTable(const std::vector<TScaleResult>& scales, bool planned) {
    struct TPlaces {
        std::string written{};
        std::string deleted{};
    };
    std::map<std::pair<std::int32_t, std::string>, TPlaces> articles;
    for (const TScaleResult& scale : scales)
        for (const TSentArticle& article : scale.sent) {
            TPlaces& places = articles[{article.number, article.name}];
            AppendNumber(article.isDeleted ? places.deleted : places.written, scale.rec.ScaleNumb);
        }
    TReportTable table{.key = "sent",
                       .title = {},
                       .columns = {{"number", "Number"},
                                   {"name", "Name"},
                                   {"written", planned ? "Into scales" : "Written into scales"},
                                   {"deleted", "Deleted from scales"}}};
    // The page leaves out a column in which nothing stands.
    const bool named = std::ranges::any_of(
        articles, [](const auto& article) { return !article.first.second.empty(); });
    for (const auto& [article, places] : articles) {
        const std::string name = article.second.empty() && named ? "–" : ToUtf8(article.second);
        table.rows.push_back({Number(article.first), name, places.written, places.deleted});
    }
    return table;
}

// ", 5 written"; nothing of none.
std::string CountText(std::size_t count, const char* what) {
    return count > 0 ? ", " + std::to_string(count) + " " + what : "";
}

std::string Totals(const std::vector<TScaleResult>& scales, bool planned) {
    TScaleResult sum;
    std::size_t done = 0;
    std::size_t refused = 0;
    std::size_t leftOut = 0;
    for (const TScaleResult& scale : scales) {
        done += scale.outcome == TScaleOutcome::Done ? 1 : 0;
        sum.written += scale.written;
        sum.unchanged += scale.unchanged;
        sum.deleted += scale.deleted;
        sum.pending += scale.pending;
        refused += scale.refused.size();
        leftOut += scale.leftOut.size();
    }
    const std::string all =
        std::to_string(scales.size()) + (scales.size() == 1 ? " scale" : " scales");
    return (planned ? all : std::to_string(done) + " of " + all + " done") +
           CountText(sum.written, "written") + CountText(sum.unchanged, "unchanged") +
           CountText(sum.deleted, "deleted") + CountText(refused, "refused") +
           CountText(leftOut, "left out") +
           CountText(sum.pending, planned ? "to be written" : "pending") + ".";
}

std::vector<std::string> MessagesOf(const TScaleResults& results, bool planned) {
    std::vector<std::string> messages = {Totals(results.scales, planned)};
    if (planned) messages.emplace_back("This is a plan; no scale was touched.");
    if (results.interrupted)
        messages.emplace_back(
            "The run was interrupted; each scale ended with the article in work. The next run with "
            "--changed goes on.");
    if (results.deadline)
        messages.emplace_back("The deadline passed; each scale ended with the article in work.");
    if (results.traceFailed) messages.emplace_back("The trace lacks its end.");
    std::string notWeighing;
    for (const TScaleResult& scale : results.scales)
        if (scale.mayBeProgramming)
            notWeighing += (notWeighing.empty() ? "" : ", ") + ScaleTitle(scale);
    if (!notWeighing.empty())
        messages.push_back("These scales may not weigh: " + notWeighing +
                           ". tolvane release puts them back to weighing.");
    return messages;
}

}  // namespace

TPageContent RunPage(const TScaleResults& results, bool planned) {
    TPageContent content{.messages = MessagesOf(results, planned)};
    const auto add = [&content](std::string title, TReportTable table) {
        content.sections.push_back({.title = std::move(title), .table = std::move(table)});
    };
    add("Scales", PageScaleTable(results.scales));
    if (TReportTable notes = NotesTable(results.scales); !notes.rows.empty())
        add("Notes on the scales", std::move(notes));
    if (TReportTable notHeld = ArticleTableOf(results); !notHeld.rows.empty()) {
        std::string title = notHeld.title;
        add(std::move(title), std::move(notHeld));
    }
    if (!planned)
        content.sections.push_back({.title = "Time per scale", .bars = BarsOf(results.scales)});
    add(planned ? "Articles that would be written" : "Articles that were sent",
        SentTable(results.scales, planned));
    if (content.sections.back().table.rows.empty()) content.sections.back().note = "None.";
    return content;
}

}  // namespace tolvane
