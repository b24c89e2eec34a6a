#include "command/ScaleView.h"

#include "text/Cp1251.h"

namespace tolvane {
namespace {

std::pair<std::string, TCell> ScaleField(const TScaleRec& rec) {
    return {"scale", std::int64_t{rec.ScaleNumb}};
}

void LogArticle(TEventLog& log, const TScaleRec& rec, const std::string& what,
                const TRefusedArticle& article) {
    log.Write(what, {ScaleField(rec),
                     {"number", std::int64_t{article.number}},
                     {"text", ToUtf8(article.reason)}});
}

}  // namespace

TScaleView::TScaleView(TProgress& progress, TEventLog& log, bool verbose, const TScaleRec& rec)
    : progress_(progress), log_(log), verbose_(verbose), rec_(rec), index_(progress.Add(rec)) {}

void TScaleView::Begins(std::size_t total) {
    progress_.Begins(index_, total);
    log_.Write("connected", {ScaleField(rec_), {"articles", static_cast<std::int64_t>(total)}});
}

void TScaleView::Progress(std::size_t done) {
    progress_.Done(index_, done);
}

void TScaleView::Article(std::string_view what, std::int32_t number, std::string_view text) {
    if (what == "refused") ++refused_;
    if (verbose_)
        progress_.Says(index_, std::to_string(number) + " " + std::string(what) +
                                   (text.empty() ? "" : ": " + ToUtf8(text)));
    log_.Write(std::string(what),
               {ScaleField(rec_), {"number", std::int64_t{number}}, {"text", ToUtf8(text)}});
}

void TScaleView::Ends(const TScaleResult& result) {
    progress_.Ends(index_, result);
    LogResult(log_, result, refused_);
}

void LogResult(TEventLog& log, const TScaleResult& result, std::size_t refused) {
    for (std::size_t i = 0; i + refused < result.refused.size(); ++i)
        LogArticle(log, result.rec, "refused", result.refused[i]);
    for (const TRefusedArticle& article : result.leftOut)
        LogArticle(log, result.rec, "leftOut", article);
    const auto count = [](std::size_t number) { return static_cast<std::int64_t>(number); };
    log.Write("scale", {ScaleField(result.rec),
                        {"name", ToUtf8(result.rec.ScaleName.View())},
                        {"outcome", std::string(OutcomeName(result.outcome))},
                        {"written", count(result.written)},
                        {"unchanged", count(result.unchanged)},
                        {"deleted", count(result.deleted)},
                        {"refused", count(result.refused.size())},
                        {"leftOut", count(result.leftOut.size())},
                        {"pending", count(result.pending)},
                        {"mayBeProgramming", result.mayBeProgramming},
                        {"error", ToUtf8(result.error)}});
}

}  // namespace tolvane
