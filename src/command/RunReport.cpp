#include "command/RunReport.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "command/LedgerContent.h"
#include "text/Cp1251.h"
#include "text/OneLine.h"

namespace tolvane {
namespace {

TCell Count(std::size_t number) {
    return static_cast<std::int64_t>(number);
}

// A column of the table of scales.
struct TScaleColumn {
    const char* key;
    const char* title;
    TCell (*cell)(const TScaleResult& scale);
};

using TResult = const TScaleResult&;

TCell OfVersion(TResult scale, TCell (*cell)(const TScaleVersion& version)) {
    return scale.version ? cell(*scale.version) : TCell();
}

TCell ExchangeOf(TResult scale) {
    if (!scale.exchange) return {};
    return static_cast<double>(scale.exchange->count()) / 1000.0;
}

constexpr TScaleColumn kModel = {"model", "Model",
                                 [](TResult s) { return TCell(ModelName(s.rec.ScaleType)); }};

constexpr auto kScaleColumns = std::to_array<TScaleColumn>({
    {"number", "No", [](TResult s) { return Number(s.rec.ScaleNumb); }},
    {"name", "Scale", [](TResult s) { return TCell(ToUtf8(s.rec.ScaleName.View())); }},
    {"outcome", "Outcome", [](TResult s) { return TCell(std::string(OutcomeName(s.outcome))); }},
    {"written", "Written", [](TResult s) { return Count(s.written); }},
    {"unchanged", "Unchanged", [](TResult s) { return Count(s.unchanged); }},
    {"deleted", "Deleted", [](TResult s) { return Count(s.deleted); }},
    {"refused", "Refused", [](TResult s) { return Count(s.refused.size()); }},
    {"leftOut", "Left out", [](TResult s) { return Count(s.leftOut.size()); }},
    {"pending", "Pending", [](TResult s) { return Count(s.pending); }},
    {"version", "Version",
     [](TResult s) {
         return OfVersion(s, [](const TScaleVersion& v) { return TCell(ToUtf8(v.text)); });
     }},
    {"capacity", "Capacity",
     [](TResult s) {
         return OfVersion(s, [](const TScaleVersion& v) { return Number(v.maxPlu); });
     }},
    {"labelMode", "Label mode",
     [](TResult s) { return OfVersion(s, [](const TScaleVersion& v) { return Number(v.mode); }); }},
    {"exchangeMs", "Exchange, ms", ExchangeOf},
    {"seconds", "Seconds",
     [](TResult s) { return TCell(static_cast<double>(s.duration.count()) / 1000.0); }},
    {"mayBeProgramming", "May not weigh", [](TResult s) { return TCell(s.mayBeProgramming); }},
    {"ledger", "Ledger", [](TResult s) { return TCell(ToUtf8(s.ledgerNote)); }},
    {"error", "Error", [](TResult s) { return TCell(ToUtf8(s.error)); }},
});

TReportTable ScaleTableOf(const std::vector<TScaleResult>& scales, bool withModel) {
    std::vector<TScaleColumn> columns(kScaleColumns.begin(), kScaleColumns.end());
    if (withModel) columns.insert(columns.begin() + 2, kModel);
    TReportTable table{.key = "scales", .title = {}, .columns = {}};
    for (const TScaleColumn& column : columns)
        table.columns.push_back({column.key, column.title});
    for (const TScaleResult& scale : scales) {
        std::vector<TCell>& row = table.rows.emplace_back();
        for (const TScaleColumn& column : columns)
            row.push_back(column.cell(scale));
    }
    return table;
}

// Whether nothing is left undone in scales that are all done.
bool IsAllDone(const TScaleResults& results) {
    if (!results.unknown.empty() || results.traceFailed) return false;
    return !results.named || std::all_of(results.scales.begin(), results.scales.end(),
                                         [](TResult scale) { return scale.leftOut.empty(); });
}

}  // namespace

TScaleResult UnusableResult(const TListedScale& scale) {
    return {.rec = scale.rec,
            .outcome = TScaleOutcome::Failed,
            .error = scale.fault + "; " + scale.cure,
            .usable = false};
}

TExitCode ExitCodeOf(const TScaleResults& results) {
    if (results.interrupted) return TExitCode::Interrupted;
    const std::vector<TScaleResult>& scales = results.scales;
    const auto all = [&](auto isSo) { return std::all_of(scales.begin(), scales.end(), isSo); };
    const auto is = [](TScaleOutcome outcome) {
        return [outcome](TResult scale) { return scale.outcome == outcome; };
    };
    if (all(is(TScaleOutcome::Done)))
        return IsAllDone(results) ? TExitCode::Done : TExitCode::SomeFailed;
    if (all([](TResult scale) { return !scale.usable; })) return TExitCode::Usage;
    if (all(is(TScaleOutcome::NotReached))) return TExitCode::NoScaleReached;
    const auto isDoneOrLocked = [](TResult scale) {
        return scale.outcome == TScaleOutcome::Done || scale.outcome == TScaleOutcome::Locked;
    };
    return all(isDoneOrLocked) ? TExitCode::Locked : TExitCode::SomeFailed;
}

TReportTable ArticleTableOf(const TScaleResults& results) {
    TReportTable table{.key = "articles",
                       .title = "Articles that the scales do not hold as they are in the database",
                       .columns = {{"scale", "Scale"},
                                   {"number", "Number"},
                                   {"name", "Name"},
                                   {"state", "State"},
                                   {"reason", "Reason"}}};
    const auto addRow = [&](TCell scale, const TRefusedArticle& article, const char* state) {
        table.rows.push_back({std::move(scale), std::int64_t{article.number}, ToUtf8(article.name),
                              std::string(state), ToUtf8(article.reason)});
    };
    for (const TRefusedArticle& article : results.unknown)
        addRow({}, article, "left out");
    for (const TScaleResult& scale : results.scales) {
        const auto add = [&](const TRefusedArticle& article, const char* state) {
            addRow(std::int64_t{scale.rec.ScaleNumb}, article, state);
        };
        for (const TRefusedArticle& article : scale.refused)
            add(article, "refused");
        for (const TRefusedArticle& article : scale.leftOut)
            add(article, "left out");
        for (const std::int32_t number : scale.strays)
            add({.number = number,
                 .name = {},
                 .reason = "the scale holds it and its list does not; --prune deletes it"},
                "left over");
    }
    return table;
}

TReport ReportOf(std::string command, const TScaleResults& results) {
    const bool isTest = command == "test";
    return {.command = std::move(command),
            .tables = {ScaleTableOf(results.scales, isTest), ArticleTableOf(results)}};
}

std::string ReasonOf(const TScaleResult& scale) {
    std::string reason = scale.error;
    if (reason.empty() && !scale.refused.empty())
        reason = std::to_string(scale.refused.size()) + " refused, first " +
                 std::to_string(scale.refused.front().number) + ": " + scale.refused.front().reason;
    if (reason.empty()) reason = OutcomeName(scale.outcome);
    if (scale.mayBeProgramming) reason += "; it may not weigh";
    return reason;
}

std::vector<std::string> FailureLines(const TScaleResults& results) {
    std::vector<std::string> lines;
    for (const TScaleResult& scale : results.scales)
        if (scale.outcome != TScaleOutcome::Done)
            lines.push_back("scale " + std::to_string(scale.rec.ScaleNumb) + " " +
                            ToUtf8(scale.rec.ScaleName.View()) + ": " +
                            OnOneLine(ToUtf8(ReasonOf(scale))));
    return lines;
}

}  // namespace tolvane
