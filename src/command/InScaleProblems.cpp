#include "command/InScaleProblems.h"

#include <string>
#include <utility>

#include "command/ShownTexts.h"
#include "command/WritePlan.h"

namespace tolvane {
namespace {

std::string FaultCure(TLineFault fault) {
    switch (fault) {
        case TLineFault::Barcode:
            return "give it a barcode of 5 characters without |";
        case TLineFault::ZeroPrice:
            return "give it the chosen price";
        case TLineFault::Name1:
        case TLineFault::Name2:
            return "fill the name, or choose another one with --name1 and --name2";
    }
    return {};
}

class TScaleProblems {
public:
    TScaleProblems(const TArticleTable& table, const TScaleRec& rec, const TScaleVersion& version)
        : table_(table), rec_(rec), version_(version) {}

    std::vector<TProblem> Find(const TScaleArticles& articles) {
        for (const TLeftOutArticle& article : articles.leftOut)
            Add(TSeverity::Error, table_.Integer(article.row, TField::PLU_SCALE_NUMB),
                std::string(table_.Text(article.row, TField::PLU_NAME)),
                std::string(FaultText(article.fault)), FaultCure(article.fault));
        FindOverwritten(articles);
        for (const TScaleArticle& article : articles.articles)
            Check(article);
        return std::move(problems_);
    }

private:
    void Add(TSeverity severity, std::int32_t number, std::string name, std::string problem,
             std::string cure) {
        problems_.push_back({.severity = severity,
                             .scale = rec_.ScaleNumb,
                             .number = number,
                             .name = std::move(name),
                             .problem = std::move(problem),
                             .cure = std::move(cure)});
    }
    void Add(TSeverity severity, const TScaleArticle& article, std::string problem,
             std::string cure) {
        Add(severity, article.plu.ScaleNumber, article.plu.LabelName1, std::move(problem),
            std::move(cure));
    }
    void FindOverwritten(const TScaleArticles& articles) {
        const auto winners = WinnersOf(articles, version_.maxPlu);
        for (std::size_t i = 0; i < articles.articles.size(); ++i) {
            const TScaleArticle& article = articles.articles[i];
            const std::int32_t number = NumberInScale(article.plu.ScaleNumber, version_.maxPlu);
            const auto found = winners.find(number);
            // What cannot be written overwrites nothing and is told elsewhere.
            if (found == winners.end() || found->second == i ||
                !IsPriceOfScale(article.plu.PriceHundredths))
                continue;
            const TPLUD& winner = articles.articles[found->second].plu;
            Add(TSeverity::Error, article,
                "it has the number " + std::to_string(number) + " in the scale, as " +
                    std::to_string(winner.ScaleNumber) + " " + Quoted(winner.LabelName1) +
                    ", which wins",
                "give one of them another number");
        }
    }
    void Check(const TScaleArticle& article) {
        const TPLUD& plu = article.plu;
        if (NumberInScale(plu.ScaleNumber, version_.maxPlu) == 0)
            Add(TSeverity::Error, article, NoSuchNumberText(version_.maxPlu),
                "give it another number");
        if (!IsPriceOfScale(plu.PriceHundredths))
            Add(TSeverity::Error, article, std::string(BadPriceText(article)),
                article.price < 1.0 ? "correct the price"
                                    : "correct the price, or sell it by another unit");
        for (const TShownText& text : ShownTexts(plu, plu.ScaleNumber, rec_, version_))
            Check(article, text);
    }
    void Check(const TScaleArticle& article, const TShownText& text) {
        if (text.isCut)
            Add(TSeverity::Warning, article, text.label + " is cut to " + Quoted(text.shown),
                "shorten the text");
        if (!text.lost.empty())
            Add(TSeverity::Warning, article,
                "the scale's code table lacks " + Quoted(text.lost) + " of " + text.label +
                    "; it would show " + Quoted(text.shown),
                "use other letters, or choose the code table that the scale really has");
    }

    const TArticleTable& table_;
    const TScaleRec& rec_;
    const TScaleVersion& version_;
    std::vector<TProblem> problems_;
};

}  // namespace

std::vector<TProblem> ProblemsInScale(const TScaleArticles& articles, const TArticleTable& table,
                                      const TScaleRec& rec, const TScaleVersion& version) {
    return TScaleProblems(table, rec, version).Find(articles);
}

}  // namespace tolvane
